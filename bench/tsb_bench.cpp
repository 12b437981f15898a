// What the spectrogram and its colour fit cost over 500 000 records (40 values each), beside the plain ways.
//
//   tsb_bench       all comparisons; each counts medians of alternating runs, in milliseconds, and of their ratios

#include "gui/browser/drawing/colorfit.h"
#include "gui/browser/drawing/spectrogramrenderer.h"
#include "support/fillstore.h"
#include "support/measuring.h"
#include "support/peer.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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
        fillAsRead(m_store, count, [this](int i) {
            auto record = makeRecord();
            record->beginTime = start + Ticks(i * recordTicks);
            record->endTime = record->beginTime + Ticks(recordTicks);
            auto spectrum = SpectMath::makeSpectrum();
            spectrum->info = m_info;
            spectrum->status = 0;
            spectrum->concentrations.resize(bins);
            for (int k = 0; k < bins; ++k)
                spectrum->concentrations[std::size_t(k)] = concentration(i, k);
            record->spectra.push_back(spectrum);
            return record;
        });
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

void fullRedrawBesideQwt(benchmark::State &state)
{
    PeerSpectrogram peer(recordCount, bins, concentration, width, height);
    QImage image = strip();
    const auto parameters = wholeRange();
    compare(
        state,
        [&] {
            renderSpectrogram(store().source(), parameters, image, {0, width});
        },
        [&] { peer.draw(); });
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
            SpectMath::DecadeHistogram histogram;
            Tsb::addVisibleValues(histogram, store().source(), parameters.scale, width, bins, nullptr);
            auto limits = Tsb::colorLimits(histogram);
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
