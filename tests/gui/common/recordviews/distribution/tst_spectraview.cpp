#include "gui/common/recordviews/distribution/discontinuousplotcurve.h"
#include "gui/common/recordviews/distribution/resultplots.h"
#include "gui/common/recordviews/distribution/spectraview.h"
#include "gui/common/recordviews/distribution/spectraviewdialog.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QApplication>
#include <QButtonGroup>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>
#include <qwt_plot_histogram.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_widget.h>

namespace {

using RecordViews::ResultPlot;
using RecordViews::SpectraView;
using RecordViews::SpectraViewDialog;
using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::DistributionType;

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

std::shared_ptr<SpectMath::Spectrum> spectrum(const SpectMath::SpectrumInfoPointer &info, const RealVector &values,
                                              double variance = 1)
{
    auto made = testSpectrum(info);
    made->concentrations = values;
    made->covariances = BandMatrix(values.size(), values.size(), 0, 0);
    for (std::size_t i = 0; i < values.size(); ++i)
        made->covariances(i, i) = variance;
    return made;
}

std::shared_ptr<Record> recordOf(const SpectMath::SpectrumPointerList &spectra)
{
    auto record = std::make_shared<Record>();
    record->beginTime = recordTimeFromTicks(91 * ticksPerDay); // April, by the same name in German
    record->spectra = spectra;
    return record;
}

/// Counts the replots of the plot that it is attached to.
struct ReplotCounter : QwtPlotItem {
    explicit ReplotCounter(QwtPlot *plot)
    {
        setItemInterest(ScaleInterest);
        attach(plot);
        count = 0;
    }
    void updateScaleDiv(const QwtScaleDiv &, const QwtScaleDiv &) override { ++count; }
    void draw(QPainter *, const QwtScaleMap &, const QwtScaleMap &, const QRectF &) const override {}
    int count = 0;
};

struct Window {
    SpectMath::SpectrumInfoPointer neg = testInfo("particles neg", {1, 10, 100}, DistributionScale::radius, "a"),
                                   pos = testInfo("particles pos", {1, 10, 100}, DistributionScale::radius, "b"),
                                   ions = testInfo("ions neg", {2, 1, 0.5}, DistributionScale::mobility, "c");
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    SpectraView view{ui};

    Window()
    {
        ui->setData(testMetadata({"particles"}), {neg, pos, ions});
        ui->publish();
        view.resize(500, 500);
        view.show();
        settle();
    }
    void show(const SpectMath::SpectrumPointerList &spectra) { view.showRecord(recordOf(spectra)); }
    QList<ResultPlot *> plots() const
    {
        QList<ResultPlot *> seen;
        for (auto *plot : view.findChildren<ResultPlot *>()) {
            if (plot->isVisible())
                seen << plot;
        }
        return seen;
    }
    /// The visible items of that kind and pen style.
    template<typename Item>
    static QList<Item *> items(const ResultPlot *plot, Qt::PenStyle style = Qt::SolidLine)
    {
        QList<Item *> found;
        for (QwtPlotItem *item : plot->itemList()) {
            auto *const one = dynamic_cast<Item *>(item);
            if (one && one->isVisible() && one->pen().style() == style)
                found << one;
        }
        return found;
    }
    QAction *action(const QString &text) const
    {
        for (auto *one : view.findChildren<QAction *>()) {
            if (one->text() == text)
                return one;
        }
        ADD_FAILURE() << qPrintable(text);
        return nullptr;
    }
    QString summary() const { return view.findChild<QPlainTextEdit *>()->toPlainText(); }
    QString copied()
    {
        action("Copy to clipboard")->trigger();
        return QApplication::clipboard()->text();
    }
    /// What the button of the tool bar offers.
    QList<QAction *> spectrumActions() const
    {
        auto *const menu = action("Spectra")->menu();
        Q_EMIT menu->aboutToShow();
        return menu->actions();
    }
};

} // namespace

