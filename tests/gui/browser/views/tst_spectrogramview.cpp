#include "gui/browser/controls/zeroswatch.h"
#include "spectrogramfixture.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QToolButton>

namespace {

using Tsb::SpectrogramView;

TEST_F(SpectrogramViewTest, RowsFollowTheListOfSpectra)
{
    const auto *empty = view.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    const auto rowsOf = [&](std::initializer_list<const char *> names) {
        choose(names);
        EXPECT_EQ(empty->isVisible(), view.rows().empty());
        return labels();
    };
    EXPECT_TRUE(empty->isVisible());
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(rowsOf({"b", "a", "unknown"}), "a;b;");
    EXPECT_EQ(rowsOf({"single"}), "Invalid spectrum;");
    EXPECT_EQ(view.rows()[0].scale->minimum(), 0);
    EXPECT_EQ(rowsOf({"b"}), "b;");
    const auto scale = view.rows()[0].scale;
    EXPECT_DOUBLE_EQ(scale->minimum(), std::log10(2));
    EXPECT_DOUBLE_EQ(scale->maximum(), std::log10(8));
    EXPECT_TRUE(scale->isReadOnly());

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

TEST_F(SpectrogramViewTest, RowsLineUpBelowTheHead)
{
    choose({"a", "b"});
    view.activateLayout();
    const auto rows = view.rows();
    for (const auto &row : rows) {
        EXPECT_TRUE(row.plot->isVisible());
        EXPECT_EQ(row.plot->y(), row.scale->y());
        EXPECT_EQ(row.plot->height(), row.scale->height());
        EXPECT_GT(row.plot->y(), bar().mapTo(&view, QPoint()).y());
    }
    EXPECT_LE(std::abs(rows[0].plot->height() - rows[1].plot->height()), 1);
    EXPECT_GE(rows[1].plot->y(), rows[0].plot->geometry().bottom());
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

TEST_F(SpectrogramViewTest, GapsAndSmoothing)
{
    choose({"a"}); // records of every second place: gaps of 10 columns
    const QImage filled = picture();
    action("Fill gaps").trigger();
    EXPECT_NE(picture(), filled);
    action("Fill gaps").trigger();
    EXPECT_EQ(picture(), filled);

    auto &smoothing = *view.findChild<QDoubleSpinBox *>();
    EXPECT_FALSE(smoothing.isVisible());
    QVector<double> widths;
    QObject::connect(&view, &SpectrogramView::smoothingChanged, [&](double width) { widths << width; });
    smoothing.setValue(3); // which is off
    action("Smoothing").trigger();
    EXPECT_TRUE(smoothing.isVisible());
    smoothing.stepBy(1);
    action("Smoothing").trigger();
    smoothing.stepBy(1);
    EXPECT_EQ(widths, (QVector<double>{3, 3.1, 0}));
}

TEST_F(SpectrogramViewTest, SettingsComeBack)
{
    const QVariantMap map{{"height", 333},           {"spectra", QStringList{"id-a", "id-elsewhere"}},
                          {"colorLower", -0.5},      {"colorUpper", 4.25},
                          {"autoFillGaps", false},   {"smoothingEnabled", true},
                          {"smoothingCoef", 2.5},    {"colormap", "plasma"},
                          {"whiteBackground", false}};
    EXPECT_FALSE(view.settings().toMap().contains("colorLower")) << "no limits yet";
    EXPECT_TRUE(view.settings().toMap()["whiteBackground"].toBool());
    view.setSettings(map);
    EXPECT_EQ(view.settings().toMap(), map);
    EXPECT_TRUE(view.isScaleGiven());
    EXPECT_EQ(labels(), "a;");
    EXPECT_EQ(view.rows()[0].plot->colorUpper(), 4.25);
    view.setSettings(QVariantMap());
    EXPECT_FALSE(view.isWhiteBackground()) << "dark without a word about it";
    EXPECT_EQ(view.colormapName(), "jet");
    EXPECT_EQ(view.settings().toMap()["height"], 333);
    EXPECT_EQ(view.rows().size(), 0);
    EXPECT_EQ(view.colorUpper(), 4.25);
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

TEST_F(SpectrogramViewTest, OddSettingsAreKeptOrRefused)
{
    QStringList many;
    for (int i = 0; i < 10000; ++i)
        many << QStringLiteral("id %1").arg(i);
    view.setColorLimits(0.5, 3.5);
    view.setSettings(QVariantMap{{"spectra", many}, {"colorLower", 3.0}, {"colorUpper", 1.0}}); // the wrong way round
    EXPECT_EQ(view.settings().toMap()["spectra"].toStringList().size(), 10000);
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
