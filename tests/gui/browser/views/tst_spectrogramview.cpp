#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/controls/zeroswatch.h"
#include "gui/browser/views/colorlock.h"
#include "gui/browser/views/spectrogramview.h"
#include "support/gestures.h"
#include "support/plotstore.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Tsb::SpectrogramView;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class SpectrogramViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        store.setLimitRecords(false);
        for (int i = 0; i < 60; ++i)
            addSpectrumRecord(store, i * 10, i * 10 + 10, testSpectrum(i % 2 ? a : b, std::pow(10, 1 + i * 0.05)));
        uiInfo->setData(std::make_shared<Spectrometer::RecordMetadata>(), {a, b, single});
        uiInfo->publish();
        prepare(view);
    }
    void prepare(SpectrogramView &v)
    {
        v.resize(700, 240);
        v.setLeftMargin(110);
        v.setTimeScale(TimeScale(testStart, ticksPerSecond, 0));
        v.setUiInfo(uiInfo);
        v.setDatastore(&store);
        v.show();
    }
    void choose(std::initializer_list<const char *> names)
    {
        QSet<QString> ids;
        for (const char *name : names)
            ids.insert(QStringLiteral("id-") + QLatin1String(name));
        view.findChild<Tsb::SpectraSelectionWidget *>()->setSelectedSpectra(ids); // as the user does
    }
    std::string labels() const
    {
        std::string all;
        for (const auto &row : view.rows())
            all += row.scale->label().section(QLatin1Char('\n'), 0, 0).toStdString() + ";";
        return all;
    }
    Colorbar &bar() { return *view.findChild<Colorbar *>(); }
    ExpSpinBox &low() { return *view.findChildren<ExpSpinBox *>()[0]; }
    ExpSpinBox &high() { return *view.findChildren<ExpSpinBox *>()[1]; }
    QDoubleSpinBox &smoothing() { return *view.findChild<QDoubleSpinBox *>(); }
    QAction &action(const QString &text, const QString &parentMenu = QString())
    {
        for (QAction *candidate : view.findChildren<QAction *>()) {
            const auto *menu = qobject_cast<QMenu *>(candidate->parent());
            if (candidate->text() == text && (parentMenu.isEmpty() || (menu && menu->title() == parentMenu)))
                return *candidate;
        }
        ADD_FAILURE() << "no action " << text.toStdString();
        std::abort();
    }
    QImage picture(int row = 0)
    {
        view.rows()[row].plot->grab();
        return view.rows()[row].plot->image().copy();
    }
    void type(ExpSpinBox &box, const char *text)
    {
        auto *edit = box.findChild<QLineEdit *>();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }

    SpectMath::SpectrumInfoPointer a = testInfo("a", {1, 2, 4}), b = testInfo("b", {4, 2, 1}),
                                   single = testInfo("single", {3});
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    Datastore store;
    SpectrogramView view;
};

TEST_F(SpectrogramViewTest, RowsFollowTheListOfSpectra)
{
    const auto *empty = view.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->isVisible());
    EXPECT_EQ(labels(), "");
    choose({"b", "a", "unknown"});
    EXPECT_EQ(labels(), "a;b;");
    EXPECT_FALSE(empty->isVisible());
    choose({"single"});
    EXPECT_EQ(labels(), "Invalid spectrum;");
    EXPECT_EQ(view.rows()[0].scale->minimum(), 0);
    choose({"b"});
    EXPECT_EQ(labels(), "b;");
    EXPECT_DOUBLE_EQ(view.rows()[0].scale->minimum(), std::log10(2));
    EXPECT_DOUBLE_EQ(view.rows()[0].scale->maximum(), std::log10(8));
    EXPECT_TRUE(view.rows()[0].scale->isReadOnly());

    // A description that is made anew keeps its row.
    b = testInfo("b", {4, 2, 1}, SpectMath::DistributionScale::radius, "inv <1>");
    uiInfo->setData(uiInfo->metadata(), {b});
    uiInfo->publish();
    EXPECT_EQ(labels(), "b;");
    EXPECT_EQ(view.rows()[0].plot->spectrumInfo(), b);
    EXPECT_EQ(view.rows()[0].scale->toolTip(), "Distribution: b<br>Inverter: inv &lt;1&gt;");
    uiInfo->clear();
    uiInfo->publish();
    EXPECT_EQ(labels(), "");
    EXPECT_TRUE(empty->isVisible());
    EXPECT_EQ(view.visibleSpectra().size(), 1) << "the choice outlives the data";
}