TEST(SpectraView, DrawsCurvesAndTheirUncertaintiesInTheSpectrasColours)
{
    Window w;
    w.show({spectrum(w.pos, realVector({3, 2, 1})), spectrum(w.neg, realVector({10, 20, none}), 4)});
    ASSERT_EQ(w.plots().size(), 1);
    const ResultPlot *plot = w.plots()[0];
    const auto values = w.items<RecordViews::DiscontinuousPlotCurve>(plot);
    const auto dotted = w.items<RecordViews::DiscontinuousPlotCurve>(plot, Qt::DotLine);
    ASSERT_EQ(values.size(), 2);
    ASSERT_EQ(dotted.size(), 2);
    EXPECT_EQ(values[0]->sample(1), QPointF(20, 20)) << "by the order of their descriptions";
    EXPECT_EQ(dotted[0]->sample(1), QPointF(20, 2));
    EXPECT_EQ(values[1]->sample(0), QPointF(2, 3));
    EXPECT_EQ(values[0]->pen().color(), w.ui->spectrumColor(w.neg.get()));
    EXPECT_EQ(dotted[1]->pen().color(), w.ui->spectrumColor(w.pos.get()));
    EXPECT_EQ(plot->axisScaleDiv(QwtPlot::xBottom).lowerBound(), 2);
    EXPECT_EQ(plot->axisScaleDiv(QwtPlot::xBottom).upperBound(), 200);
    EXPECT_TRUE(dynamic_cast<const QwtLogScaleEngine *>(plot->axisScaleEngine(QwtPlot::xBottom)));
    EXPECT_EQ(plot->axisScaleDiv(QwtPlot::yLeft).upperBound(), 20);
    EXPECT_EQ(plot->axisTitle(QwtPlot::xBottom).text(), "diameter (nm)");

    w.view.setDistributionType(DistributionType::fraction);
    const auto bars = w.items<QwtPlotHistogram>(plot);
    ASSERT_EQ(bars.size(), 2);
    EXPECT_TRUE(w.items<RecordViews::DiscontinuousPlotCurve>(plot).isEmpty());
    EXPECT_EQ(bars[0]->sample(0).value, 15) << "a decade wide";
    EXPECT_EQ(bars[0]->sample(0).interval, QwtInterval(2, 20));
    EXPECT_EQ(bars[0]->baseline(), 1e-100);
    EXPECT_EQ(bars[0]->style(), QwtPlotHistogram::Outline);
    EXPECT_EQ(w.items<QwtPlotHistogram>(plot, Qt::DotLine).size(), 2);
}

TEST(SpectraView, DarkColoursAreLighterOnADarkGround)
{
    Window w;
    w.ui->setSpectrumColor(w.neg.get(), QColor(32, 74, 135));
    w.show({spectrum(w.neg, realVector({1, 2, 3}))});
    const auto *curve = w.items<RecordViews::DiscontinuousPlotCurve>(w.plots()[0])[0];
    EXPECT_EQ(curve->pen().color(), QColor(32, 74, 135));
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    dark.setColor(QPalette::Text, Qt::white);
    w.view.setPalette(dark);
    settle();
    EXPECT_GT(curve->pen().color().lightness(), 120);
}

TEST(SpectraView, AnAxisOfOnePowerOfTenHasMoreThanOneLabel)
{
    Window w;
    const auto labels = [&](const std::vector<double> &radii) {
        w.show({spectrum(testInfo("x", radii, DistributionScale::radius), realVector({1, 2, 3})), nullptr});
        QStringList texts;
        for (const double tick : w.plots()[0]->axisScaleDiv(QwtPlot::xBottom).ticks(QwtScaleDiv::MajorTick))
            texts << QString::number(tick);
        return texts.join(' ');
    };
    EXPECT_EQ(labels({0.8, 3, 21}), "2 5 10 20");
    EXPECT_EQ(labels({0.8, 3, 60}), "10 100");
}

