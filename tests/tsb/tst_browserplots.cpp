#include "gui/common/tsb/opmodeview.h"
#include "gui/common/tsb/scatterplotview.h"
#include "gui/common/tsb/spectrogramview.h"
#include "gui/common/tsb/timeseriesbrowser.h"
#include "gui/common/tsb/timeview.h"
#include "tsb/plotstore.h"

#include <QAction>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

/// A browser with all kinds of views over a store of two modes with a spectrum each, and one variable.
class BrowserPlotsTest : public ::testing::Test {
protected:
    BrowserPlotsTest()
    {
        store.setLimitRecords(false);
        for (const char *mode : {"ions", "particles"}) {
            auto info = std::make_shared<SpectMath::SpectrumInfo>();
            info->name = QLatin1String(mode) + QStringLiteral(" neg");
            info->opmode = QLatin1String(mode);
            info->radii.resize(8);
            for (std::size_t i = 0; i < 8; ++i)
                info->radii(i) = 0.5 * std::pow(1.5, double(i));
            info->scale = SpectMath::DistributionScale::radius;
            info->finish();
            infos << info;
        }
        auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        variable->name = QStringLiteral("temperature");
        variable->valueIndex = 0;
        metadata->variables << variable;
        uiInfo->setData(metadata, infos);
        uiInfo->publish();
        for (int i = 0; i < 300; ++i)
            add(i * 10, i * 10 + 10);
        browser.resize(900, 700);
        browser.setDatastore(&store);
        browser.show();
        browser.fitTimescale(store.at(0)->beginTime, store.at(store.size() - 1)->endTime);
        settle();
    }
    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    void add(double begin, double end)
    {
        const int mode = int(begin / 10) % 2;
        auto full = testRecord(begin, end, mode);
        full->variables = RealVector(1, std::sin(begin / 200));
        store.addFullRecord(full);
        auto spectrum = std::make_shared<SpectMath::Spectrum>();
        spectrum->info = infos[mode];
        spectrum->status = 0;
        spectrum->concentrations = RealVector(8, 100.0 + 50 * std::sin(begin / 300));
        auto result = std::make_shared<SpectMath::SpectrumRecord>();
        static_cast<Spectrometer::RecordHead &>(*result) = *full;
        result->spectra = {spectrum};
        store.replaceSpectra(result);
    }
    template<class T>
    T *view(int index)
    {
        return dynamic_cast<T *>(browser.views().value(index));
    }

    QList<SpectMath::SpectrumInfoPointer> infos;
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    Datastore store;
    Tsb::TimeSeriesBrowser browser{uiInfo};
};

/// Over all pixels and channels.
int greatestDifference(const QImage &a, const QImage &b)
{
    int greatest = a.size() == b.size() ? 0 : 255;
    for (int y = 0; greatest < 255 && y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return greatest;
}

TEST_F(BrowserPlotsTest, TheMenuHasEveryKind)
{
    const char *const texts[] = {"Spectrogram", "Fraction concentration", "Electrometer current",
                                 "Variable",    "Inversion parameter",    "Operating mode"};
    ASSERT_EQ(browser.addPlotActions().size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(browser.addPlotActions()[i]->text(), QLatin1String(texts[i]));
        browser.addPlotActions()[i]->trigger();
    }
    ASSERT_EQ(browser.views().size(), 6);
    EXPECT_NE(view<Tsb::SpectrogramView>(0), nullptr);
    const int types[] = {ScatterPlotSettings::Concentration, ScatterPlotSettings::Electrometer,
                         ScatterPlotSettings::Variable, ScatterPlotSettings::Parameter};
    for (int i = 0; i < 4; ++i) {
        ASSERT_NE(view<Tsb::ScatterPlotView>(i + 1), nullptr);
        EXPECT_EQ(view<Tsb::ScatterPlotView>(i + 1)->plotSettings().type, types[i]);
    }
    EXPECT_NE(view<Tsb::OpmodeView>(5), nullptr);
}

TEST_F(BrowserPlotsTest, RequestsOpenTheRightPlot)
{
    Q_EMIT uiInfo->requestElectrometerScatterplot(3);
    Q_EMIT uiInfo->requestVariableScatterplot(QStringLiteral("temperature"));
    Q_EMIT uiInfo->requestFlagPlot(QStringLiteral("{type: warning, message: Too humid}"));
    ASSERT_EQ(browser.views().size(), 3);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(0)->plotSettings().type, ScatterPlotSettings::Electrometer);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(0)->plotSettings().electrometerNumber, 3);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().type, ScatterPlotSettings::Variable);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().parameterName, QStringLiteral("temperature"));
    EXPECT_EQ(view<Tsb::OpmodeView>(2)->settings().toMap(),
              (QVariantMap{{"type", "flag"}, {"flag", "{type: warning, message: Too humid}"}}));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(view<Tsb::ScatterPlotView>(i)->settings().toMap()[QStringLiteral("propertiesVisible")].toBool());
}

