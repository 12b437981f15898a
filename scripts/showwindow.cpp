#include "gui/browser/controls/header.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/spectrogramplot.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "log/logger.h"
#include "resources/resources.h"
#include "support/gestures.h"
#include "util/programlocale.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGroupBox>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <cstdio>

// showwindow [--size 1440x900] [--dark] [--scale 2] [--font 20] [--cursors] [--docks] [--export] PICTURE FOLDER
// [VARIANT]: drives the program's window as a user would, from the data dialog to a selected record, saves a picture of
// it and prints the picture's path. The window is the program's; its settings are kept apart. --scale is that of the
// screen,
// --font the size of texts in points. With --cursors measuring cursors are set. With --docks a picture of each dock,
// too, named after it and put beside the other. With --export one of the export dialog, too: export-dialog.png.

namespace {

constexpr int patience = 10 * 60 * 1000; // ms
constexpr int settling = 1500;           // ms; views repaint at their own pace

/// The dialog stands in an event loop of its own, so that what answers it comes from a timer.
void acceptDialogWhenShown(MorvantideMainWindow &window)
{
    auto *timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, &window, [timer] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        timer->deleteLater();
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    timer->start(200);
}

bool waitForData(const MorvantideMainWindow &window)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < patience) {
        QTest::qWait(50);
        if (!window.isReading() && window.datastore())
            return true;
    }
    return false;
}

void drag(QWidget *widget, QPoint delta)
{
    const QPoint from = widget->rect().center();
    dragMouse(widget, from, {from + delta});
    QTest::qWait(50);
}

/// Room for the names and for the spectrograms, and all the time in what is left.
void arrange(const MorvantideMainWindow &window)
{
    const auto *header = window.browser()->findChild<Tsb::Header *>();
    drag(header->splitter()->handle(1), {70, 0});
    for (const auto *view : window.browser()->findChildren<Tsb::SpectrogramView *>())
        drag(view->findChild<Tsb::Resizer *>(), {0, 50});
    QTest::mouseDClick(window.browser()->timeView(), Qt::LeftButton);
    QTest::qWait(settling);
}

/// Clicks upon the first spectrogram, three quarters along the time axis.
bool selectRecord(const MorvantideMainWindow &window)
{
    auto *const plot = window.browser()->findChild<Tsb::SpectrogramPlot *>();
    if (!plot)
        return false;
    QTest::mouseClick(plot, Qt::LeftButton, Qt::NoModifier, {plot->width() * 3 / 4, plot->height() / 2});
    QTest::qWait(settling);
    return window.shownRecord() != nullptr;
}

void setCursors(const MorvantideMainWindow &window)
{
    const Tsb::TimeView &axis = *window.browser()->timeView();
    for (int which = 0; which < 2; ++which)
        window.browser()->measuringCursors()->set(which, axis.timeScale().tickAt(axis.width() * (which + 2) / 5));
    QTest::qWait(settling);
}

/// The scale is made known to the toolkit before it starts.
void setScale(int argc, char **argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--scale") == 0)
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
    }
}

QSize sizeOf(const QString &text)
{
    const QStringList numbers = text.split(QLatin1Char('x'));
    return {numbers.value(0).toInt(), numbers.value(1).toInt()};
}

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(35, 35, 35));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::Link, QColor(42, 130, 218));
    return palette;
}

/// Each in its turn is raised from behind its tab.
bool saveDocks(MorvantideMainWindow &window, const QFileInfo &picture)
{
    bool isSaved = true;
    for (QDockWidget *dock : window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        dock->raise();
        QTest::qWait(settling / 5);
        isSaved &= dock->grab().save(picture.dir().filePath(dock->objectName() + QStringLiteral(".png")));
    }
    return isSaved;
}

/// The concentrations that the plots show, with fractions, and all currents.
bool saveExportDialog(MorvantideMainWindow &window, const QFileInfo &picture)
{
    window.showExportData();
    auto *const dialog = window.findChild<DataExportDialog *>();
    auto *const tree = dialog ? dialog->findChild<QTreeWidget *>(QStringLiteral("setupTree")) : nullptr;
    if (!tree)
        return false;
    Q_EMIT dialog->requestPlotFields();
    QVariantMap setup = dialog->setup();
    setup[QStringLiteral("general")] = QVariantMap{{QStringLiteral("output_file"), QStringLiteral("totals.txt")},
                                                   {QStringLiteral("file_name_add_opmode"), true}};
    QVariantList fields = setup[QStringLiteral("fields")].toList();
    setup[QStringLiteral("fields")] = fields << QVariantMap{{QStringLiteral("type"), QStringLiteral("electrometer")}};
    dialog->setSetup(setup);
    tree->setCurrentItem(tree->topLevelItem(1)->child(0));
    for (QGroupBox *box : dialog->findChildren<QGroupBox *>(QStringLiteral("decadeFractions")))
        box->setChecked(true);
    QTest::qWait(settling);
    return dialog->grab().save(picture.dir().filePath(QStringLiteral("export-dialog.png")));
}

int fail(const char *words)
{
    std::fprintf(stderr, "showwindow: %s\n", words);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    Log::installQtMessageHandler();
    setScale(argc, argv);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    setProgramLocale();
    registerResources();
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("size"), QString(), QStringLiteral("WxH"), QStringLiteral("1440x900")},
                       {QStringLiteral("dark"), QString()},
                       {QStringLiteral("scale"), QString(), QStringLiteral("FACTOR")},
                       {QStringLiteral("font"), QString(), QStringLiteral("POINTS")},
                       {QStringLiteral("cursors"), QString()},
                       {QStringLiteral("docks"), QString()},
                       {QStringLiteral("export"), QString()}});
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 2)
        return fail("PICTURE FOLDER [VARIANT]");
    if (parser.isSet(QStringLiteral("dark")))
        QApplication::setPalette(darkPalette());

    if (parser.isSet(QStringLiteral("font"))) {
        QFont font = QApplication::font();
        font.setPointSizeF(parser.value(QStringLiteral("font")).toDouble());
        QApplication::setFont(font);
    }

    const QTemporaryDir settings;
    MorvantideMainWindow window(settings.filePath(QStringLiteral("morvantide.conf")));
    window.resize(sizeOf(parser.value(QStringLiteral("size"))));
    window.setPositionalArguments(arguments.mid(1));
    acceptDialogWhenShown(window);
    window.show();
    if (!waitForData(window))
        return fail("no data came in");
    QTest::qWait(settling);
    arrange(window);
    if (!selectRecord(window))
        return fail("no record could be selected");
    if (parser.isSet(QStringLiteral("cursors")))
        setCursors(window);
    if (!window.grab().save(arguments[0]))
        return fail("the picture can't be written");
    if (parser.isSet(QStringLiteral("docks")) && !saveDocks(window, QFileInfo(arguments[0])))
        return fail("the pictures of the docks can't be written");
    if (parser.isSet(QStringLiteral("export")) && !saveExportDialog(window, QFileInfo(arguments[0])))
        return fail("the picture of the export dialog can't be written");
    std::printf("%s\n", qPrintable(QFileInfo(arguments[0]).absoluteFilePath()));
    return 0;
}