TEST(SpectraView, AMobilityAxisAscends)
{
    Window w;
    w.show({spectrum(w.ions, realVector({1, 2, 4}))});
    const ResultPlot *plot = w.plots()[0];
    EXPECT_LT(plot->axisScaleDiv(QwtPlot::xBottom).lowerBound(), plot->axisScaleDiv(QwtPlot::xBottom).upperBound());
    EXPECT_EQ(w.items<RecordViews::DiscontinuousPlotCurve>(plot)[0]->sample(0), QPointF(0.5, 4));
    w.show({spectrum(w.neg, realVector({1, 1, 1})), spectrum(w.ions, realVector({1, 2, 4}))});
    EXPECT_EQ(plot->axisTitle(QwtPlot::xBottom).text(), "mobility (cm^2/s/V)") << "that of the first in order";
    EXPECT_NEAR(w.items<RecordViews::DiscontinuousPlotCurve>(plot)[1]->sample(2).x(), w.neg->mobilities[0], 1e-12);
    w.view.setSinglePlot(false);
    ASSERT_EQ(w.plots().size(), 2);
    EXPECT_EQ(w.plots()[1]->axisTitle(QwtPlot::xBottom).text(), "diameter (nm)");
    w.view.setHorizontalQuantity(false, DistributionScale::mobility);
    EXPECT_EQ(w.plots()[1]->axisTitle(QwtPlot::xBottom).text(), "mobility (cm^2/s/V)");
}

TEST(SpectraView, AStepSetsOnlySamplesAndReplotsEachPlotOnce)
{
    for (bool isSingle : {true, false}) {
        Window w;
        w.view.setSinglePlot(isSingle);
        w.show({spectrum(w.neg, realVector({1, 2, 3})), spectrum(w.pos, realVector({1, 2, 3}))});
        const QList<ResultPlot *> plots = w.plots();
        ASSERT_EQ(plots.size(), isSingle ? 1 : 2);
        std::vector<std::unique_ptr<ReplotCounter>> counters;
        QList<QwtPlotItemList> items;
        for (ResultPlot *plot : plots) {
            counters.push_back(std::make_unique<ReplotCounter>(plot));
            items << plot->itemList();
        }
        settle();
        for (auto &counter : counters)
            counter->count = 0;
        w.show({spectrum(w.neg, realVector({4, 5, 6})), spectrum(w.pos, realVector({7, 8, 9}))});
        settle();
        for (int i = 0; i < plots.size(); ++i) {
            EXPECT_EQ(counters[std::size_t(i)]->count, 1);
            EXPECT_EQ(plots[i]->itemList(), items[i]);
        }
        w.show({});
        EXPECT_EQ(w.plots(), plots) << "a record without spectra leaves them empty";
        EXPECT_TRUE(w.items<RecordViews::DiscontinuousPlotCurve>(plots[0]).isEmpty());
        EXPECT_EQ(plots[0]->axisScaleDiv(QwtPlot::xBottom).upperBound(), 200) << "with their axes";
        for (auto &counter : counters)
            counter->count = 0;
        w.view.hide();
        w.show({spectrum(w.neg, realVector({1, 2, 3}))});
        w.view.setVerticalScaleLog(true);
        settle();
        EXPECT_EQ(counters[0]->count, 0) << "what isn't seen isn't drawn";
    }
}

TEST(SpectraView, ALogAxisHasGapsAndSmallBars)
{
    Window w;
    w.view.setVerticalScaleLog(true);
    w.show({spectrum(w.neg, realVector({1e6, 1e-4, 1e5}))});
    const ResultPlot *plot = w.plots()[0];
    EXPECT_TRUE(std::isnan(w.items<RecordViews::DiscontinuousPlotCurve>(plot)[0]->sample(1).y()));
    EXPECT_EQ(plot->axisScaleDiv(QwtPlot::yLeft).lowerBound(), 1) << "over the uncertainties, too";
    w.view.setDistributionType(DistributionType::fraction);
    w.show({spectrum(w.neg, realVector({1e6, 1e-4, -1e-4}))});
    EXPECT_EQ(w.items<QwtPlotHistogram>(plot)[0]->sample(1).value, 2.220446049250313e-16);
    EXPECT_GE(plot->axisScaleDiv(QwtPlot::yLeft).lowerBound(), 1e-3);
    w.view.setVerticalScaleLog(false);
    EXPECT_EQ(w.items<QwtPlotHistogram>(plot)[0]->sample(1).value, 0);
}

