#include "axis/spectrogramaxis.h"

#include <algorithm>
#include <cmath>

namespace Tsb {

std::optional<SpectrogramAxis> spectrogramAxis(const SpectMath::SpectrumInfo &info)
{
    const RealVector &points = info.nativePoints();
    if (points.size() < 2)
        return std::nullopt;
    const double first = points[0], last = points[points.size() - 1];
    const double low = std::min(first, last), high = std::max(first, last);
    switch (info.scale) {
    case SpectMath::DistributionScale::mobility:
        return SpectrogramAxis{std::log10(high), std::log10(low), first <= last};
    case SpectMath::DistributionScale::radius:
        return SpectrogramAxis{std::log10(2 * low), std::log10(2 * high), first >= last};
    case SpectMath::DistributionScale::diameter:
        break;
    }
    return SpectrogramAxis{std::log10(low), std::log10(high), first >= last};
}

} // namespace Tsb
