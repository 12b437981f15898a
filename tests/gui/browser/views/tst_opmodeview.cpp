#include "gui/browser/views/opmodeview.h"

#include "support/plotstore.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace {

using Tsb::OpmodeView;

/// A view over a store of two modes, shown for real.
class OpmodeStrip : public ::testing::Test {
protected:
    void SetUp() override
    {
        uiInfo->setData(testMetadata({"ions", "particles"}), {});
        uiInfo->publish();
        view.setUiInfo(uiInfo);
        view.setDatastore(&store);
        view.setTimeScale(TimeScale(testStart, ticksPerSecond, 10));
        view.resize(400, view.height());
        view.show();
    }

    std::shared_ptr<Record> add(double begin, double end, int opmode, const QString &flag = QString())
    {
        auto record = testRecord(begin, end, opmode);
        if (!flag.isEmpty()) {
            auto raised = std::make_shared<Spectrometer::RecordFlag>();
            raised->text = flag;
            raised->hash = qHash(flag, 0);
            record->flags.push_back(raised);
        }
        store.addFullRecord(record);
        return store.at(store.lowerBoundIndex(record->beginTime));
    }

    /// The colour in the middle of the bar at that second.
    QColor colorAt(double second)
    {
        view.grab();
        const QImage &image = view.plot()->image();
        return image.pixelColor(10 + int(second), image.height() / 2);
    }

    Datastore store;
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    OpmodeView view;
};

TEST_F(OpmodeStrip, TintsEachBarByItsMode)
{
    add(0, 20, 0);
    add(20, 40, 1);
    add(60, 80, -1);
    EXPECT_EQ(colorAt(10), Tsb::paleTint(uiInfo->opmodeColor(0)));
    EXPECT_EQ(colorAt(30), Tsb::paleTint(uiInfo->opmodeColor(1)));
    EXPECT_EQ(colorAt(50), QColor(Qt::white)) << "gaps stay white";
    EXPECT_EQ(view.plot()->image().pixelColor(10 + 60, view.plot()->image().height() / 2), QColor(Qt::black));
    EXPECT_EQ(view.toolTip(), "Opmode");
    EXPECT_EQ(Tsb::paleTint(QColor(196, 160, 1)), QColor(225, 207, 127));
}

TEST_F(OpmodeStrip, AProvisionalRecordIsHalfAsHigh)
{
    auto record = testRecord(0, 20, 0);
    record->provisional = true;
    store.addFullRecord(record);
    EXPECT_EQ(colorAt(10), QColor(Qt::white));
    const QImage &image = view.plot()->image();
    EXPECT_EQ(image.pixelColor(20, 2), QColor(Qt::white));
    bool framed = false;
    for (int y = 2; y < image.height() / 2; ++y)
        framed = framed || image.pixelColor(20, y) != QColor(Qt::white);
    EXPECT_TRUE(framed);
}

TEST_F(OpmodeStrip, ShowsWhereAFlagIsRaised)
{
    const QString text = "{type: \"warning\", message: \"sheath <low>\"}";
    add(0, 20, 0, text);
    add(20, 40, 1);
    const int opmodeHeight = view.height();
    view.showFlag(text);
    EXPECT_EQ(colorAt(10), Tsb::paleTint(uiInfo->opmodeColor(0)));
    EXPECT_EQ(colorAt(30), QColor(238, 238, 236));
    const auto *label = view.findChild<QLabel *>();
    EXPECT_EQ(label->text(), "sheath <low>");
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(view.height(), opmodeHeight + label->sizeHint().height());

    add(60, 80, 1, text); // a later record, and one in front of all
    add(-8, -1, 1, text);
    EXPECT_EQ(colorAt(70), Tsb::paleTint(uiInfo->opmodeColor(1)));
    EXPECT_EQ(colorAt(-5), Tsb::paleTint(uiInfo->opmodeColor(1)));

    const QVariant settings = view.settings();
    view.showOpmode();
    EXPECT_EQ(view.height(), opmodeHeight);
    EXPECT_EQ(view.settings(), QVariant(QVariantMap{{"type", "opmode"}}));
    view.setSettings(QVariantMap{{"type", 7}});
    EXPECT_EQ(view.plot()->mode(), Tsb::OpmodePlot::Opmode);
    view.setSettings(settings);
    EXPECT_EQ(view.settings(), settings);
    EXPECT_EQ(view.plot()->mode(), Tsb::OpmodePlot::Flag);
}

TEST_F(OpmodeStrip, AMessageOfManyLinesLeavesTheStripItsHeight)
{
    view.showFlag("message: one line");
    QApplication::processEvents();
    const int stripHeight = view.plot()->height();
    EXPECT_GT(stripHeight, view.fontMetrics().height() / 2);
    for (const int lines : {2, 10, 11, 12, 60}) {
        QStringList message;
        for (int i = 0; i < lines; ++i)
            message << QStringLiteral("line %1").arg(i);
        view.showFlag(QStringLiteral("message: \"%1\"").arg(message.join("\\n")));
        QApplication::processEvents();
        EXPECT_EQ(view.plot()->height(), stripHeight) << lines;
        EXPECT_EQ(view.findChild<QLabel *>()->text().count('\n'), lines - 1);
    }
    EXPECT_LT(view.height(), 300);
    const QString endless(1'000'000, 'x');
    view.showFlag(endless);
    EXPECT_LT(view.findChild<QLabel *>()->text().size() + view.toolTip().size(), 10'000)
        << "it takes seconds to lay out";
    EXPECT_EQ(view.settings().toMap()["flag"], endless);
}

TEST_F(OpmodeStrip, TheTimeCursorOfOtherPlotsRunsThrough)
{
    add(0, 20, 0);
    const QImage without = view.plot()->grab().toImage();
    Q_EMIT view.timeCursorChange(true, 60);
    QImage with = view.plot()->grab().toImage();
    const QRect contents = view.plot()->contentsRect();
    for (int y = contents.top(); y <= contents.bottom(); ++y) {
        EXPECT_EQ(with.pixelColor(60, y), QColor(175, 175, 175)) << y;
        with.setPixel(60, y, without.pixel(60, y));
    }
    EXPECT_EQ(with, without);
}

/// The axis follows the present moment at 10 s a column, and each record is told 20 s late.
TEST_F(OpmodeStrip, ChangesLeftOfTheOriginLeaveNoColumnHalfDrawn)
{
    for (int i = 0; i < 600; ++i) {
        const int now = 10 * i;
        view.setTimeScale({testStart + Ticks(now * ticksPerSecond), 10 * ticksPerSecond, 380});
        add(now - 20 + i % 10, now - 18 + i % 10, i % 2);
        view.grab();
    }
    const QImage grown = view.plot()->image().copy();
    view.plot()->reloadSetup();
    view.grab();
    EXPECT_EQ(grown, view.plot()->image());
}

} // namespace
