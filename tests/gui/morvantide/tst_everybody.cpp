#include "gui/morvantide/reviewwindow.h"

#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/complainttext.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/common/recordtext.h"
#include "gui/common/recordviews/distribution/spectraview.h"
#include "gui/morvantide/readprogressdialog.h"
#include "support/gestures.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QTranslator>

namespace {

constexpr int patience = 10000; // ms

/// The toolkit's own parts, which it names or never gives to a reader of the screen.
bool isOfToolkit(const QObject *object)
{
    const QString name = object->objectName();
    return (name.startsWith("qt_") && name != "qt_scrollarea_viewport") || object->inherits("QFileDialog") ||
           object->inherits("QScrollBar") || object->inherits("QToolBarExtension") || object->inherits("QTabBar") ||
           object->inherits("QHeaderView") || object->inherits("QLineEditIconButton") ||
           object->inherits("QComboBoxPrivateContainer") || object->inherits("QColorDialog");
}

bool isForTheHand(const QWidget &widget)
{
    return (widget.focusPolicy() != Qt::NoFocus && !qobject_cast<const QLabel *>(&widget)) ||
           qobject_cast<const QAbstractButton *>(&widget) || widget.inherits("Tsb::Plot") ||
           widget.inherits("QwtPlot") || widget.inherits("Tsb::Colorbar") || widget.inherits("Tsb::TimeView") ||
           widget.inherits("Tsb::VerticalScaleWidget");
}

bool isDrawing(const QWidget &widget)
{
    return widget.inherits("Tsb::Plot") || widget.inherits("QwtPlot");
}

QString placeOf(const QObject *object)
{
    QStringList way;
    for (; object; object = object->parent())
        way.prepend(QString("%1(%2)").arg(object->metaObject()->className(), object->objectName()));
    return way.join(" > ");
}

/// What a reader of the screen would find in that part and below it.
void walk(QAccessibleInterface *part, QStringList *faults, int *count)
{
    const QObject *const object = part->object();
    if (!object || isOfToolkit(object))
        return;
    const auto *const widget = qobject_cast<const QWidget *>(object);
    if (widget && isForTheHand(*widget)) {
        ++*count;
        if (part->text(QAccessible::Name).trimmed().isEmpty())
            *faults << "without a name: " + placeOf(object);
        else if (isDrawing(*widget) && part->text(QAccessible::Description).trimmed().isEmpty())
            *faults << "without a description: " + placeOf(object);
    }
    if (widget && (widget->inherits("QComboBox") || widget->inherits("QAbstractSpinBox") ||
                   widget->inherits("QAbstractItemView")))
        return; // its parts belong to it
    for (int i = 0; i < part->childCount(); ++i)
        if (QAccessibleInterface *const child = part->child(i))
            walk(child, faults, count);
}

/// German, and what the windows ask it for in vain.
class German : public QTranslator {
public:
    German() { EXPECT_TRUE(load(":/translations/morvantide_de.qm")); }
    QString translate(const char *context, const char *text, const char *disambiguation, int n) const override
    {
        const QString found = QTranslator::translate(context, text, disambiguation, n);
        const bool isToolkits = context[0] == 'Q' || qstrlen(text) == 0;
        if (found.isEmpty() && !isToolkits)
            missing << QString("%1: %2").arg(context, text);
        return found;
    }

    mutable QStringList missing;
};

} // namespace

