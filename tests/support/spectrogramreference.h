#pragma once

#include "gui/browser/drawing/spectrogramrenderer.h"

#include <memory>
#include <random>

/// A series as a store keeps it, built entry by entry.
struct TestSeries {
    Datastore::Series entries;
    SpanIndex spans;

    /// Appends a record; times must not descend in begin. Null values: an entry without a spectrum.
    void add(std::int64_t begin, std::int64_t end, const std::vector<double> *values, int status = 0)
    {
        SpectrumRecord entry;
        entry.record = std::make_shared<Record>();
        entry.record->beginTime = recordTimeFromTicks(begin);
        entry.record->endTime = recordTimeFromTicks(end);
        if (values) {
            entry.spectrum = std::make_shared<SpectMath::Spectrum>();
            entry.spectrum->concentrations.resize(values->size());
            std::copy(values->begin(), values->end(), entry.spectrum->concentrations.begin());
            entry.spectrum->status = status;
        }
        spans.append(entry.record->beginTime, entry.record->endTime);
        entries.push_back(entry);
    }
    Tsb::SpectrogramSource source() const { return {entries, spans}; }
};

/// The drawing rules written down step by step: every entry, every pixel, no short cut.
inline void drawPlainly(const TestSeries &series, const Tsb::SpectrogramParameters &p, QImage &image, int first,
                        int last, int offset)
{
    if (!p.colormap || p.binCount < 2)
        return;
    const int width = image.width(), H = image.height(), n = p.binCount;
    const auto begins = [&](std::size_t i) { return series.entries[i].record->beginTime; };
    const auto ends = [&](std::size_t i) {
        const RecordTime end = series.entries[i].record->endTime;
        return isMissing(end) ? begins(i) : end;
    };
    const std::size_t size = series.entries.size();
    std::size_t low = 0, high = 0;
    while (low < size && begins(low) < p.scale.tickAt(first - 2))
        ++low;
    while (high < size && begins(high) < p.scale.tickAt(last + 2))
        ++high;
    low = low > 0 ? low - 1 : 0;
    high = std::min(size, high + 1);

    const auto x = [&](RecordTime t) {
        return double(saturatedSubtract(ticksOf(t), ticksOf(p.scale.originTick))) / 1e7 /
                   (double(p.scale.ticksPerPixel) / 1e7) +
               double(p.scale.originPixel);
    };
    const auto pad = [](double g) { return g < 10 ? g / 2 : g < 20 ? 10 - g / 2 : 0; };
    int covered = 0;
    for (std::size_t i = low; i < high; ++i) {
        const auto &spectrum = series.entries[i].spectrum;
        if (!spectrum || int(spectrum->concentrations.size()) != n || spectrum->status != 0)
            continue;
        const double right0 = x(ends(i)), left0 = x(begins(i));
        double padLeft = 0, padRight = 0;
        if (p.fillGaps && i > 0)
            padLeft = pad(left0 - x(ends(i - 1)));
        if (p.fillGaps && i + 1 < size)
            padRight = pad(x(begins(i + 1)) - right0);
        padLeft = std::min(padLeft, padRight + 1);
        padRight = std::min(padRight, padLeft + 1);
        int right = int(std::round(std::clamp(right0 + padRight + offset, -1e6, 1e6)));
        int left = int(std::round(std::clamp(left0 - padLeft + offset, -1e6, 1e6)));
        if (right == left)
            right = left + 1;
        left = std::max(left, 0);
        if (left >= width)
            continue;
        right = std::min(right, width);
        if (!(right > covered && right > left))
            continue;
        covered = right;

        std::vector<double> v(spectrum->concentrations.begin(), spectrum->concentrations.end());
        if (p.smoothing) {
            const std::vector<double> c = v;
            for (int j = 0; j < n; ++j) {
                v[std::size_t(j)] = 0;
                for (int k = 0; k < n; ++k)
                    v[std::size_t(j)] += c[std::size_t(k)] * (*p.smoothing)(std::size_t(k), std::size_t(j));
            }
        }
        for (double &value : v)
            value = std::log10(value);
        if (p.reversedRows)
            std::reverse(v.begin(), v.end());
        for (int k = 0; k < n - 1; ++k) {
            const int yTop = H - k * H / (n - 1), yBottom = H - (k + 1) * H / (n - 1);
            const double a = (v[std::size_t(k)] - p.colorLower) / (p.colorUpper - p.colorLower);
            const double b = (v[std::size_t(k) + 1] - p.colorLower) / (p.colorUpper - p.colorLower);
            for (int y = yBottom; y < yTop; ++y) {
                const double t = double(y - yBottom) / (yTop - yBottom);
                double value = a == b ? a : t * (a - b) + b;
                if (std::isnan(a) || std::isnan(b) || std::isnan(value))
                    value = 0;
                for (int column = std::max(left, first + offset); column < std::min(right, last + offset); ++column)
                    image.setPixel(column, y, p.colormap(value));
            }
        }
    }
}