TEST(SpectraView, NamesAreToldApartAndAreNoMarkup)
{
    Window w;
    w.show({spectrum(w.neg, realVector({1, 2, 3})), spectrum(w.pos, realVector({1, 2, 3}))});
    const auto title = [&] { return w.plots()[0]->title().text(); };
    EXPECT_TRUE(title().contains("particles neg (a)</span>, <span style=\"color:")) << qPrintable(title());
    EXPECT_TRUE(title().contains(w.ui->spectrumColor(w.pos.get()).name()));
    const auto evil = testInfo("<img src='x'>&", {1, 2, 3}, DistributionScale::radius, "<b>");
    w.show({spectrum(evil, realVector({1, 2, 3}))});
    EXPECT_TRUE(title().contains("&lt;img src='x'&gt;&amp; (&lt;b&gt;)")) << "gone from the names, and still shown";

    auto twin = std::make_shared<SpectMath::SpectrumInfo>(*w.neg);
    twin->hash = "other";
    w.ui->setData(w.ui->metadata(), {w.neg, twin});
    w.ui->publish();
    w.show({spectrum(w.neg, realVector({1, 2, 3})), spectrum(twin, realVector({1, 2, 3}))});
    EXPECT_TRUE(title().contains(w.ui->spectrumName(w.neg.get()).toHtmlEscaped()));
    EXPECT_TRUE(title().contains(w.ui->spectrumName(twin.get()).toHtmlEscaped()));
    EXPECT_NE(w.ui->spectrumName(w.neg.get()), w.ui->spectrumName(twin.get()));
}

TEST(SpectraView, CopiesTheSpectraInOrderAsText)
{
    Window w;
    EXPECT_EQ(w.copied(), "No data");
    w.view.hide(); // the text doesn't need the plots
    w.show({spectrum(w.pos, realVector({1, 2, 3})), testSpectrum(w.neg, 1, 2), nullptr,
            std::make_shared<SpectMath::Spectrum>()});
    const QString text = w.copied();
    EXPECT_EQ(text, "### particles neg (a) at 02. April 1970 00:00:00 ###\n# Inversion failed\n\n"
                    "### particles pos (b) at 02. April 1970 00:00:00 ###\n"
                    "diameter (nm)\t2\t20\t200\nnumber concentration density (1)\t1\t2\t3\nuncertainty (1)\t1\t1\t1");
    EXPECT_EQ(w.summary(), "") << "while hidden, nothing is written";
}

TEST(SpectraView, TellsEachCurveInALine)
{
    Window w;
    w.show({spectrum(w.neg, realVector({0, 100, 0})), testSpectrum(w.pos, 1, 2)});
    EXPECT_EQ(w.summary(), "particles neg (a): total 100 1, GMD 20 nm, GSD 1, mode 20 nm\n"
                           "particles pos (b): inversion failed");
    auto *const text = w.view.findChild<QPlainTextEdit *>();
    settle();
    const QRect place = text->geometry();
    w.show({});
    settle();
    EXPECT_EQ(w.summary(), "");
    EXPECT_EQ(text->geometry(), place) << "a record without spectra moved the plot";
    EXPECT_TRUE(text->isVisible()) << "and took the keyboard focus away";
    w.view.showRecord(nullptr);
    EXPECT_FALSE(text->isVisible());
}

TEST(SpectraView, InALowDockTheTextGivesWayToAPlotThatIsSeenWhole)
{
    Window w;
    QFont font = w.view.font();
    font.setPointSizeF(20);
    w.view.setFont(font);
    w.show({spectrum(w.neg, realVector({0, 100, 0})), spectrum(w.pos, realVector({1, 2, 3}))});
    w.view.resize(400, w.view.minimumSizeHint().height() + 5);
    settle();
    const ResultPlot *plot = w.plots()[0];
    EXPECT_EQ(plot->visibleRegion().boundingRect(), plot->rect());
    const int line = plot->fontMetrics().lineSpacing();
    EXPECT_GT(plot->canvas()->height(), line);
    EXPECT_LE(plot->axisScaleDiv(QwtPlot::yLeft).ticks(QwtScaleDiv::MajorTick).size(), 4);
    auto *const text = w.view.findChild<QPlainTextEdit *>();
    EXPECT_FALSE(text->isVisible());
    const int canvas = plot->canvas()->height();
    for (const int height : {400, w.view.minimumSizeHint().height() + 8 * line, 900}) {
        w.view.resize(400, height);
        settle();
        EXPECT_GT(plot->canvas()->height(), 3 * line) << height;
    }
    EXPECT_GE(text->isVisible() ? text->height() : 0, 2 * line);
    EXPECT_GT(plot->canvas()->height(), canvas);
}

