#include "gui/common/recordviews/diagnosticvalue.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace RecordViews {

namespace {

constexpr double nearZero = std::numeric_limits<double>::epsilon();
constexpr int mostDecimals = 8;      ///< without an exponent
constexpr double endOfDoubles = 340; ///< no double has a digit beyond that decimal

/// The decimals that show two digits of the deviation.
int decimalsFor(double deviation)
{
    return int(std::clamp(1 - std::floor(std::log10(deviation)), 0.0, endOfDoubles));
}

} // namespace

QString diagnosticValueText(double mean, double deviation)
{
    if (std::isnan(mean))
        return {};
    deviation = std::abs(deviation);
    if (!std::isfinite(mean) || !std::isfinite(deviation) || deviation <= nearZero)
        return QString::fromStdString(fmt::format("{:.2g}", mean));
    const int decimals = decimalsFor(deviation);
    if (decimals <= mostDecimals)
        return QString::fromStdString(fmt::format("{:.{}f}", mean, decimals));
    const int exponent = int(std::floor(std::log10(std::max(std::abs(mean), deviation))));
    const double scale = std::pow(10.0, exponent);
    return QString::fromStdString(
        fmt::format("{:.{}f}e{:+02d}", mean / scale, decimalsFor(deviation / scale), exponent));
}

} // namespace RecordViews
