#include "spectra/smoothing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace SpectMath {

namespace {

constexpr double pi = 3.14159265358979323846;

/// k[0] ... k[L - 1], normalised so that the kernel with its mirrored half sums to 1.
std::vector<double> windowKernel(double width)
{
    const double w = !std::isfinite(width) ? 0.0 : width > 1e6 ? 1e6 : width < -2.0 ? -2.0 : width;
    const int length = std::max(1, int(w + 1.0) + 1);
    std::vector<double> kernel(std::size_t(length), 1.0);
    double sum = 0.0;
    for (int i = 1; i < length; ++i) {
        kernel[std::size_t(i)] = 0.5 + 0.5 * std::cos(i * pi / (w + 1.0));
        sum += kernel[std::size_t(i)];
    }
    for (double &k : kernel)
        k /= 2.0 * sum + 1.0;
    return kernel;
}

} // namespace

RealMatrix smoothingWindowMatrix(int order, double width)
{
    const std::vector<double> kernel = windowKernel(width);
    const auto at = [&kernel](int distance) {
        const auto d = std::size_t(std::abs(distance));
        return d < kernel.size() ? kernel[d] : 0.0;
    };
    const int n = std::max(0, order);
    const auto size = std::size_t(n);
    RealMatrix matrix(size, size);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            matrix(std::size_t(i), std::size_t(j)) = at(i - j) + at(i + j + 1) + at(2 * n - 1 - i - j);
    }
    return matrix;
}

} // namespace SpectMath