TEST(SpectraView, ChosenSpectraAreShown)
{
    Window w;
    w.view.setSinglePlot(false);
    w.show({spectrum(w.neg, realVector({1, 2, 3})), spectrum(w.pos, realVector({1, 2, 3}))});
    ASSERT_EQ(w.spectrumActions().size(), 5);
    w.spectrumActions()[0]->setChecked(false);
    EXPECT_EQ(w.plots().size(), 1) << "no empty plot is left";
    EXPECT_TRUE(w.summary().startsWith("particles pos"));
    EXPECT_TRUE(w.copied().contains("particles neg")) << "the record's spectra";
    w.spectrumActions().last()->trigger();
    EXPECT_EQ(w.plots().size(), 2);
}

TEST(SpectraView, HeldCurvesStayUntilTheyAreReleased)
{
    for (bool isSingle : {true, false}) {
        Window w;
        w.view.setSinglePlot(isSingle);
        w.show({spectrum(w.neg, realVector({1, 2, 30}))});
        w.action("Hold curves")->setChecked(true);
        w.show({spectrum(w.neg, realVector({4, 5, 6}))});
        const auto curves = w.items<RecordViews::DiscontinuousPlotCurve>(w.plots()[0]);
        ASSERT_EQ(curves.size(), 2) << isSingle;
        EXPECT_EQ(curves[0]->sample(2).y(), 30) << "below";
        EXPECT_LT(curves[0]->pen().widthF(), curves[1]->pen().widthF());
        EXPECT_EQ(curves[0]->pen().color().saturation(), 0);
        EXPECT_EQ(w.plots()[0]->axisScaleDiv(QwtPlot::yLeft).upperBound(), 30) << "they are seen whole";
        w.view.setVerticalQuantity(ConcentrationType::diameter);
        EXPECT_EQ(curves[0]->sample(0).y(), 2) << "they follow the options";
        w.action("Hold curves")->setChecked(false);
        w.show({spectrum(w.neg, realVector({4, 5, 6}), 1e-6)});
        w.action("Hold curves")->setChecked(true);
        w.show({spectrum(w.neg, realVector({4, 5, 6}))});
        w.view.setVerticalScaleLog(true);
        EXPECT_EQ(w.plots()[0]->axisScaleDiv(QwtPlot::yLeft).lowerBound(), 1) << "their uncertainties aren't drawn";
        w.action("Hold curves")->setChecked(false);
        EXPECT_EQ(w.items<RecordViews::DiscontinuousPlotCurve>(w.plots()[0]).size(), 1);
        w.action("Hold curves")->setChecked(true);
        w.view.showRecord(nullptr);
        EXPECT_FALSE(w.action("Hold curves")->isChecked()) << "the data went away";
        EXPECT_TRUE(w.items<RecordViews::DiscontinuousPlotCurve>(w.plots()[0]).isEmpty());
    }
}

TEST(SpectraView, LockedAxesStayInAllPlots)
{
    Window w;
    w.show({spectrum(w.neg, realVector({1, 2, 10}))});
    w.action("Lock axes")->setChecked(true);
    w.show({spectrum(w.neg, realVector({1, 2, 100}))});
    EXPECT_EQ(w.plots()[0]->axisScaleDiv(QwtPlot::yLeft).upperBound(), 10);
    w.action("Fit axes")->trigger();
    EXPECT_EQ(w.plots()[0]->axisScaleDiv(QwtPlot::yLeft).upperBound(), 100);
    w.action("Lock axes")->setChecked(false);
    w.show({spectrum(w.neg, realVector({1, 2, 10}))});
    EXPECT_EQ(w.plots()[0]->axisScaleDiv(QwtPlot::yLeft).upperBound(), 10);
}

