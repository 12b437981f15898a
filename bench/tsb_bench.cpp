// What the spectrogram and its colour fit cost over 500 000 records (40 values each), beside the plain ways.
//
//   tsb_bench       all comparisons; each counts medians of alternating runs, in milliseconds, and of their ratios

#include "gui/common/tsb/colorfit.h"
#include "gui/common/tsb/spectrogramrenderer.h"
#include "store/datastore.h"

#include <benchmark/benchmark.h>
#include <qwt_color_map.h>
#include <qwt_matrix_raster_data.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_scale_map.h>

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <map>

namespace {

constexpr int recordCount = 500'000;
constexpr int bins = 40;
constexpr int width = 1600;
constexpr int height = 300;
constexpr std::int64_t recordTicks = 10 * ticksPerSecond;
const RecordTime start = recordTimeFromTicks(17'000 * ticksPerDay);

double concentration(int record, int bin)
{
    return std::pow(10.0, 2 + std::sin(record * 1e-4 + bin * 0.1) + 0.3 * std::sin(record * 0.37 + bin * 1.3));
}

/// A store of so many records with one spectrum each, side by side in time.
class FilledStore {
public:
    explicit FilledStore(int count)
    {
        auto description = std::make_shared<SpectMath::SpectrumInfo>();
        description->radii.resize(bins);
        for (int k = 0; k < bins; ++k)
            description->radii[std::size_t(k)] = std::pow(10.0, k * 0.05);
        m_info = description;
        m_store.setLimitRecords(false);
        for (int i = 0; i < count; ++i) {
            auto record = std::allocate_shared<Record>(SlabAllocator<Record>());
            record->beginTime = start + Ticks(i * recordTicks);
            record->endTime = record->beginTime + Ticks(recordTicks);
            auto spectrum = std::allocate_shared<SpectMath::Spectrum>(SlabAllocator<SpectMath::Spectrum>());
            spectrum->info = m_info;
            spectrum->status = 0;
            spectrum->concentrations.resize(bins);
            for (int k = 0; k < bins; ++k)
                spectrum->concentrations[std::size_t(k)] = concentration(i, k);
            m_store.insertRecord(m_store.lowerBound(record->beginTime), record);
            m_store.enterSpectrum(record, spectrum);
        }
    }
    Tsb::SpectrogramSource source() const { return {*m_store.series(m_info.get()), m_store.seriesSpans(m_info.get())}; }

private:
    SpectMath::SpectrumInfoPointer m_info;
    Datastore m_store;
};

FilledStore &store()
{
    static FilledStore filled(recordCount);
    return filled;
}

Tsb::SpectrogramParameters wholeRange(bool fillGaps = true)
{
    Tsb::SpectrogramParameters p;
    p.scale = TimeScale(start, recordCount * recordTicks / width, 0);
    p.binCount = bins;
    p.colorLower = 1;
    p.colorUpper = 3;
    p.colormap = Colormap::make(0);
    p.fillGaps = fillGaps;
    return p;
}

QImage strip()
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

double milliseconds(const std::function<void()> &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Runs two ways in turn and counts the medians of their times and of other / ours.
void compare(benchmark::State &state, const std::function<void()> &ours, const std::function<void()> &other)
{
    for (int i = 0; i < 10; ++i) {
        ours();
        other();
    }
    std::vector<double> oursTimes, otherTimes, ratios;
    for (auto _ : state) {
        oursTimes.push_back(milliseconds(ours));
        otherTimes.push_back(milliseconds(other));
        ratios.push_back(otherTimes.back() / oursTimes.back());
    }
    state.counters["ours_ms"] = median(oursTimes);
    state.counters["other_ms"] = median(otherTimes);
    state.counters["other/ours"] = median(ratios);
}

// ---- the peer

/// jet as Qwt interpolates it; its index table isn't used in the RGB format.
class PeerPlot {
public:
    PeerPlot()
    {
        QVector<double> matrix(recordCount * bins);
        for (int k = 0; k < bins; ++k)
            for (int i = 0; i < recordCount; ++i)
                matrix[k * recordCount + i] = std::log10(concentration(i, k));
        auto *data = new QwtMatrixRasterData;
        data->setValueMatrix(matrix, recordCount);
        data->setInterval(Qt::XAxis, QwtInterval(0, recordCount));
        data->setInterval(Qt::YAxis, QwtInterval(0, bins));
        data->setInterval(Qt::ZAxis, QwtInterval(1, 3));
        data->setResampleMode(QwtMatrixRasterData::BilinearInterpolation);
        m_plot.setData(data);
        auto *colors = new QwtLinearColorMap(QColor(0, 0, 127), QColor(127, 0, 0));
        colors->addColorStop(0.11, QColor(0, 0, 255));
        colors->addColorStop(0.375, QColor(0, 255, 255));
        colors->addColorStop(0.64, QColor(255, 255, 0));
        colors->addColorStop(0.9, QColor(255, 0, 0));
        m_plot.setColorMap(colors);
        m_plot.setRenderThreadCount(1);
        m_x.setScaleInterval(0, recordCount);
        m_x.setPaintInterval(0, width);
        m_y.setScaleInterval(0, bins);
        m_y.setPaintInterval(height, 0);
    }
    void draw(QImage &image)
    {
        QPainter painter(&image);
        m_plot.draw(&painter, m_x, m_y, QRectF(0, 0, width, height));
    }

private:
    QwtPlotSpectrogram m_plot;
    QwtScaleMap m_x, m_y;
};

void fullRedrawBesideQwt(benchmark::State &state)
{
    static PeerPlot peer;
    QImage image = strip(), peerImage = strip();
    const auto parameters = wholeRange();
    compare(
        state,
        [&] {
            renderSpectrogram(store().source(), parameters, image, {0, width});
        },
        [&] { peer.draw(peerImage); });
}
BENCHMARK(fullRedrawBesideQwt)->Iterations(200)->Unit(benchmark::kMillisecond);

/// Every record looked at, a logarithm for each pixel row, colours through the map, pixels set one by one.
void drawPlainly(const Tsb::SpectrogramSource &source, const Tsb::SpectrogramParameters &p, QImage &image)
{
    int covered = 0;
    for (const SpectrumRecord &entry : source.series) {
        const int left = std::max(0, int(std::round(p.scale.positionOf(entry.record->beginTime))));
        int right = std::max(left + 1, int(std::round(p.scale.positionOf(entry.record->endTime))));
        right = std::min(right, width);
        if (right <= covered)
            continue;
        covered = right;
        const auto &values = entry.spectrum->concentrations;
        for (int k = 0; k < bins - 1; ++k) {
            const int yTop = height - k * height / (bins - 1), yBottom = height - (k + 1) * height / (bins - 1);
            const double a = (std::log10(values[std::size_t(k)]) - p.colorLower) / (p.colorUpper - p.colorLower);
            const double b = (std::log10(values[std::size_t(k) + 1]) - p.colorLower) / (p.colorUpper - p.colorLower);
            for (int y = yBottom; y < yTop; ++y) {
                const QRgb color = p.colormap(double(y - yBottom) / (yTop - yBottom) * (a - b) + b);
                for (int x = left; x < right; ++x)
                    image.setPixel(x, y, color);
            }
        }
    }
}

void fullRedrawBesideThePlainWalk(benchmark::State &state)
{
    QImage image = strip(), plainImage = strip();
    const auto parameters = wholeRange(false);
    compare(
        state,
        [&] {
            renderSpectrogram(store().source(), parameters, image, {0, width});
        },
        [&] { drawPlainly(store().source(), parameters, plainImage); });
    if (image != plainImage)
        state.SkipWithError("the pictures differ");
}
BENCHMARK(fullRedrawBesideThePlainWalk)->Iterations(100)->Unit(benchmark::kMillisecond);

// ---- a pan by one column

void moveImage(QImage &image)
{
    uchar *const bits = image.bits();
    for (int y = 0; y < height; ++y) {
        uchar *line = bits + std::ptrdiff_t(y) * image.bytesPerLine();
        std::memmove(line, line + 4, std::size_t(width - 1) * 4);
    }
}

void panBesideMovingTheImage(benchmark::State &state)
{
    QImage image = strip(), moved = strip();
    auto parameters = wholeRange();
    compare(
        state,
        [&] {
            moveImage(image);
            parameters.scale.originPixel -= 1;
            if (parameters.scale.originPixel < -width / 2)
                parameters.scale.originPixel = 0;
            renderSpectrogram(store().source(), parameters, image, {width - 1, width});
        },
        [&] { moveImage(moved); });
}
BENCHMARK(panBesideMovingTheImage)->Iterations(2000)->Unit(benchmark::kMillisecond);

// ---- the same view over twice the store

void sameViewInADoubledStore(benchmark::State &state)
{
    static FilledStore doubled(2 * recordCount);
    QImage image = strip(), other = strip();
    const bool pan = state.range(0) != 0;
    auto parameters = wholeRange();
    if (pan)
        parameters.scale.originPixel = width / 8; // the last column lies within the data of both
    const PixelRange columns(pan ? width - 1 : 0, width);
    compare(
        state, [&] { renderSpectrogram(store().source(), parameters, image, columns); },
        [&] { renderSpectrogram(doubled.source(), parameters, other, columns); });
}
BENCHMARK(sameViewInADoubledStore)->Arg(0)->Arg(1)->Iterations(400)->Unit(benchmark::kMillisecond);

// ---- fitting the colours

void colorFitBesideReadingEachValue(benchmark::State &state)
{
    const auto parameters = wholeRange();
    compare(
        state,
        [&] {
            Tsb::ColorHistogram histogram;
            Tsb::addVisibleValues(histogram, store().source(), parameters.scale, width, bins, nullptr);
            auto limits = histogram.limits();
            benchmark::DoNotOptimize(limits);
        },
        [&] {
            double sum = 0;
            const auto source = store().source();
            for (std::size_t i = 0; i < source.series.size(); ++i) {
                if (const double *values = source.values(i, bins))
                    for (int k = 0; k < bins; ++k)
                        sum += values[k];
            }
            benchmark::DoNotOptimize(sum);
        });
}
BENCHMARK(colorFitBesideReadingEachValue)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
