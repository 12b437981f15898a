#include "demo/spectrumnoise.h"

#include "demo/random.h"

#include <cmath>
#include <cstdlib>

namespace Demo {

namespace {

/// The deviation of the sum below.
double triangleNorm(int halfWidth)
{
    double sum = 0;
    for (int k = -halfWidth; k <= halfWidth; ++k)
        sum += std::pow(halfWidth + 1 - std::abs(k), 2);
    return std::sqrt(sum);
}

} // namespace

RealVector smoothNoise(std::size_t count, int halfWidth, Random &random)
{
    std::vector<double> white(count + 2 * std::size_t(halfWidth));
    for (double &value : white)
        value = random.normal();
    RealVector noise(count);
    for (std::size_t j = 0; j < count; ++j) {
        double sum = 0;
        for (int k = -halfWidth; k <= halfWidth; ++k)
            sum += (halfWidth + 1 - std::abs(k)) * white[std::size_t(int(j) + halfWidth + k)];
        noise[j] = sum / triangleNorm(halfWidth);
    }
    return noise;
}

void setResiduals(SpectMath::Spectrum &spectrum, const RealVector &calculated, const RealVector &measured,
                  std::size_t first)
{
    double squares = 0;
    double absolutes = 0;
    double total = 0;
    for (std::size_t i = 0; i < calculated.size(); ++i) {
        const double difference = calculated[i] - measured[first + i];
        squares += difference * difference;
        absolutes += std::fabs(difference);
        total += difference;
    }
    spectrum.currentRmsError = std::sqrt(squares / double(calculated.size()));
    spectrum.currentMeanAbsError = absolutes / double(calculated.size());
    spectrum.currentTotalError = total;
}

void setFailed(SpectMath::Spectrum &spectrum, std::size_t points, int status)
{
    spectrum.status = status;
    spectrum.concentrations = RealVector(points, noValue);
    spectrum.covariances = BandMatrix(points, points, 0, 0);
    for (std::size_t i = 0; i < points; ++i)
        spectrum.covariances(i, i) = noValue;
    spectrum.currentRmsError = spectrum.currentMeanAbsError = spectrum.currentTotalError = noValue;
}

} // namespace Demo
