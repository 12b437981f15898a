#include "gui/browser/views/fittedscale.h"

#include "columns/setupkeys.h"
#include "columns/setupvalues.h"

#include <cmath>

namespace Tsb {

std::optional<FittedScale::Range> FittedScale::grown(const Range &scale, const Range &seen, double margin)
{
    const double beyond = (seen.second - seen.first) * margin;
    const Range grown(seen.first < scale.first ? seen.first - beyond : scale.first,
                      seen.second > scale.second ? seen.second + beyond : scale.second);
    if (grown == scale || !std::isfinite(grown.second - grown.first))
        return std::nullopt;
    return grown;
}

void FittedScale::store(const Range &scale, QVariantMap *setup) const
{
    if (isUntouched(scale))
        (*setup)[SetupKeys::isScaleFitted] = true;
}

void FittedScale::restore(const QVariantMap &setup, const Range &scale)
{
    if (boolOr(setup, SetupKeys::isScaleFitted, false))
        fit(scale);
}

} // namespace Tsb
