#include "gui/browser/views/colorlock.h"
#include "spectrogramfixture.h"

#include <QLineEdit>
#include <QSignalSpy>

namespace {

using Tsb::SpectrogramView;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

void type(ExpSpinBox &box, const char *text)
{
    auto *edit = box.findChild<QLineEdit *>();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

TEST_F(SpectrogramViewTest, TheFirstChoiceIsFittedAndLaterOnesAreNot)
{
    EXPECT_TRUE(std::isnan(view.colorLower()));
    choose({"unknown"});
    EXPECT_TRUE(std::isnan(view.colorLower())) << "nothing to fit to";
    choose({"a"});
    // The values in view run from 1.05 to 3.95 decades.
    EXPECT_NEAR(view.colorLower(), 1.05, 0.011);
    EXPECT_NEAR(view.colorUpper(), 3.95, 0.011);
    EXPECT_EQ(view.rows()[0].plot->colorLower(), view.colorLower());
    view.setColorLimits(0, 7);
    choose({"a", "b"});
    EXPECT_EQ(view.colorLower(), 0);
    EXPECT_EQ(view.rows()[1].plot->colorUpper(), 7) << "a new row gets the limits";
    QTest::mouseDClick(&bar(), Qt::LeftButton);
    EXPECT_NEAR(view.colorLower(), 1.05, 0.06);
    view.setDatastore(nullptr);
    view.setColorLimits(0, 7);
    action("Fit color map").trigger();
    EXPECT_EQ(view.colorLower(), 0);
}

TEST_F(SpectrogramViewTest, AFitToTheLimitsThatTheBarShowsAlreadySetsThem)
{
    Datastore between;
    between.setLimitRecords(false);
    addSpectrumRecord(between, 0, 100, testSpectrum(a, 10)); // 1 and 3 decades: what a new bar shows
    addSpectrumRecord(between, 100, 200, testSpectrum(a, 1000));
    view.setDatastore(&between);
    choose({"a"});
    EXPECT_EQ(view.colorLower(), 1);
    EXPECT_EQ(view.colorUpper(), 3);
    EXPECT_EQ(view.settings().toMap()["colorUpper"], 3.0);
}

TEST_F(SpectrogramViewTest, BarBoxesAndPlotsShowTheSameLimits)
{
    choose({"a"});
    bar().setLimits(0, 2);
    EXPECT_EQ(low().value(), 1);
    EXPECT_EQ(high().value(), 100);
    EXPECT_EQ(view.rows()[0].plot->colorUpper(), 2);

    QSignalSpy limits(&view, &SpectrogramView::requestColorLimits);
    type(high(), "250"); // passes 2, below the lower limit of 10, on the way
    view.setColorLimits(1, 2);
    limits.clear();
    type(high(), "250");
    EXPECT_DOUBLE_EQ(view.colorUpper(), std::log10(250));
    EXPECT_DOUBLE_EQ(bar().upper(), std::log10(250));
    EXPECT_EQ(view.rows()[0].plot->colorUpper(), view.colorUpper());
    QTest::keyClick(&high(), Qt::Key_Up);
    EXPECT_NEAR(view.colorUpper(), std::log10(250) + 0.1, 1e-9);
    EXPECT_EQ(limits.size(), 3); // 25, 250 and the step

    type(low(), "9e5"); // above the upper limit
    EXPECT_EQ(view.colorLower(), std::log10(9)) << "the last that was below";
    QTest::keyClick(&low(), Qt::Key_Return);
    EXPECT_EQ(low().value(), 9) << "the text goes back";
}

TEST_F(SpectrogramViewTest, UnusableLimitsAreRefused)
{
    choose({"a"});
    view.setColorLimits(1, 3);
    QSignalSpy limits(&view, &SpectrogramView::requestColorLimits);
    for (auto [lower, upper] : std::vector<std::pair<double, double>>{
             {nan, 3}, {1, nan}, {3, 1}, {0, 20.5}, {-inf, inf}, {1e300, 1e300}, {1, 3}})
        view.setColorLimits(lower, upper);
    EXPECT_EQ(limits.size(), 0);
    EXPECT_EQ(bar().upper(), 3);
    high().setValue(1e40);
    EXPECT_EQ(high().value(), 1000);
    low().setValue(5000);
    EXPECT_EQ(low().value(), 10);
    view.setColorLimits(2, 2);
    EXPECT_EQ(limits.size(), 1);
    EXPECT_FALSE(picture().isNull());
}

TEST_F(SpectrogramViewTest, HoveringAMapPreviewsIt)
{
    choose({"a"});
    const QImage chosen = picture();
    action("Hot", "Dark background").hover();
    const QImage previewed = picture();
    EXPECT_NE(previewed, chosen);
    auto *menu = qobject_cast<QMenu *>(action("Hot", "Dark background").parent());
    Q_EMIT menu->aboutToHide();
    EXPECT_EQ(picture(), chosen);
    EXPECT_EQ(view.colormapName(), "jet");

    action("Hot", "Dark background").trigger();
    EXPECT_EQ(picture(), previewed);
    EXPECT_EQ(view.colormapName(), "hot");
    EXPECT_FALSE(view.isWhiteBackground());
    EXPECT_TRUE(action("Hot", "Dark background").isChecked());
    EXPECT_FALSE(action("Jet", "Light background").isChecked());
    view.setColormap("unknown", true);
    EXPECT_FALSE(view.isWhiteBackground());
    view.setColormap("viridis", true);
    EXPECT_TRUE(action("Viridis", "Light background").isChecked());
    EXPECT_EQ(bar().colormap()(0.5), Colormap::make(1)(0.5));
}

TEST_F(SpectrogramViewTest, AMarkSplitsTheColorsInTwoZones)
{
    choose({"a"});
    view.setColorLimits(1, 4);
    const QImage plain = picture();
    const QPoint middle = bar().contentsRect().center();
    QTest::mousePress(&bar(), Qt::RightButton, {}, middle);
    const QImage marked = picture();
    // The first record lies below the mark and gets darker, the last of the view above and gets paler.
    EXPECT_LT(qGray(marked.pixel(15, 20)), qGray(plain.pixel(15, 20)));
    EXPECT_GT(qGray(marked.pixel(575, 20)), qGray(plain.pixel(575, 20)));
    QTest::mouseRelease(&bar(), Qt::RightButton, {}, middle);
    EXPECT_EQ(picture(), plain);
}

TEST_F(SpectrogramViewTest, LockedLimitsAreCommonAndAreFittedToAllThatJoined)
{
    Tsb::ColorLock lock;
    SpectrogramView others[2];
    const auto limits = [](const SpectrogramView &v) { return QPair(v.colorLower(), v.colorUpper()); };
    const auto setLocked = [](SpectrogramView &v, bool on) {
        QVariantMap map = v.settings().toMap();
        map["lockColors"] = on;
        v.setSettings(map);
    };
    for (SpectrogramView *v : {&view, &others[0], &others[1]}) {
        prepare(*v);
        v->setColorLock(&lock);
        v->setVisibleSpectra({QStringLiteral("id-a")});
        settle();
        v->setColorLimits(0, 1);
    }
    view.setColorLimits(1, 2);
    action("Lock color limits").trigger();
    setLocked(others[0], true);
    EXPECT_EQ(limits(others[0]), QPair(1.0, 2.0)) << "the newcomer takes the others'";
    others[0].lowSpinBoxChanged(20);
    EXPECT_EQ(limits(view), limits(others[0]));
    EXPECT_EQ(limits(others[1]), QPair(0.0, 1.0)) << "it isn't locked";

    others[0].setTimeScale(TimeScale(testStart + Ticks(400 * ticksPerSecond), ticksPerSecond, 0));
    view.setTimeScale(TimeScale(testStart - Ticks(400 * ticksPerSecond), ticksPerSecond, 0));
    others[0].fitScale();
    const auto common = limits(view);
    EXPECT_EQ(common, limits(others[0]));
    setLocked(others[0], false);
    others[0].fitScale();
    EXPECT_GT(others[0].colorLower(), common.first) << "its own values are the greater ones";
    EXPECT_EQ(limits(view), common);
    setLocked(others[0], true);
    EXPECT_EQ(limits(others[0]), common);
    {
        SpectrogramView passing;
        passing.setColorLock(&lock);
        setLocked(passing, true);
        EXPECT_EQ(limits(passing), common);
    }
    view.fitScale(); // without the one that is gone
    EXPECT_EQ(limits(view), limits(others[0]));
}

} // namespace
