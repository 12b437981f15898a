#include "gui/browser/drawing/colorfit.h"

#include "columns/spectrumwalk.h"

#include <vector>

namespace Tsb {

namespace {

constexpr double droppedShare = 0.025;

} // namespace

std::optional<std::pair<double, double>> colorLimits(const DecadeHistogram &histogram)
{
    constexpr int lastBin = DecadeHistogram::binCount - 1;
    const std::int64_t sum = histogram.total();
    if (sum == 0)
        return std::nullopt;
    const double target = droppedShare * double(sum);
    std::int64_t below = 0;
    int lowBin = 0; // the number of bins walked until the count reaches the target
    while (lowBin < lastBin - 1 && double(below) < target)
        below += histogram.count(lowBin++);
    std::int64_t above = histogram.count(lastBin);
    int highBin = lastBin; // the bin whose count reaches it from above
    while (highBin > 1 && double(above) < target)
        above += histogram.count(--highBin);
    const double lower = (lowBin - 1) * DecadeHistogram::binWidth + DecadeHistogram::lowestDecade;
    const double upper = highBin * DecadeHistogram::binWidth + DecadeHistogram::lowestDecade;
    if (!(lower < upper))
        return std::nullopt;
    return std::pair(lower, upper);
}

void addVisibleValues(DecadeHistogram &histogram, const SpectrogramSource &source, const TimeScale &scale, int width,
                      int valuesPerSpectrum, const RealMatrix *smoothing, const DecadeHistogram *ofAll)
{
    const auto n = std::size_t(valuesPerSpectrum);
    const auto [begin, end] = source.entriesAround(scale, 0, width);
    if (ofAll && !smoothing && end - begin > source.series.size() / 2) {
        histogram.add(*ofAll);
        const auto takeOut = [&](const SpectrumRecord &entry) {
            if (const double *values = SpectrogramSource::valuesOf(entry, n))
                histogram.remove(values, n);
        };
        walkSpectra(source.series, 0, begin, takeOut);
        walkSpectra(source.series, end, source.series.size(), takeOut);
        return;
    }
    std::vector<double> smoothed(n);
    walkSpectra(source.series, begin, end, [&](const SpectrumRecord &entry) {
        const double *values = SpectrogramSource::valuesOf(entry, n);
        if (!values)
            return;
        if (smoothing) {
            multiplyRow(values, *smoothing, smoothed.data(), n);
            values = smoothed.data();
        }
        histogram.add(values, n);
    });
}

} // namespace Tsb