TEST_F(BrowserPlotsTest, TheDefaultStackIsFittedAndGoesRound)
{
    browser.addDefaultStack();
    settle();
    ASSERT_EQ(browser.views().size(), 5);
    EXPECT_NE(view<Tsb::OpmodeView>(0), nullptr);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().visibleSpectra, QSet<QString>{infos[0]->hash});
    EXPECT_EQ(view<Tsb::ScatterPlotView>(2)->plotSettings().type, ScatterPlotSettings::Variable);
    for (int i = 0; i < 2; ++i) {
        auto *const spectrogram = view<Tsb::SpectrogramView>(3 + i);
        ASSERT_NE(spectrogram, nullptr);
        EXPECT_EQ(spectrogram->visibleSpectra(), QSet<QString>{infos[i]->hash});
        EXPECT_NEAR(spectrogram->colorLower(), std::log10(50.0), 0.05);
        EXPECT_NEAR(spectrogram->colorUpper(), std::log10(150.0), 0.05);
    }
    const auto contents = [](const QFrame *frame) {
        return qMakePair(frame->mapToGlobal(frame->contentsRect().topLeft()).x(),
                         frame->mapToGlobal(frame->contentsRect().topRight()).x());
    };
    const auto plots = browser.findChildren<Tsb::Plot *>();
    EXPECT_EQ(plots.size(), 5);
    for (const Tsb::Plot *plot : plots)
        EXPECT_EQ(contents(plot), contents(browser.timeView())) << plot->metaObject()->className();

    const QVariant setup = browser.setup();
    browser.setSetup(setup);
    settle();
    EXPECT_EQ(browser.setup(), setup);
}

/// Records that come in bursts while the axis moves leave the picture that a fresh browser draws.
TEST_F(BrowserPlotsTest, LiveDataEqualsAFullRedraw)
{
    browser.addDefaultStack();
    for (Tsb::View *view : browser.views()) {
        QVariantMap settings = view->settings().toMap();
        settings[QStringLiteral("autoFillGaps")] = false; // closes gaps beside a change only at the next redraw
        view->setSettings(settings);
    }
    settle();
    std::mt19937 random(11);
    int next = 3000;
    for (int burst = 0; burst < 20; ++burst) {
        for (int i = 0; i < 100; ++i, next += 10)
            add(next, next + 10);
        TimeScale scale = browser.timeScale();
        scale.originPixel -= std::int64_t(random() % 120);
        browser.timeView()->setTimeScale(scale);
        if (burst % 3 == 0)
            settle();
    }
    // As at the timer's next beat.
    for (Tsb::Plot *plot : browser.findChildren<Tsb::Plot *>())
        plot->update();
    settle();

    Tsb::TimeSeriesBrowser fresh(uiInfo);
    fresh.resize(browser.size());
    fresh.setDatastore(&store);
    fresh.timeView()->setTimeScale(browser.timeScale());
    fresh.setSetup(browser.setup());
    fresh.show();
    settle();
    const auto plots = browser.findChildren<Tsb::Plot *>(), others = fresh.findChildren<Tsb::Plot *>();
    ASSERT_EQ(plots.size(), others.size());
    for (int i = 0; i < plots.size(); ++i) {
        plots[i]->grab();
        others[i]->grab();
        EXPECT_EQ(greatestDifference(plots[i]->image(), others[i]->image()), 0) << plots[i]->metaObject()->className();
    }
}

} // namespace
