#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/view.h"
#include "gui/common/recordviews/recordview.h"
#include "gui/morvantide/layoutwindow.h"
#include "support/imagedifference.h"
#include "support/logcatcher.h"

#include <QScrollBar>

namespace {

class DockLayouts : public Layouts {
protected:
    QImage picture() const
    {
        QTest::qWait(250); // values off a scale are counted a moment after its drawing
        return browser().grab().toImage();
    }
    /// Of the docks, in the window or outside; empty for hidden ones.
    QMap<QString, QRect> places() const
    {
        QMap<QString, QRect> all;
        for (const QDockWidget *one : window->findChildren<QDockWidget *>())
            all[one->objectName()] = one->isHidden() ? QRect() : QRect(one->mapTo(one->window(), {}), one->size());
        return all;
    }
    QVector<QPair<double, double>> colorLimits() const
    {
        QVector<QPair<double, double>> all;
        for (const Colorbar *bar : browser().findChildren<Colorbar *>())
            all.append({bar->lower(), bar->upper()});
        return all;
    }
    /// The area of each dock, and how many others share its tabs; 0 for one outside, or hidden.
    QMap<QString, QPair<int, int>> neighbours() const
    {
        QMap<QString, QPair<int, int>> all;
        for (QDockWidget *one : window->findChildren<QDockWidget *>())
            all[one->objectName()] = {one->isHidden() || one->isFloating() ? 0 : window->dockWidgetArea(one),
                                      window->tabifiedDockWidgets(one).size()};
        return all;
    }
};

} // namespace

TEST_F(DockLayouts, TheNextRunShowsTheSamePictureAndDocks)
{
    open();
    const int before = browser().views().size();
    ASSERT_GT(before, 3);
    browser().closeView(browser().views()[1]);
    browser().addElectrometerPlot(2);
    browser().addFlagPlot("none");
    browser().setLeftColumnWidth(150);
    browser().views()[2]->setFixedHeight(123);
    dock("commentList")->hide();
    dock("diagnosticStatus")->setFloating(true);
    window->addDockWidget(Qt::BottomDockWidgetArea, dock("spectraView"));
    window->resizeDocks({dock("currentrecordform")}, {260}, Qt::Horizontal);
    settle();
    window->fitTimescale();
    browser().allFitScale();
    settleDrawing();
    const QImage image = picture();
    const auto docks = places();
    const auto limits = colorLimits();
    setAutosave(true);
    restart();
    EXPECT_EQ(places(), docks) << "before there are data";
    EXPECT_FALSE(action("Autosave layout")->isChecked());
    open();
    EXPECT_EQ(places(), docks);
    EXPECT_EQ(browser().views().size(), before + 1);
    EXPECT_TRUE(action("Autosave layout")->isChecked());
    EXPECT_EQ(colorLimits(), limits);
    EXPECT_LE(greatestDifference(picture(), image), 8);
}

TEST_F(DockLayouts, TheDefaultLayoutConcernsDocksAndRecordsAlone)
{
    open();
    const auto docks = neighbours();
    const auto *const plots = window->findChild<RecordViews::RecordView *>("spectraView");
    const QVariantMap standardChoices = plots->setup();
    dock("logDock")->hide();
    dock("commentList")->setFloating(true);
    window->addDockWidget(Qt::LeftDockWidgetArea, dock("electrometersView"));
    window->findChild<RecordViews::RecordView *>("spectraView")->restoreSetup({{"single_plot", false}});
    setAutosave(true);
    browser().closeAllViews();
    settle();
    action("Restore default layout")->trigger();
    settle();
    EXPECT_EQ(neighbours(), docks);
    EXPECT_EQ(plots->setup(), standardChoices);
    EXPECT_TRUE(isAutosaving());
    EXPECT_FALSE(browser().hasViews());
    action("Undo restore")->trigger();
    settle();
    EXPECT_TRUE(dock("logDock")->isHidden() && dock("commentList")->isFloating());
    EXPECT_EQ(plots->setup()["single_plot"], false);
}

TEST_F(DockLayouts, OpeningDataNeverMovesTheWindowAndKeepsTheChosenColours)
{
    open();
    const auto spectrum = window->uiInfo()->spectrumInfos().first();
    window->uiInfo()->setSpectrumColor(spectrum.get(), Qt::magenta);
    window->uiInfo()->publish();
    action("Save layout")->trigger();
    window->close();
    window.reset();
    QFile::remove(settingsFile());
    makeWindow();
    window->setGeometry(10, 20, 1000, 700);
    window->show();
    open();
    EXPECT_EQ(window->geometry(), QRect(10, 20, 1000, 700));
    EXPECT_EQ(window->uiInfo()->spectrumColor(spectrum.get()), QColor(Qt::magenta));
    setAutosave(true);
    window->closeData();
    EXPECT_TRUE(isAutosaving());
    QFile::remove(standard());
    open();
    EXPECT_TRUE(isAutosaving()) << "without a file the choice stays";
}

