#include "spectraviewwindow.h"

#include <QTest>

#include <qwt_plot_histogram.h>
#include <qwt_scale_engine.h>

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

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

} // namespace

TEST(SpectraView, DrawsCurvesAndTheirUncertaintiesInTheSpectrasColours)
{
    Window w;
    w.show({spectrum(w.pos, realVector({3, 2, 1})), spectrum(w.neg, realVector({10, 20, none}), 4)});
    ASSERT_EQ(w.plots().size(), 1);
    const auto values = w.curves(), dotted = w.curves(0, Qt::DotLine);
    ASSERT_EQ(values.size(), 2);
    ASSERT_EQ(dotted.size(), 2);
    EXPECT_EQ(values[0]->sample(1), QPointF(20, 20)) << "by the order of their descriptions";
    EXPECT_EQ(dotted[0]->sample(1), QPointF(20, 2));
    EXPECT_EQ(values[1]->sample(0), QPointF(2, 3));
    EXPECT_EQ(values[0]->pen().color(), w.ui->spectrumColor(w.neg.get()));
    EXPECT_EQ(dotted[1]->pen().color(), w.ui->spectrumColor(w.pos.get()));
    EXPECT_EQ(w.span(QwtPlot::xBottom), QPointF(2, 200));
    EXPECT_TRUE(dynamic_cast<const QwtLogScaleEngine *>(w.plots()[0]->axisScaleEngine(QwtPlot::xBottom)));
    EXPECT_EQ(w.span(QwtPlot::yLeft).y(), 20);

    w.view.setDistributionType(DistributionType::fraction);
    const auto bars = w.items<QwtPlotHistogram>();
    ASSERT_EQ(bars.size(), 2);
    EXPECT_TRUE(w.curves().isEmpty());
    EXPECT_EQ(bars[0]->sample(0).value, 15) << "a decade wide";
    EXPECT_EQ(bars[0]->sample(0).interval, QwtInterval(2, 20));
    EXPECT_EQ(bars[0]->baseline(), 1e-100);
    EXPECT_EQ(bars[0]->style(), QwtPlotHistogram::Outline);
    EXPECT_EQ(w.items<QwtPlotHistogram>(0, Qt::DotLine).size(), 2);
}

TEST(SpectraView, DarkColoursAreLighterOnADarkGround)
{
    Window w;
    const QColor blue(32, 74, 135);
    w.ui->setSpectrumColor(w.neg.get(), blue);
    w.show({spectrum(w.neg, realVector({1, 2, 3}))});
    const auto *curve = w.curves()[0];
    EXPECT_EQ(curve->pen().color(), blue);
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
    const auto title = [&](int plot) { return w.plots()[plot]->axisTitle(QwtPlot::xBottom).text(); };
    w.show({spectrum(w.ions, realVector({1, 2, 4}))});
    EXPECT_EQ(w.span(QwtPlot::xBottom), QPointF(0.5, 2));
    EXPECT_EQ(w.curves()[0]->sample(0), QPointF(0.5, 4));
    w.show({spectrum(w.neg, realVector({1, 1, 1})), spectrum(w.ions, realVector({1, 2, 4}))});
    EXPECT_EQ(title(0), "mobility (cm^2/s/V)") << "that of the first in order";
    EXPECT_NEAR(w.curves()[1]->sample(2).x(), w.neg->mobilities[0], 1e-12);
    w.view.setSinglePlot(false);
    ASSERT_EQ(w.plots().size(), 2);
    EXPECT_EQ(title(1), "diameter (nm)");
    w.view.setHorizontalQuantity(false, DistributionScale::mobility);
    EXPECT_EQ(title(1), "mobility (cm^2/s/V)");
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
        const auto expectReplots = [&](int count) {
            settle();
            for (auto &counter : counters)
                EXPECT_EQ(std::exchange(counter->count, 0), count);
        };
        settle();
        for (auto &counter : counters)
            counter->count = 0;
        w.show({spectrum(w.neg, realVector({4, 5, 6})), spectrum(w.pos, realVector({7, 8, 9}))});
        expectReplots(1);
        for (int i = 0; i < plots.size(); ++i)
            EXPECT_EQ(plots[i]->itemList(), items[i]);
        w.show({});
        EXPECT_EQ(w.plots(), plots) << "a record without spectra leaves them empty";
        EXPECT_TRUE(w.curves().isEmpty());
        EXPECT_EQ(w.span(QwtPlot::xBottom).y(), 200) << "with their axes";
        expectReplots(1);
        w.view.hide();
        w.show({spectrum(w.neg, realVector({1, 2, 3}))});
        w.view.setVerticalScaleLog(true);
        expectReplots(0); // what isn't seen isn't drawn
    }
}

TEST(SpectraView, ALogAxisHasGapsAndSmallBars)
{
    Window w;
    w.view.setVerticalScaleLog(true);
    w.show({spectrum(w.neg, realVector({1e6, 1e-4, -1e-4}))});
    EXPECT_TRUE(std::isnan(w.curves()[0]->sample(1).y()));
    EXPECT_EQ(w.span(QwtPlot::yLeft).x(), 1) << "over the uncertainties, too";
    w.view.setDistributionType(DistributionType::fraction);
    EXPECT_EQ(w.items<QwtPlotHistogram>()[0]->sample(1).value, 2.220446049250313e-16);
    EXPECT_GE(w.span(QwtPlot::yLeft).x(), 1e-3);
    w.view.setVerticalScaleLog(false);
    EXPECT_EQ(w.items<QwtPlotHistogram>()[0]->sample(1).value, 0);
}

