#include "gui/common/recordviews/recordplot.h"
#include "gui/frame/docklayout.h"
#include "gui/frame/dockstate.h"
#include "gui/frame/framedocks.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QDockWidget>
#include <QLayout>
#include <QMainWindow>
#include <QTabBar>
#include <QTextEdit>
#include <QTreeView>

#include <gtest/gtest.h>
#include <qwt_plot_item.h>

namespace {

/// Counts the replots of the plot that it is attached to, which owns it.
struct ReplotCounter : QwtPlotItem {
    ReplotCounter(QwtPlot *plot, int *count) : m_count(count)
    {
        setItemInterest(ScaleInterest);
        attach(plot);
    }
    void updateScaleDiv(const QwtScaleDiv &, const QwtScaleDiv &) override { ++*m_count; }
    void draw(QPainter *, const QwtScaleMap &, const QwtScaleMap &, const QRectF &) const override {}
    int *m_count;
};

struct FrameDocksTest : ::testing::Test {
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    QMainWindow window;
    FrameDocks docks{ui, &window};
    SpectMath::SpectrumInfoPointer info = testInfo("ions neg", testGrid(5));
    int replots = 0, newValues = 0, newRows = 0;

    FrameDocksTest()
    {
        window.setDockNestingEnabled(true);
        window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
        window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
        window.setCentralWidget(new QTextEdit(&window));
        docks.makeAll();
        ui->setData(testMetadata({"ions"}, {"a", "b"}, {"v.mean", "w"}), {info});
        ui->publish();
        show({1280, 800});
    }
    void show(QSize size)
    {
        window.resize(size);
        window.show();
        settle();
        sizeDocks(window);
        settle();
    }
    QList<QDockWidget *> all() const
    {
        return window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    }
    QDockWidget *dock(const char *name) const { return window.findChild<QDockWidget *>(name); }
    QRect place(const char *name) const { return {dock(name)->mapTo(&window, QPoint()), dock(name)->size()}; }
    bool isSeen(const char *name) const { return !dock(name)->widget()->visibleRegion().isEmpty(); }

    /// A step to another record, of the same spectra and variables.
    void step(double value)
    {
        auto record = std::make_shared<Record>();
        record->beginTime = recordTimeFromTicks(ticksPerDay);
        record->opmode = 0;
        record->currents = record->rawCurrents = record->currentVariances = record->voltages = realVector({value, 1});
        record->variables = realVector({value, 2});
        auto spectrum = testSpectrum(info, value);
        spectrum->covariances = BandMatrix(5, 5, 0, 0);
        record->spectra = {spectrum};
        docks.showRecord(record);
        settle();
    }
    void countWork()
    {
        for (RecordViews::RecordPlot *plot : window.findChildren<RecordViews::RecordPlot *>())
            new ReplotCounter(plot, &replots);
        for (const QTreeView *list : window.findChildren<QTreeView *>()) {
            const QAbstractItemModel *const model = list->model();
            if (!model)
                continue;
            QObject::connect(model, &QAbstractItemModel::dataChanged, &window, [this] { ++newValues; });
            QObject::connect(model, &QAbstractItemModel::modelReset, &window, [this] { ++newRows; });
            QObject::connect(model, &QAbstractItemModel::rowsInserted, &window, [this] { ++newRows; });
            QObject::connect(model, &QAbstractItemModel::rowsRemoved, &window, [this] { ++newRows; });
        }
    }
    void expectWork(int plots, int lists)
    {
        EXPECT_EQ(std::exchange(replots, 0), plots);
        EXPECT_EQ(std::exchange(newValues, 0), lists);
        EXPECT_EQ(std::exchange(newRows, 0), 0) << "no list is built anew";
    }
};

} // namespace

TEST_F(FrameDocksTest, StandInTheirDefaultPlaces)
{
    for (const QSize size : {QSize(1280, 800), QSize(2560, 1440)}) {
        SCOPED_TRACE(size.width());
        show(size);
        for (const char *name :
             {"currentrecordform", "spectraView", "electrometersView", "diagnosticStatus", "logDock"})
            EXPECT_TRUE(isSeen(name)) << name;
        for (const char *name : {"electrometersPlotView", "diagnosticsView", "commentList", "reportView"})
            EXPECT_FALSE(isSeen(name)) << name;
        EXPECT_EQ(window.tabifiedDockWidgets(dock("electrometersView")),
                  (QList<QDockWidget *>{dock("diagnosticsView"), dock("varGridView")}));
        EXPECT_EQ(window.tabifiedDockWidgets(dock("spectraView")), QList<QDockWidget *>{dock("electrometersPlotView")});
        EXPECT_EQ(place("spectraView").left(), place("currentrecordform").left());
        EXPECT_GT(place("spectraView").top(), place("currentrecordform").bottom());
        EXPECT_GT(place("diagnosticStatus").top(), place("electrometersView").bottom());
        EXPECT_GT(place("electrometersView").left(), size.width() / 2);
        EXPECT_GE(window.centralWidget()->width() * 2, size.width());
        EXPECT_LT(place("logDock").height(), size.height() / 4);
        EXPECT_GT(place("logDock").left(), place("spectraView").right()) << "between the sides";
    }
}