class Everybody : public ReviewWindow {
protected:
    /// Looks at each window that the command shows, and closes it.
    void lookBehind(QAction &command)
    {
        const QString text = command.text();
        bool wasSeen = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            for (QWidget *one : QApplication::topLevelWidgets()) {
                auto *const dialog = qobject_cast<QDialog *>(one);
                if (!dialog || !dialog->isVisible())
                    continue;
                wasSeen = true;
                if (auto *const exporting = qobject_cast<DataExportDialog *>(dialog))
                    for (const char *kind : {"concentration", "spectrum", "variable", "electrometer"})
                        exporting->addFields({QVariantMap{{"type", kind}}});
                look(*dialog, text);
                dialog->reject();
            }
        });
        poll.start(50);
        command.trigger();
        EXPECT_TRUE(QTest::qWaitFor([&] { return wasSeen; }, patience)) << "no dialog behind " << text.toStdString();
        settle();
    }
    void look(QWidget &shown, const QString &name)
    {
        QStringList faults;
        walk(QAccessible::queryAccessibleInterface(&shown), &faults, &m_count);
        for (const QString &fault : qAsConst(faults))
            ADD_FAILURE() << name.toStdString() << ": " << fault.toStdString();
    }
    /// Every kind of plot, every dock, and a record.
    void showAll()
    {
        open();
        window->resize(1600, 1200);
        window->show();
        for (QDockWidget *dock : window->findChildren<QDockWidget *>())
            dock->show();
        auto *const browser = window->browser();
        for (QAction *add : browser->addPlotActions())
            add->trigger();
        window->showInfoWindow();
        window->showRecord(window->datastore()->records()[2]);
        settle();
    }
    void lookAtAll()
    {
        look(*window, "main window");
        for (QWidget *one : window->findChildren<QWidget *>())
            if (one->isWindow() && !qobject_cast<QMenu *>(one))
                look(*one, "popup");
        for (QAction *command : window->findChildren<QAction *>()) {
            const QString text = command->text().remove('&');
            const bool opensDialog = text.endsWith("...") || text == RecordViews::SpectraView::tr("Settings");
            if (opensDialog && command->isEnabled())
                lookBehind(*command);
        }
        ReadProgressDialog progress(3, window.get());
        progress.show();
        look(progress, "reading");
    }

    int m_count = 0;
};

TEST_F(Everybody, FindsEachControlAndPlotNamed)
{
    showAll();
    lookAtAll();
    EXPECT_GT(m_count, 100);
}

TEST_F(Everybody, HearsFromEachPlotWhichRecordIsSelectedAndItsValue)
{
    showAll();
    int record = 5, count = 0;
    for (const char *dock : {"spectraView", "electrometersPlotView"}) { // one behind the other
        window->findChild<QDockWidget *>(dock)->raise();
        const auto selected = window->datastore()->at(record++);
        window->showRecord(selected);
        settle();
        for (QWidget *one : window->findChildren<QWidget *>()) {
            if (!isDrawing(*one) || one->visibleRegion().isEmpty())
                continue;
            ++count;
            const QString text = QAccessible::queryAccessibleInterface(one)->text(QAccessible::Description);
            const QString moment = RecordText::moment(*selected) + ": ";
            EXPECT_TRUE(text.startsWith(moment) && text.size() > moment.size())
                << placeOf(one).toStdString() << ": " << text.toStdString();
        }
    }
    EXPECT_GT(count, 12);
}

TEST_F(Everybody, GoesDownThroughEachDockByTab)
{
    showAll();
    for (const QDockWidget *dock : window->findChildren<QDockWidget *>()) {
        int bottom = 0;
        for (QWidget *one = dock->nextInFocusChain(); one != dock; one = one->nextInFocusChain()) {
            if (!dock->widget() || !dock->widget()->isAncestorOf(one) || one->isHidden() || one->focusProxy() ||
                !(one->focusPolicy() & Qt::TabFocus))
                continue;
            const int top = one->mapTo(dock, QPoint()).y();
            EXPECT_GE(top + one->height(), bottom) << placeOf(one).toStdString();
            bottom = top;
        }
    }
}

TEST_F(Everybody, ReadsEachTextInGerman)
{
    German german;
    window.reset();
    QCoreApplication::installTranslator(&german);
    makeWindow();
    showAll();
    lookAtAll();
    window.reset();
    EXPECT_EQ(complaintText("Unable to write file 'a%1': No space left on device"),
              "Die Datei 'a%1' kann nicht geschrieben werden: Kein Platz mehr auf dem Gerät");
    EXPECT_EQ(complaintText("of another kind"), "of another kind");
    QCoreApplication::removeTranslator(&german);
    EXPECT_TRUE(german.missing.isEmpty()) << german.missing.join('\n').toStdString();
}
