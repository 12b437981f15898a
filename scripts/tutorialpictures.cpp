#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/header.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/common/commentedit.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/frame/menumnemonics.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "gui/morvantide/morvantideinfowindow.h"
#include "log/logger.h"
#include "resources/resources.h"
#include "support/gestures.h"
#include "util/programlocale.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCursor>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <utility>

// tutorialpictures FOLDER PICTURES: does with the program's window, on the demonstration data in FOLDER, what
// docs/tutorial.md tells its reader to do, and leaves that page's pictures in the folder PICTURES. A step that can't be
// done ends it with an error. The settings and all files that come into being are kept apart.

namespace {

constexpr int patience = 120'000; // ms
constexpr int settling = 1500;    // ms; views repaint at their own pace
const QSize windowSize(1240, 820), tableSize(1120, 260);

[[noreturn]] void fail(const QString &words)
{
    throw std::runtime_error(words.toStdString());
}

template<typename T>
T &existing(T *object, const QString &what)
{
    if (!object)
        fail("there is no " + what);
    return *object;
}

void waitFor(const std::function<bool()> &condition, const QString &what)
{
    if (!QTest::qWaitFor(condition, patience))
        fail("in vain waited for " + what);
    QTest::qWait(settling);
}

/// Waits for a modal dialog of that kind while its own event loop runs.
template<class Dialog>
void whenShown(const std::function<void(Dialog &)> &act)
{
    QTimer::singleShot(300, [act] {
        if (auto *const dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget()))
            act(*dialog);
        else
            whenShown<Dialog>(act);
    });
}

template<class Button>
Button &buttonOf(const QWidget &parent, const QString &text)
{
    for (auto *button : parent.findChildren<Button *>())
        if (withoutMnemonic(button->text()) == text)
            return *button;
    fail("there is no button " + text);
}

/// With no more than 256 colours, the most frequent of each neighbourhood, which need a third of the bytes.
QImage inFewColors(const QImage &image)
{
    constexpr int mostColors = 256;
    constexpr QRgb neighbourhood = 0xf8f8f8;
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QList<QRgb> all = counts.keys();
    std::sort(all.begin(), all.end(),
              [&](QRgb a, QRgb b) { return std::make_pair(counts[b], b) < std::make_pair(counts[a], a); });
    QVector<QRgb> kept;
    QSet<QRgb> taken;
    for (const QRgb color : qAsConst(all)) {
        if (kept.size() < mostColors && !taken.contains(color & neighbourhood)) {
            taken.insert(color & neighbourhood);
            kept << color;
        }
    }
    return image.convertToFormat(QImage::Format_Indexed8, kept, Qt::ThresholdDither | Qt::AvoidDither);
}

class Tutorial {
public:
    Tutorial(const QString &folder, const QString &pictures)
        : m_folder(folder), m_pictures(pictures), m_window(m_kept.filePath("morvantide.conf"))
    {
        m_window.resize(windowSize);
        m_window.show();
        QTest::qWait(settling);
    }

    void go()
    {
        openFolder();
        findEvent();
        readTotal();
        compareSizeRange();
        invertAnew();
        addComment();
        exportTable();
    }

private:
    // ---- the page's chapters