TEST(SpectraView, AMovedOrLockedAxisIsThatOfItsQuantityAlone)
{
    Window w;
    const auto span = [&](int axis) {
        const QwtScaleDiv &scale = w.plots()[0]->axisScaleDiv(axis);
        return QPointF(scale.lowerBound(), scale.upperBound());
    };
    w.show({spectrum(w.neg, realVector({10, 200, 3000}))});
    for (bool isLocked : {false, true}) {
        w.view.setVerticalScaleLog(false);
        w.action("Lock axes")->setChecked(isLocked);
        if (!isLocked) {
            w.plots()[0]->setFocus();
            QTest::keyClick(w.plots()[0], Qt::Key_Minus);
        }
        const QPointF sizes = span(QwtPlot::xBottom), linear = span(QwtPlot::yLeft);
        w.view.setVerticalScaleLog(true);
        EXPECT_EQ(span(QwtPlot::yLeft), QPointF(1, 10000)) << isLocked;
        w.view.setVerticalQuantity(ConcentrationType::volume);
        EXPECT_GT(span(QwtPlot::yLeft).y(), 1e7) << isLocked;
        w.show({spectrum(w.ions, realVector({1, 2, 3}))});
        EXPECT_EQ(span(QwtPlot::xBottom), QPointF(0.5, 2)) << isLocked;
        w.view.setVerticalQuantity(ConcentrationType::number);
        w.show({spectrum(w.neg, realVector({1, 2, 3}))});
        w.view.setVerticalScaleLog(false);
        EXPECT_EQ(span(QwtPlot::xBottom), sizes) << isLocked;
        EXPECT_EQ(span(QwtPlot::yLeft), linear) << isLocked;
        w.action("Fit axes")->trigger();
        EXPECT_EQ(span(QwtPlot::yLeft), QPointF(1, 3)) << isLocked;
        w.show({spectrum(w.neg, realVector({10, 200, 3000}))});
    }
    w.view.showRecord(nullptr);
    w.view.setVerticalScaleLog(true);
    EXPECT_EQ(span(QwtPlot::yLeft), QPointF(1, 1000)) << "an empty plot has a range that it can show";
}

