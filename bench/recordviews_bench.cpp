// What a step to the next record costs in the docks that show one record, through the event loop to the finished
// picture, beside plain widgets that draw as much. Each case counts medians of alternating runs by processor time, in
// milliseconds, and of their ratios.

#include "gui/common/recordviews/distribution/spectraview.h"
#include "support/measuring.h"

#include <QApplication>
#include <QVBoxLayout>

#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_histogram.h>
#include <qwt_scale_engine.h>

#include <array>
#include <cmath>

namespace {

using SpectMath::DistributionType;

constexpr int points = 60;
constexpr int spectrumCount = 2;
constexpr int recordCount = 97;
constexpr QSize dockSize(640, 900); // a quarter of 2560 x 1440

void finishPicture()
{
    for (int i = 0; i < 3; ++i) {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
}

SpectMath::SpectrumInfoPointer makeInfo(const char *name)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = QString::fromLatin1(name);
    info->scale = SpectMath::DistributionScale::radius;
    info->radii.resize(points);
    for (int i = 0; i < points; ++i)
        info->radii[std::size_t(i)] = std::pow(10.0, i * 0.03);
    info->finish();
    return info;
}

/// A day in which each record differs from the last.
std::vector<std::shared_ptr<Record>> makeRecords(const std::array<SpectMath::SpectrumInfoPointer, spectrumCount> &infos)
{
    std::vector<std::shared_ptr<Record>> records;
    for (int r = 0; r < recordCount; ++r) {
        auto record = std::make_shared<Record>();
        for (const auto &info : infos) {
            auto spectrum = SpectMath::makeSpectrum();
            spectrum->info = info;
            spectrum->status = 0;
            spectrum->concentrations.resize(points);
            spectrum->covariances = BandMatrix(points, points, 0, 0);
            for (std::size_t i = 0; i < points; ++i) {
                spectrum->concentrations[i] = 1000 * (1.2 + std::sin(r * 0.1 + double(i) * 0.2));
                spectrum->covariances(i, i) = 100 * 100;
            }
            record->spectra.push_back(spectrum);
        }
        records.push_back(record);
    }
    return records;
}

struct Records {
    std::array<SpectMath::SpectrumInfoPointer, spectrumCount> infos{makeInfo("particles neg"),
                                                                    makeInfo("particles pos")};
    std::vector<std::shared_ptr<Record>> all = makeRecords(infos);
    const std::shared_ptr<Record> &operator[](int i) const { return all[std::size_t(i % recordCount)]; }
};

/// Plots of the same curves as Qwt draws them by itself.
class PlainPlots : public QWidget {
public:
    PlainPlots(int plots, DistributionType type) : m_type(type)
    {
        auto *const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        for (int i = 0; i < plots; ++i) {
            auto *const plot = new QwtPlot(this);
            plot->setTitle(QStringLiteral("particles neg"));
            plot->setAxisTitle(QwtPlot::xBottom, QStringLiteral("diameter (nm)"));
            plot->setAxisTitle(QwtPlot::yLeft, QStringLiteral("dn/dlogD (1/cm^3)"));
            plot->setAxisScaleEngine(QwtPlot::xBottom, new QwtLogScaleEngine);
            auto *const grid = new QwtPlotGrid;
            grid->setPen(Qt::lightGray, 0, Qt::DotLine);
            grid->attach(plot);
            layout->addWidget(plot);
            m_plots.push_back(plot);
        }
        for (int i = 0; i < spectrumCount; ++i) {
            addItems(m_plots[std::size_t(i % plots)], Qt::SolidLine);
            addItems(m_plots[std::size_t(i % plots)], Qt::DotLine);
        }
    }
    void show(const Record &record)
    {
        std::size_t item = 0;
        for (const auto &spectrum : record.spectra) {
            RealVector values[2];
            spectrum->getDistribution(m_type, SpectMath::ConcentrationType::number, values[0], values[1]);
            const RealVector grid = spectrum->info->points(SpectMath::DistributionScale::diameter);
            for (const RealVector &one : values)
                setSamples(item++, grid, one);
        }
        for (QwtPlot *plot : m_plots)
            plot->replot();
    }

private:
    void addItems(QwtPlot *plot, Qt::PenStyle style)
    {
        const QPen pen(Qt::darkBlue, 1, style);
        if (m_type == DistributionType::density) {
            auto *const curve = new QwtPlotCurve;
            curve->setPen(pen);
            m_curves.push_back(curve);
            curve->attach(plot);
        } else {
            auto *const bars = new QwtPlotHistogram;
            bars->setStyle(QwtPlotHistogram::Outline);
            bars->setPen(pen);
            m_bars.push_back(bars);
            bars->attach(plot);
        }
    }
    void setSamples(std::size_t item, const RealVector &grid, const RealVector &values)
    {
        if (m_type == DistributionType::density)
            return m_curves[item]->setSamples(grid.data().begin(), values.data().begin(), int(values.size()));
        QVector<QwtIntervalSample> samples;
        for (std::size_t i = 0; i < values.size(); ++i)
            samples.append(QwtIntervalSample(values[i], grid[i], grid[i + 1]));
        m_bars[item]->setSamples(samples);
    }

    DistributionType m_type;
    std::vector<QwtPlot *> m_plots;
    std::vector<QwtPlotCurve *> m_curves;
    std::vector<QwtPlotHistogram *> m_bars;
};

/// The distribution plot beside plain plots of its size.
void distributionStep(benchmark::State &state, DistributionType type, bool isSinglePlot)
{
    const Records records;
    auto uiInfo = std::make_shared<UiInfo>();
    uiInfo->setData(nullptr, {records.infos.begin(), records.infos.end()});
    uiInfo->publish();
    RecordViews::SpectraView view(uiInfo);
    view.setDistributionType(type);
    view.setSinglePlot(isSinglePlot);
    PlainPlots plain(isSinglePlot ? 1 : spectrumCount, type);
    for (QWidget *widget : {static_cast<QWidget *>(&view), static_cast<QWidget *>(&plain)}) {
        widget->resize(dockSize);
        widget->show();
    }
    finishPicture();
    int ours = 0, others = 0;
    compare(
        state,
        [&] {
            view.showRecord(records[ours++]);
            finishPicture();
        },
        [&] {
            plain.show(*records[others++]);
            finishPicture();
        });
}

BENCHMARK_CAPTURE(distributionStep, one_plot_of_curves, DistributionType::density, true)->Iterations(200);
BENCHMARK_CAPTURE(distributionStep, two_plots_of_curves, DistributionType::density, false)->Iterations(200);
BENCHMARK_CAPTURE(distributionStep, one_plot_of_bars, DistributionType::fraction, true)->Iterations(200);
BENCHMARK_CAPTURE(distributionStep, two_plots_of_bars, DistributionType::fraction, false)->Iterations(200);

} // namespace