    void openFolder()
    {
        whenShown<DataChooserDialog>([this](DataChooserDialog &dialog) {
            dialog.setChoice({{"folderName", m_folder}, {"variant", "block"}});
            QTest::qWait(settling);
            keep(dialog, "data-dialog");
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        choose("Open data folder...");
        waitFor([this] { return !m_window.isReading() && m_window.datastore(); }, "data");
        Q_EMIT existing(m_window.findChild<QLabel *>("colormapOffer"), "offer of colours").linkActivated("jet");
        drag(*browser().findChild<Tsb::Header *>()->splitter()->handle(1), {70, 0});
        choose("Fit timescale");
        keep(m_window, "overview");
    }

    /// The afternoon of the first day.
    void findEvent()
    {
        Tsb::Plot &plot = plotOf(*browser().views()[4]);
        for (int notch = 0; notch < 7; ++notch)
            turnWheel(&plot, {int(plot.width() * 0.29), plot.height() / 2}, {0, 120});
        QTest::qWait(settling);
        QTest::mouseClick(&plot, Qt::LeftButton, Qt::NoModifier, {int(plot.width() * 0.45), plot.height() / 2});
        QTest::qWait(settling);
        keep(m_window, "event");
    }

    void readTotal()
    {
        Tsb::Plot &totals = plotOf(*browser().views()[1]);
        setCursor(totals, 0.15, Qt::Key_1);
        setCursor(totals, 0.6, Qt::Key_2);
        QCursor::setPos(m_window.mapToGlobal({m_window.width() / 2, m_window.height() - 5}));
        QTest::qWait(settling);
        keep(m_window, "measuring");
        auto &dock = existing(m_window.findChild<QDockWidget *>("measuringDock"), "dock");
        dock.setFloating(true);
        dock.resize(tableSize);
        QTest::qWait(settling);
        keep(dock, "measuring-table");
        dock.setFloating(false);
        existing(m_window.findChild<QDockWidget *>("logDock"), "dock").raise();
        QTest::qWait(settling);
        QTest::keyClick(&totals, Qt::Key_Escape);
    }

    void compareSizeRange()
    {
        choose("Fraction concentration");
        Tsb::View &view = *browser().views().last();
        chooseSpectra(view, {"particles neg", "particles pos"});
        buttonOf<QCheckBox>(view, "Total").setChecked(false);
        const auto limits = view.findChildren<ExpSpinBox *>();
        limits.at(0)->setValue(2);
        limits.at(1)->setValue(5);
        choose("Autoscale all plots");
        keep(m_window, "size-range");
    }

    void invertAnew()
    {
        whenShown<QFileDialog>([this](QFileDialog &dialog) {
            dialog.findChild<QLineEdit *>("fileNameEdit")->setText(QDir(m_folder).absoluteFilePath("smooth.sinp"));
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        choose("Reinvert...");
        QTest::qWait(settling);
        waitFor([this] { return !m_window.isReinverting(); }, "spectra");
        choose("Particles");
        keep(m_window, "reinverted");
        choose("Spectra info");
        auto &info = existing(m_window.findChild<MorvantideInfoWindow *>(), "list of spectra");
        QTest::qWait(settling);
        keep(info, "spectra-info");
        info.close();
    }

    void addComment()
    {
        auto &line = existing(m_window.findChild<CommentEdit *>(), "line of comments");
        QTest::keyClicks(&line, "growth from 2 nm on");
        QTest::keyClick(&line, Qt::Key_Return);
        QTest::qWait(settling);
    }

    void exportTable()
    {
        const QString table = m_kept.filePath("totals.txt");
        choose("Export data...");
        auto &dialog = existing(m_window.findChild<DataExportDialog *>(), "dialog of export");
        choose("Add fields from timeseries plots");
        lineOf(dialog, "Output file:").setText("totals.txt");
        QTest::qWait(settling);
        keep(dialog, "export");
        lineOf(dialog, "Output file:").setText(table);
        buttonOf<QPushButton>(dialog, "Export").click();
        waitFor([&table] { return QFile::exists(table); }, "the table");
    }

    // ---- gestures

    Tsb::TimeSeriesBrowser &browser() const { return *m_window.browser(); }
    static Tsb::Plot &plotOf(const Tsb::View &view) { return existing(view.findChild<Tsb::Plot *>(), "plot"); }

    void choose(const QString &text)
    {
        QList<QAction *> all = m_window.findChildren<QAction *>();
        for (int i = 0; i < all.size(); ++i) { // some menus have no parent
            if (all[i]->menu() && !all[i]->menu()->parent())
                all += all[i]->menu()->actions();
        }
        for (QAction *one : qAsConst(all)) {
            if (withoutMnemonic(one->text()) != text)
                continue;
            if (!one->isEnabled())
                fail(text + " is disabled");
            one->trigger();
            QTest::qWait(settling);
            return;
        }
        fail("there is no command " + text);
    }
    static void drag(QWidget &widget, QPoint delta)
    {
        const QPoint from = widget.rect().center();
        dragMouse(&widget, from, {from + delta});
        QTest::qWait(50);
    }
    /// Where the pointer is: the share of the plot's width.
    static void setCursor(Tsb::Plot &plot, double share, Qt::Key key)
    {
        QCursor::setPos(plot.mapToGlobal({int(plot.width() * share), plot.height() / 2}));
        QTest::qWait(200);
        QTest::keyClick(&plot, key);
    }
    static void chooseSpectra(const Tsb::View &view, const QStringList &names)
    {
        auto &list = existing(view.findChild<Tsb::SpectraSelectionWidget *>(), "list of spectra");
        const auto &rows = *list.findChild<QListView *>();
        for (int row = 0; row < rows.model()->rowCount(); ++row) {
            const QModelIndex index = rows.model()->index(row, 0);
            const bool isWanted = names.contains(index.data().toString(), Qt::CaseInsensitive);
            rows.selectionModel()->select(index,
                                          isWanted ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
        }
        QTest::qWait(settling);
    }
    /// The one that the label with that text belongs to.
    static QLineEdit &lineOf(const QWidget &parent, const QString &text)
    {
        for (const auto *label : parent.findChildren<QLabel *>()) {
            if (withoutMnemonic(label->text()) == text && label->buddy())
                return existing(qobject_cast<QLineEdit *>(label->buddy()), "line " + text);
        }
        fail("there is no line " + text);
    }
    void keep(QWidget &shown, const QString &name) const
    {
        if (!inFewColors(shown.grab().toImage()).save(m_pictures.filePath(name + ".png")))
            fail("the picture " + name + " can't be written");
    }

    const QString m_folder;
    const QDir m_pictures;
    const QTemporaryDir m_kept;
    MorvantideMainWindow m_window;
};

} // namespace

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    const QApplication application(argc, argv);
    setProgramLocale();
    registerResources();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "tutorialpictures FOLDER PICTURES\n");
        return 2;
    }
    try {
        Tutorial(arguments[1], arguments[2]).go();
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "tutorialpictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