TEST(SpectraView, AMenuOpensOverAPlotAndAnAxisHasNone)
{
    Window w;
    const auto menuOver = [&](QWidget *widget) {
        QStringList texts;
        QTimer::singleShot(0, [&] {
            if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
                for (const QAction *action : menu->actions())
                    texts << action->text();
                menu->close();
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, widget->rect().center());
        QApplication::sendEvent(widget, &event);
        settle();
        return texts;
    };
    EXPECT_EQ(menuOver(w.plots()[0]),
              (QStringList{"Spectra", "Hold curves", "Lock axes", "Fit axes", "", "Copy to clipboard", "Copy picture",
                           "Save picture...", "Settings"}));
    EXPECT_EQ(menuOver(w.plots()[0]->axisWidget(QwtPlot::xBottom)), QStringList());
}

TEST(SpectraView, SettingsComeBackWithoutBeingStoredAgain)
{
    Window w;
    QSignalSpy stored(&w.view, &SpectraView::setupChanged);
    w.view.setDistributionType(DistributionType::fraction);
    w.view.setHorizontalQuantity(false, DistributionScale::diameter);
    w.view.setHorizontalQuantity(false, DistributionScale::mobility);
    w.view.setSinglePlot(false);
    w.view.setSinglePlot(false);
    EXPECT_EQ(stored.count(), 4);
    const QVariantMap setup = w.view.setup();
    EXPECT_EQ(setup.size(), 7);
    Window other;
    other.view.showDialog();
    QSignalSpy again(&other.view, &SpectraView::setupChanged);
    other.view.restoreSetup(setup);
    EXPECT_EQ(other.view.setup(), setup);
    EXPECT_EQ(again.count(), 0);
    for (const QVariantMap &map : {QVariantMap(), QVariantMap{{"single_plot", "perhaps"}, {"distribution_type", 7}}}) {
        other.view.restoreSetup(setup);
        other.view.restoreSetup(map);
        EXPECT_EQ(other.view.setup(), Window().view.setup()) << "what is missing or makes no sense is as in a new view";
    }
    EXPECT_EQ(w.view.viewName(), "spectraView");
    w.view.setVerticalQuantity(ConcentrationType::radius);
    EXPECT_EQ(w.view.setup(), setup) << "a radius isn't shown";
}

TEST(SpectraViewDialog, ButtonsAreTheViewsChoices)
{
    Window w;
    w.view.setSmoothingCoef(2.5);
    w.action("Settings")->trigger();
    auto *const dialog = w.view.findChild<SpectraViewDialog *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    EXPECT_EQ(dialog->windowTitle(), "Distribution plot settings");
    auto *const slider = dialog->findChild<QSlider *>();
    EXPECT_EQ(slider->value(), 2) << "truncated";
    EXPECT_EQ(w.view.options().smoothingCoef, 2.5) << "and kept as it is";
    EXPECT_EQ(slider->maximum(), 20);
    const auto button = [&](const QString &text) -> QRadioButton * {
        for (auto *one : dialog->findChildren<QRadioButton *>()) {
            if (one->text() == text)
                return one;
        }
        return nullptr;
    };
    const struct {
        const char *text, *key;
        QVariant value;
        int id;
    } cases[] = {
        {"Fraction distribution", "distribution_type", "fraction", 1},
        {"Density distribution", "distribution_type", "density", 0},
        {"Diameter", "vertical_quantity", "diameter", 2},
        {"Surface", "vertical_quantity", "surface", 3},
        {"Volume", "vertical_quantity", "volume", 4},
        {"Number", "vertical_quantity", "number", 0},
        {"Logarithmic", "vertical_scale_log", true, 1},
        {"Linear", "vertical_scale_log", false, 0},
        {"Mobility", "horizontal_quantity", "mobility", 0},
        {"Automatic", "horizontal_quantity_auto", true, -2},
        {"Separate plots for spectra", "single_plot", false, 0},
        {"Single plot", "single_plot", true, 1},
    };
    for (const auto &c : cases) {
        ASSERT_TRUE(button(c.text)) << c.text;
        button(c.text)->click();
        EXPECT_EQ(w.view.setup()[c.key], c.value) << c.text;
        EXPECT_EQ(button(c.text)->group()->id(button(c.text)), c.id) << c.text;
    }
    slider->setValue(7);
    EXPECT_EQ(w.view.options().smoothingCoef, 7);
    QSignalSpy signal(dialog, &SpectraViewDialog::smoothingCoefChanged);
    w.view.restoreSetup({{"smoothing_coef", 1e9}, {"vertical_scale_log", true}});
    EXPECT_EQ(slider->value(), 20);
    EXPECT_TRUE(button("Logarithmic")->isChecked());
    EXPECT_EQ(signal.count(), 0);
}

TEST(SpectraView, DamagedSpectraAreDrawnAsFarAsTheyGo)
{
    Window w;
    std::vector<std::shared_ptr<SpectMath::Spectrum>> spectra;
    for (double value : {none, inf, -inf, 0.0, -1.0, 1e308, -1e308, 1e-308})
        spectra.push_back(spectrum(w.neg, realVector({value, 1, value}), value));
    spectra.push_back(spectrum(w.neg, realVector({1, 2})));
    spectra.push_back(spectrum(w.neg, realVector({})));
    for (double point : {none, inf, 0.0, -1.0, 1e300})
        spectra.push_back(spectrum(testInfo("x", {point, 1, point}, DistributionScale::radius), realVector({1, 2, 3})));
    spectra.push_back(spectrum(testInfo("x", {}), realVector({})));
    spectra.push_back(spectrum(testInfo("x", {5}), realVector({1})));
    spectra.push_back(spectrum(namedSpectrum(QString(10000, 'x'), "y"), realVector({1})));
    for (int options = 0; options < 16; ++options) {
        w.view.setVerticalScaleLog(options & 1);
        w.view.setDistributionType(DistributionType((options & 2) / 2));
        w.view.setSinglePlot(options & 4);
        w.view.setSmoothingCoef(options & 8 ? 1e4 : 0);
        for (const auto &one : spectra) {
            w.show({one, one, spectrum(w.pos, realVector({1, 2, 3}))});
            w.view.grab();
            settle();
            const ResultPlot *plot = w.plots()[0];
            for (int axis : {QwtPlot::xBottom, QwtPlot::yLeft}) {
                EXPECT_TRUE(std::isfinite(plot->axisScaleDiv(axis).range()));
                EXPECT_LT(plot->axisScaleDiv(axis).ticks(QwtScaleDiv::MajorTick).size(), 50);
            }
            w.copied();
        }
    }
}