TEST(SpectraView, NamesAreToldApartAndAreNoMarkup)
{
    Window w;
    const auto title = [&](const SpectMath::SpectrumInfoPointer &one, const SpectMath::SpectrumInfoPointer &other) {
        w.show({spectrum(one, realVector({1, 2, 3})), spectrum(other, realVector({1, 2, 3}))});
        return w.plots()[0]->title().text();
    };
    const QString two = title(w.neg, w.pos);
    EXPECT_TRUE(two.contains("particles neg (a)</span>, <span style=\"color:")) << qPrintable(two);
    EXPECT_TRUE(two.contains(w.ui->spectrumColor(w.pos.get()).name()));
    const auto evil = testInfo("<img src='x'>&", {1, 2, 3}, DistributionScale::radius, "<b>");
    EXPECT_TRUE(title(w.neg, evil).contains("&lt;img src='x'&gt;&amp; (&lt;b&gt;)")) << "unknown, and still shown";

    auto twin = std::make_shared<SpectMath::SpectrumInfo>(*w.neg);
    twin->hash = "other";
    w.ui->setData(w.ui->metadata(), {w.neg, twin});
    w.ui->publish();
    const QString twins = title(w.neg, twin);
    for (const auto *info : {w.neg.get(), static_cast<const SpectMath::SpectrumInfo *>(twin.get())})
        EXPECT_TRUE(twins.contains(w.ui->spectrumName(info).toHtmlEscaped()));
    EXPECT_NE(w.ui->spectrumName(w.neg.get()), w.ui->spectrumName(twin.get()));
}

TEST(SpectraView, HeldCurvesStayUntilTheyAreReleased)
{
    for (bool isSingle : {true, false}) {
        Window w;
        w.view.setSinglePlot(isSingle);
        const auto hold = [&](bool on) { w.action("Hold curves")->setChecked(on); };
        w.show({spectrum(w.neg, realVector({1, 2, 30}))});
        hold(true);
        w.show({spectrum(w.neg, realVector({4, 5, 6}))});
        const auto curves = w.curves();
        ASSERT_EQ(curves.size(), 2) << isSingle;
        EXPECT_EQ(curves[0]->sample(2).y(), 30) << "below";
        EXPECT_LT(curves[0]->pen().widthF(), curves[1]->pen().widthF());
        EXPECT_EQ(curves[0]->pen().color().saturation(), 0);
        EXPECT_EQ(w.span(QwtPlot::yLeft).y(), 30) << "they are seen whole";
        w.view.setVerticalQuantity(ConcentrationType::diameter);
        EXPECT_EQ(curves[0]->sample(0).y(), 2) << "they follow the options";
        hold(false);
        w.show({spectrum(w.neg, realVector({4, 5, 6}), 1e-6)});
        hold(true);
        w.show({spectrum(w.neg, realVector({4, 5, 6}))});
        w.view.setVerticalScaleLog(true);
        EXPECT_EQ(w.span(QwtPlot::yLeft).x(), 1) << "their uncertainties aren't drawn";
        hold(false);
        EXPECT_EQ(w.curves().size(), 1);
        hold(true);
        w.view.showRecord(nullptr);
        EXPECT_FALSE(w.action("Hold curves")->isChecked()) << "the data went away";
        EXPECT_TRUE(w.curves().isEmpty());
    }
}

TEST(SpectraView, AMovedOrLockedAxisIsThatOfItsQuantityAlone)
{
    Window w;
    w.show({spectrum(w.neg, realVector({10, 200, 3000}))});
    for (bool isLocked : {false, true}) {
        SCOPED_TRACE(isLocked);
        w.view.setVerticalScaleLog(false);
        w.action("Lock axes")->setChecked(isLocked);
        if (!isLocked) {
            w.plots()[0]->setFocus();
            QTest::keyClick(w.plots()[0], Qt::Key_Minus);
        }
        const QPointF sizes = w.span(QwtPlot::xBottom), linear = w.span(QwtPlot::yLeft);
        w.view.setVerticalScaleLog(true);
        EXPECT_EQ(w.span(QwtPlot::yLeft), QPointF(1, 10000));
        w.view.setVerticalQuantity(ConcentrationType::volume);
        EXPECT_GT(w.span(QwtPlot::yLeft).y(), 1e7);
        w.show({spectrum(w.ions, realVector({1, 2, 3}))});
        EXPECT_EQ(w.span(QwtPlot::xBottom), QPointF(0.5, 2));
        w.view.setVerticalQuantity(ConcentrationType::number);
        w.show({spectrum(w.neg, realVector({1, 2, 3}))});
        w.view.setVerticalScaleLog(false);
        EXPECT_EQ(w.span(QwtPlot::xBottom), sizes);
        EXPECT_EQ(w.span(QwtPlot::yLeft), linear);
        w.action("Fit axes")->trigger();
        EXPECT_EQ(w.span(QwtPlot::yLeft), QPointF(1, 3));
        w.show({spectrum(w.neg, realVector({10, 200, 3000}))});
        EXPECT_EQ(w.span(QwtPlot::yLeft).y(), isLocked ? 3 : 3000);
    }
    w.action("Lock axes")->setChecked(false);
    w.show({spectrum(w.neg, realVector({10, 200, 3000}))});
    EXPECT_EQ(w.span(QwtPlot::yLeft).y(), 3000);
    w.view.showRecord(nullptr);
    w.view.setVerticalScaleLog(true);
    EXPECT_EQ(w.span(QwtPlot::yLeft), QPointF(1, 1000)) << "an empty plot has a range that it can show";
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
