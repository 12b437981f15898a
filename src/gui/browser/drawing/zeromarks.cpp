#include "gui/browser/drawing/zeromarks.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

namespace {

constexpr int period = 4, thickness = 2; ///< rows
constexpr uint lightGray = 0xFFE8E8E8, darkGray = 0xFF787878;

} // namespace

uint zeroStripe(int row)
{
    return row % period < thickness ? darkGray : lightGray;
}

void markZeros(const std::vector<double> &values, int left, int right, const std::function<uint(double value)> &colorOf,
               QImage &image)
{
    uchar *const bits = image.bits();
    const auto fill = [&](int top, int bottom, double value) {
        if (std::isnan(value))
            return;
        const uint color = value > 0 ? colorOf(value) : 0;
        for (int y = top; y < bottom; ++y) {
            auto *const line = reinterpret_cast<uint *>(bits + std::ptrdiff_t(y) * image.bytesPerLine());
            std::fill(line + left, line + right, value > 0 ? color : zeroStripe(y));
        }
    };
    const auto intervals = std::int64_t(values.size()) - 1, height = std::int64_t(image.height());
    for (std::int64_t k = 0; k < intervals; ++k) {
        const double below = values[std::size_t(k)], above = values[std::size_t(k) + 1];
        if (!(below <= 0) && !(above <= 0))
            continue;
        const auto bottom = int(height - k * height / intervals), top = int(height - (k + 1) * height / intervals);
        const int middle = top + (bottom - top) / 2;
        fill(middle, bottom, below);
        fill(top, middle, above);
    }
}

} // namespace Tsb