TEST_F(FrameDocksTest, ALayoutOfAProgramWithoutADockLeavesItInSight)
{
    const QByteArray state = window.saveState(2);
    QMainWindow later;
    later.setCentralWidget(new QTextEdit(&later));
    FrameDocks laterDocks(ui, &later);
    auto *const added = new QDockWidget(QStringLiteral("Added"), &later);
    added->setObjectName(QStringLiteral("measuringDock"));
    laterDocks.add(added, {});
    laterDocks.makeAll();
    later.resize(1280, 800);
    later.show();
    settle();
    ASSERT_TRUE(later.restoreState(state, 2));
    settle();
    EXPECT_FALSE(added->isHidden() || added->isFloating());
    EXPECT_TRUE(later.tabifiedDockWidgets(later.findChild<QDockWidget *>("logDock")).contains(added));
}

TEST_F(FrameDocksTest, CostNothingWhileTheyAreUnseen)
{
    for (QDockWidget *each : all())
        each->setFloating(true); // seen, all of them
    settle();
    step(1);
    countWork();
    step(2);
    expectWork(2, 2);

    for (QDockWidget *each : all())
        each->close();
    step(3);
    expectWork(0, 0);
    ui->publish();
    settle();
    expectWork(0, 0);

    for (QDockWidget *each : all()) {
        each->setFloating(false);
        each->show();
        if (each != dock("logDock"))
            window.tabifyDockWidget(dock("logDock"), each);
    }
    dock("logDock")->raise();
    settle();
    step(4); // what came into sight on the way is up to date again
    replots = newValues = newRows = 0;
    step(5);
    step(6);
    expectWork(0, 0);
    dock("electrometersView")->raise();
    settle();
    expectWork(0, 1);
    EXPECT_EQ(dock("electrometersView")->findChild<QTreeView *>()->model()->index(0, 3).data().toString(), "6.000");
}

TEST_F(FrameDocksTest, DocksOfALargeWindowLeaveRoomForTheCentreOfASmallOne)
{
    window.resizeDocks({dock("currentrecordform"), dock("electrometersView")}, {450, 450}, Qt::Horizontal);
    window.resizeDocks({dock("logDock")}, {400}, Qt::Vertical);
    settle();
    QVariantMap large;
    storeDockState(large, window);
    const QSize centre = window.centralWidget()->size();
    EXPECT_EQ(restoreDockState(window, large), QString());
    EXPECT_EQ(window.centralWidget()->size(), centre);
    window.resize(960, 600);
    settle();
    EXPECT_EQ(restoreDockState(window, large), QString());
    settle();
    EXPECT_GE(window.centralWidget()->width(), 960 / 3);
    EXPECT_GE(window.centralWidget()->height(), 600 / 3);
}

/// The toolkit goes through the set of its tab bars while it shows them, and lays out with another set: of the first
/// one nothing is left then.
TEST_F(FrameDocksTest, NothingLaysOutTheWindowWhileTabsAreRestored)
{
    struct LaysOut : QObject {
        QLayout *layout = nullptr;
        int tabBars = 0, layouts = 0;
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Show && qobject_cast<QTabBar *>(watched)) {
                ++tabBars;
                layout->invalidate();
                layouts += layout->activate(); // as the toolkit does where anything has changed
            }
            return false;
        }
    } laysOut;
    laysOut.layout = window.layout();
    QVariantMap tabbed;
    storeDockState(tabbed, window);
    for (QDockWidget *one : all())
        window.addDockWidget(Qt::LeftDockWidgetArea, one); // which takes it out of its tabs
    settle();
    qApp->installEventFilter(&laysOut);
    EXPECT_EQ(restoreDockState(window, tabbed), QString());
    qApp->removeEventFilter(&laysOut);
    EXPECT_GT(laysOut.tabBars, 1);
    EXPECT_EQ(laysOut.layouts, 0);
    window.layout()->invalidate();
    EXPECT_TRUE(window.layout()->activate()) << "it can be laid out again";
}