TEST_F(SpectrogramViewTest, RowsStandAboveTheGripAndLineUp)
{
    choose({"a", "b"});
    view.activateLayout();
    const auto rows = view.rows();
    for (const auto &row : rows) {
        EXPECT_TRUE(row.plot->isVisible());
        EXPECT_EQ(row.plot->y(), row.scale->y());
        EXPECT_EQ(row.plot->height(), row.scale->height());
        EXPECT_EQ(row.plot->x(), rows[0].plot->x());
        EXPECT_GT(row.plot->y(), bar().mapTo(&view, QPoint()).y());
    }
    EXPECT_LE(std::abs(rows[0].plot->height() - rows[1].plot->height()), 1);
    EXPECT_GE(rows[1].plot->y(), rows[0].plot->geometry().bottom());
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

TEST_F(SpectrogramViewTest, ANarrowHeadOfLargeTextsCutsNoneOfThem)
{
    for (double points : {9, 20}) {
        QFont font = view.font();
        font.setPointSizeF(points);
        view.setFont(font);
        const int width = view.fontMetrics().horizontalAdvance("Spectrogram") * 3;
        view.resize(width, 400);
        settle();
        const auto buttons = view.findChildren<QToolButton *>();
        for (const auto *button : buttons) {
            if (button->isVisible() && button->parent()->inherits("Tsb::SpectrogramControls")) {
                EXPECT_GE(button->width(), button->sizeHint().width()) << points << qPrintable(button->text());
            }
        }
        EXPECT_GE(low().width(), low().sizeHint().width()) << points;
        EXPECT_GE(high().width(), high().sizeHint().width()) << points;
        EXPECT_GT(bar().mapTo(&view, QPoint()).y(), bar().height() / 2) << "a row of its own";
        view.resize(3 * width, 400);
        settle();
        EXPECT_LT(bar().mapTo(&view, QPoint()).y(), bar().height() / 2) << "one row";
    }
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

TEST_F(SpectrogramViewTest, GapsAndSmoothing)
{
    choose({"a"}); // records of every second place: gaps of 10 columns
    const QImage filled = picture();
    action("Fill gaps").trigger();
    EXPECT_NE(picture(), filled);
    action("Fill gaps").trigger();
    EXPECT_EQ(picture(), filled);

    EXPECT_FALSE(smoothing().isVisible());
    QSignalSpy changed(&view, &SpectrogramView::smoothingChanged);
    smoothing().setValue(3);
    EXPECT_EQ(changed.size(), 0) << "off";
    action("Smoothing").trigger();
    EXPECT_TRUE(smoothing().isVisible());
    smoothing().stepBy(1);
    action("Smoothing").trigger();
    smoothing().stepBy(1);
    ASSERT_EQ(changed.size(), 3);
    EXPECT_DOUBLE_EQ(changed[0][0].toDouble(), 3);
    EXPECT_DOUBLE_EQ(changed[1][0].toDouble(), 3.1);
    EXPECT_DOUBLE_EQ(changed[2][0].toDouble(), 0);
}

TEST_F(SpectrogramViewTest, SettingsComeBack)
{
    QVariantMap map{{"height", 333},           {"spectra", QStringList{"id-a", "id-elsewhere"}},
                    {"colorLower", -0.5},      {"colorUpper", 4.25},
                    {"autoFillGaps", false},   {"smoothingEnabled", true},
                    {"smoothingCoef", 2.5},    {"colormap", "plasma"},
                    {"whiteBackground", false}};
    view.setSettings(map);
    EXPECT_EQ(view.settings().toMap(), map);
    EXPECT_TRUE(view.isScaleGiven());
    EXPECT_EQ(labels(), "a;");
    EXPECT_EQ(view.rows()[0].plot->colorUpper(), 4.25);
    SpectrogramView other;
    prepare(other);
    EXPECT_FALSE(other.settings().toMap().contains("colorLower")) << "no limits yet";
    EXPECT_TRUE(other.settings().toMap()["whiteBackground"].toBool());
    other.setSettings(view.settings());
    EXPECT_EQ(other.settings(), view.settings());
    other.setSettings(QVariantMap());
    EXPECT_FALSE(other.isWhiteBackground()) << "dark without a word about it";
    EXPECT_EQ(other.colormapName(), "jet");
    EXPECT_EQ(other.settings().toMap()["height"], 333);
    EXPECT_EQ(other.rows().size(), 0);
    EXPECT_EQ(other.colorUpper(), 4.25);
}

TEST_F(SpectrogramViewTest, ZerosAreMarkedAndTheBarSaysSo)
{
    choose({"a"});
    addSpectrumRecord(store, 502, 508, testSpectrum(a, 0));
    const QImage plain = picture();
    const auto *swatch = view.findChild<Tsb::ZeroSwatch *>();
    EXPECT_FALSE(swatch->isVisible());
    action("Mark zeros").trigger();
    EXPECT_TRUE(swatch->isVisible());
    const QImage marked = picture();
    EXPECT_NE(marked.pixel(505, 0), marked.pixel(505, 2)) << "stripes";
    EXPECT_EQ(plain.copy(0, 0, 490, plain.height()), marked.copy(0, 0, 490, plain.height())) << "values";
    choose({"a", "b"});
    EXPECT_NE(picture(0).pixel(505, 0), picture(0).pixel(505, 2));
    SpectrogramView other;
    EXPECT_FALSE(other.settings().toMap().contains("markZeros"));
    other.setSettings(view.settings());
    EXPECT_TRUE(other.settings().toMap()["markZeros"].toBool());
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

TEST_F(SpectrogramViewTest, OddSettingsAreKeptOrRefused)
{
    QStringList many;
    for (int i = 0; i < 10000; ++i)
        many << QStringLiteral("id %1").arg(i);
    view.setSettings(QVariantMap{{"spectra", many}});
    EXPECT_EQ(view.settings().toMap()["spectra"].toStringList().size(), 10000);
    view.setColorLimits(0.5, 3.5);
    view.setSettings(QVariantMap{{"colorLower", 3.0}, {"colorUpper", 1.0}}); // the wrong way round
    EXPECT_EQ(view.colorLower(), 0.5);
    EXPECT_EQ(view.colorUpper(), 3.5);
    EXPECT_FALSE(view.isScaleGiven());
    for (const char *upper : {"1e1", "nan", "", "high", "1e999"})
        view.setSettings(QVariantMap{{"colorLower", "-.5"}, {"colorUpper", upper}});
    EXPECT_EQ(view.colorLower(), -0.5) << "a number that was stored as text";
    EXPECT_EQ(view.colorUpper(), 10);
}

TEST_F(SpectrogramViewTest, TheListChoosesSpectra)
{
    auto *list = view.findChild<Tsb::SpectraSelectionWidget *>();
    view.setSettings(QVariantMap{{"spectra", QStringList{"id-elsewhere"}}});
    view.showSettingsForm(true);
    EXPECT_TRUE(list->isVisible());
    QListView *rows = list->listView();
    ASSERT_EQ(rows->model()->rowCount(), 3);
    EXPECT_EQ(rows->model()->index(0, 0).data().toString(), "A");
    const auto click = [&](int row) {
        const QRect place = rows->visualRect(rows->model()->index(row, 0));
        QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, place.center());
    };
    click(1);
    click(0);
    EXPECT_EQ(labels(), "a;b;");
    uiInfo->publish(); // the list is made anew, the choice stays
    EXPECT_EQ(labels(), "a;b;");
    click(1);
    EXPECT_EQ(labels(), "a;");
    EXPECT_TRUE(view.visibleSpectra().contains("id-elsewhere"));
    view.showSettingsForm(false);
    EXPECT_FALSE(list->isVisible());
}

TEST_F(SpectrogramViewTest, KeysInTheListOfSpectraDontReachTheCommandsOfTheViewBehindIt)
{
    auto *const list = view.findChild<Tsb::SpectraSelectionWidget *>();
    QAction command;
    command.setShortcuts({Qt::Key_1, Qt::Key_Escape});
    command.setShortcutContext(Qt::WidgetWithChildrenShortcut);
    view.addAction(&command);
    const QSignalSpy given(&command, &QAction::triggered);
    view.activateWindow();
    view.showSettingsForm(true);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list));
    QTest::keyClick(list->windowHandle(), Qt::Key_1);
    EXPECT_TRUE(list->isVisible());
    QTest::keyClick(list->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(list->isVisible());
    EXPECT_EQ(given.size(), 0);
}

TEST_F(SpectrogramViewTest, TheValueCursorShowsOnItsScale)
{
    choose({"a"});
    view.activateLayout();
    const auto row = view.rows()[0];
    const QImage before = row.scale->grab().toImage();
    EXPECT_TRUE(row.plot->hasMouseTracking());
    sendMouse(row.plot, QEvent::MouseMove, {50, row.plot->height() / 2}, Qt::NoButton);
    EXPECT_NE(row.scale->grab().toImage(), before);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(row.plot, &leave);
    EXPECT_EQ(row.scale->grab().toImage(), before);
}

} // namespace
