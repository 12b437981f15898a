#include "gui/common/recordviews/distribution/distributionvalues.h"

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr std::size_t mostSmoothedPoints = 2000; // a matrix of 32 MB
constexpr double leastCertainty = 0.001;         ///< of its uncertainty, below which a value isn't drawn
constexpr double mostDecades = 1e8;
constexpr double greatestDrawn = 1e100; ///< beyond it the arithmetic of an axis overflows

void cut(RealVector &vector, std::size_t size)
{
    if (vector.size() > size)
        vector.resize(size);
}

bool isOnLogAxis(double value)
{
    return value >= 1 / greatestDrawn && value <= greatestDrawn;
}

/// A value that can be drawn, or NaN.
double drawable(double value, bool isLog, double substitute)
{
    if (!isLog)
        return std::abs(value) <= greatestDrawn ? value : noValue;
    return value <= 0 ? substitute : isOnLogAxis(value) ? value : noValue;
}

} // namespace

SpectMath::DistributionScale shownAxis(const SpectMath::SpectrumInfo &info, const PlotOptions &options)
{
    const SpectMath::DistributionScale axis = options.horizontalQuantityAuto ? info.scale : options.horizontalQuantity;
    return axis == SpectMath::DistributionScale::radius ? SpectMath::DistributionScale::diameter : axis;
}

// ---- smoothing

const RealMatrix &DisplaySmoothing::matrix(std::size_t points, double width)
{
    if (m_width != width)
        m_matrices.clear();
    m_width = width;
    const auto known = m_matrices.find(points);
    if (known != m_matrices.end())
        return known->second;
    return m_matrices.emplace(points, SpectMath::smoothingWindowMatrix(int(points), width)).first->second;
}

SpectMath::Spectrum DisplaySmoothing::smoothed(const SpectMath::Spectrum &spectrum, double width)
{
    const std::size_t points = spectrum.concentrations.size();
    if (width == 0.0 || points > mostSmoothedPoints)
        return spectrum;
    return spectrum.smoothed(matrix(points, width), SpectMath::CovarianceSmoothing::keep);
}

// ---- values

DistributionValues distributionValues(const SpectMath::Spectrum &spectrum, const PlotOptions &options,
                                      SpectMath::DistributionScale axis, DisplaySmoothing &smoothing)
{
    DistributionValues result;
    if (!spectrum.info || spectrum.status != 0) // looked at here: a smoothed spectrum has no status of its own
        return result;
    const auto take = [&](const SpectMath::Spectrum &from) {
        from.getDistribution(options.distributionType, options.verticalQuantity, result.values, result.uncertainties);
    };
    if (options.smoothingCoef == 0.0)
        take(spectrum);
    else
        take(smoothing.smoothed(spectrum, options.smoothingCoef));
    result.grid = spectrum.info->points(axis);
    const bool isFraction = options.distributionType == SpectMath::DistributionType::fraction;
    const std::size_t room = isFraction && !result.grid.empty() ? result.grid.size() - 1 : result.grid.size();
    const std::size_t size = std::min({room, result.values.size(), result.uncertainties.size()});
    cut(result.values, size);
    cut(result.uncertainties, size);
    cut(result.grid, isFraction && size > 0 ? size + 1 : size);
    return result;
}

DistributionValues drawnValues(DistributionValues values, const PlotOptions &options)
{
    const bool isLog = options.verticalScaleLog;
    const bool isFraction = options.distributionType == SpectMath::DistributionType::fraction;
    const double substitute = isFraction ? smallBar : noValue;
    for (std::size_t i = 0; i < values.size(); ++i) {
        double &value = values.values[i];
        double &uncertainty = values.uncertainties[i];
        const bool isUncertain = isLog && value < leastCertainty * uncertainty;
        value = isUncertain ? substitute : drawable(value, isLog, substitute);
        uncertainty = drawable(uncertainty, isLog, substitute);
    }
    for (double &x : values.grid)
        x = isOnLogAxis(x) ? x : noValue;
    if (!values.grid.empty() && values.grid[0] > values.grid[values.grid.size() - 1]) {
        for (RealVector *vector : {&values.grid, &values.values, &values.uncertainties})
            std::reverse(vector->begin(), vector->end());
    }
    return values;
}

// ---- extents

void Extent::include(double value)
{
    if (std::isnan(value))
        return;
    if (!(value >= least))
        least = value;
    if (!(value <= greatest))
        greatest = value;
}

void Extent::include(const Extent &other)
{
    include(other.least);
    include(other.greatest);
}

void DistributionExtents::include(const DistributionValues &drawn, bool isLog)
{
    const auto isPoint = [](double x) { return !std::isnan(x); };
    if (drawn.grid.size() > 2) {
        const auto first = std::find_if(drawn.grid.begin(), drawn.grid.end(), isPoint);
        if (first != drawn.grid.end()) {
            horizontal.include(*first);
            horizontal.include(*std::find_if(drawn.grid.rbegin(), drawn.grid.rend(), isPoint));
        }
    }
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        for (double value : {drawn.values[i], isLog ? drawn.uncertainties[i] : noValue}) {
            if (!isLog || value != smallBar)
                vertical.include(value);
        }
    }
}

Extent limitedToDecades(Extent extent)
{
    extent.least = std::max(extent.least, extent.greatest / mostDecades);
    return extent;
}

} // namespace RecordViews