TEST_F(DockLayouts, TimeSpanAndRecordAreKeptIfTheUserWants)
{
    open();
    for (const bool isKept : {false, true}) {
        window->fitTimescale();
        const TimeScale whole = browser().timeScale();
        window->showRecord(window->datastore()->at(3));
        browser().timeView()->changeZoom(0.37, 200);
        const TimeScale shown = browser().timeScale();
        action("Keep time span and record")->setChecked(isKept);
        setAutosave(true);
        restart();
        EXPECT_FALSE(action("Keep time span and record")->isChecked());
        open();
        EXPECT_EQ(action("Keep time span and record")->isChecked(), isKept);
        EXPECT_EQ(browser().timeScale().rebased(0), (isKept ? shown : whole).rebased(0));
        EXPECT_EQ(window->shownRecord(), isKept ? window->datastore()->at(3) : nullptr);
        EXPECT_FALSE(action("Previous view")->isEnabled());
    }
    restart();
    QVariantMap setup = setupIn(standard());
    setup["keptplace"] = QVariantMap{{"begin", "0"}, {"end", "36000000000"}};
    EXPECT_EQ(WindowSetup::writeSetupFile(standard(), setup), QString());
    open();
    const TimeScale shown = browser().timeScale();
    window->fitTimescale();
    EXPECT_EQ(browser().timeScale(), shown) << "a span without any of these data";
}

TEST_F(DockLayouts, DocksComeBackWithoutData)
{
    dock("varGridView")->hide();
    window->addDockWidget(Qt::LeftDockWidgetArea, dock("logDock"));
    settle();
    const auto docks = places();
    restart();
    EXPECT_EQ(places(), docks);
    window->close();
    window.reset();
    makeWindow();
    window->close(); // by a signal that came before it was shown
    restart();
    EXPECT_EQ(places(), docks);
    window->close();
    window.reset();
    const struct {
        const char *name, *key;
        QVariant value;
        const char *warning;
    } cases[] = {{"damaged", "MainWindow/state", "00ff", "checksum doesn't match"},
                 {"no text", "MainWindow/state", QVariantList{1, 2}, "The docks stand"},
                 {"brought the program down", "restoring", settingsFile(), "the program ended"}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.name);
        const QByteArray sound = ::contentOf(settingsFile());
        QSettings(settingsFile(), QSettings::IniFormat).setValue(one.key, one.value);
        const LogCatcher log;
        makeWindow();
        show();
        ASSERT_EQ(log.complaints().size(), 1);
        EXPECT_TRUE(log.complaints()[0].contains(one.warning));
        EXPECT_FALSE(dock("varGridView")->isHidden());
        window->close(); // keeps docks that are sound
        window.reset();
        EXPECT_FALSE(settings().contains("restoring"));
        writeFile(settingsFile(), sound);
    }
}

TEST_F(DockLayouts, DocksOfAMaximizedWindowComeBackAsTheyWereThoughItBeginsSmaller)
{
    open();
    window->resize(620, 500);
    window->showMaximized();
    settle();
    window->resizeDocks({dock("currentrecordform")}, {320}, Qt::Horizontal);
    window->resizeDocks({dock("logDock")}, {400}, Qt::Vertical);
    window->resizeDocks({dock("currentrecordform")}, {380}, Qt::Vertical);
    settle();
    const auto docks = places();
    action("Save layout")->trigger();
    window->showNormal();
    settle();
    ASSERT_NE(places(), docks);
    found("default.windowsetup")->trigger();
    settle();
    EXPECT_EQ(places(), docks) << "restored by hand";
    window->close();
    window.reset();
    makeWindow();
    window->show();
    settle();
    EXPECT_EQ(places(), docks) << "in the next run";
}

TEST_F(DockLayouts, TheLogStillShowsItsEndAfterARestoreMadeItSmaller)
{
    open();
    action("Save layout")->trigger();
    for (int i = 0; i < 60; ++i)
        Log::Logger("gui").log(Log::Info, QString("line %1").arg(i));
    const QScrollBar *const bar = dock("logDock")->findChild<QPlainTextEdit *>()->verticalScrollBar();
    for (QAction *command : {found("default.windowsetup"), action("Restore default layout"), action("Undo restore")}) {
        SCOPED_TRACE(command->text().toStdString());
        window->resizeDocks({dock("logDock")}, {command == action("Undo restore") ? 60 : 400}, Qt::Vertical);
        settle();
        const int page = bar->pageStep();
        command->trigger();
        settle();
        EXPECT_NE(bar->pageStep(), page);
        EXPECT_EQ(bar->value(), bar->maximum());
    }
}
