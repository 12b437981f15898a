#include "spectra/spectrum.h"

#include "support/instrument.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace SpectMath;

constexpr double pi = 3.14159265358979323846;

SpectrumInfoPointer makeInfo(int n, DistributionScale scale = DistributionScale::radius)
{
    return testInfo("x", scale == DistributionScale::mobility ? testGrid(n, 3, 0.8) : testGrid(n, 1, 1.25), scale);
}

Spectrum makeFilled(const SpectrumInfoPointer &info, std::size_t bandwidth = 1)
{
    Spectrum s;
    s.info = info;
    const std::size_t n = info->nativePoints().size();
    s.concentrations.resize(n);
    s.covariances.resize(n, n, bandwidth, bandwidth, false);
    s.covariances.clear();
    for (std::size_t i = 0; i < n; ++i) {
        s.concentrations[i] = 100 + 37 * std::sin(double(i) * 1.7);
        s.covariances(i, i) = 4.0 + double(i);
        if (bandwidth > 0 && i > 0)
            s.covariances(i, i - 1) = s.covariances(i - 1, i) = 0.3 * double(i);
    }
    s.status = 0;
    s.currentRmsError = 1.0;
    return s;
}

TEST(SmoothingMatrix, FoldsARaisedCosine)
{
    const double w = 2.5; // kernel of 4: 1, and three of the cosine
    double k[4] = {1, 0.5 + 0.5 * std::cos(pi / 3.5), 0.5 + 0.5 * std::cos(2 * pi / 3.5),
                   0.5 + 0.5 * std::cos(3 * pi / 3.5)};
    const double norm = 1 + 2 * (k[1] + k[2] + k[3]);
    const RealMatrix m = smoothingWindowMatrix(9, w);
    for (int i = 0; i < 9; ++i) {
        double row = 0;
        for (int j = 0; j < 9; ++j) {
            // The kernel laid over the grid and its two mirror images.
            double expected = 0;
            for (const int image : {j, -1 - j, 17 - j})
                expected += std::abs(i - image) < 4 ? k[std::abs(i - image)] / norm : 0;
            EXPECT_NEAR(m(std::size_t(i), std::size_t(j)), expected, 1e-15);
            EXPECT_EQ(m(std::size_t(i), std::size_t(j)), m(std::size_t(j), std::size_t(i)));
            row += m(std::size_t(i), std::size_t(j));
        }
        EXPECT_NEAR(row, 1.0, 1e-14);
    }
    EXPECT_NEAR(smoothingWindowMatrix(1, 2.0)(0, 0), 0.8333, 5e-5) << "the normaliser is the whole kernel";
}

TEST(SmoothingMatrix, OddWidths)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (const double width : {0.0, -0.5, -1.0, -1.5, -2.0, -1e300, noValue, inf, -inf}) {
        const RealMatrix m = smoothingWindowMatrix(4, width);
        for (std::size_t i = 0; i < 4; ++i) {
            for (std::size_t j = 0; j < 4; ++j)
                EXPECT_NEAR(m(i, j), i == j ? 1.0 : 0.0, 1e-16) << width;
        }
    }
    EXPECT_EQ(smoothingWindowMatrix(3, 1e12)(0, 0), smoothingWindowMatrix(3, 1e6)(0, 0));
    EXPECT_EQ(smoothingWindowMatrix(0, 2.0).size1(), 0u);
}

TEST(Spectrum, FractionsArePositiveOnEitherAxis)
{
    for (const DistributionScale scale : {DistributionScale::radius, DistributionScale::mobility}) {
        const Spectrum s = makeFilled(makeInfo(7, scale));
        RealVector f, u;
        s.getFractions(f, u);
        ASSERT_EQ(f.size(), 6u);
        for (std::size_t i = 0; i < 6; ++i) {
            const double width = scale == DistributionScale::radius ? std::log10(1.25) : -std::log10(0.8);
            EXPECT_NEAR(f[i], (s.concentrations[i] + s.concentrations[i + 1]) / 2 * width, 1e-11);
            EXPECT_NEAR(u[i], (std::sqrt(4.0 + i) + std::sqrt(5.0 + i)) / 2 * width, 1e-13);
        }
    }
}

TEST(Spectrum, FractionsOfOddShapes)
{
    RealVector f(2, 5.0), u(2, 5.0);
    Spectrum wrong = makeFilled(makeInfo(6));
    wrong.covariances.resize(5, 5, 1, 1, false);
    wrong.getFractions(f, u);
    EXPECT_EQ(f.size(), 2u) << "a wrong covariance leaves the outputs alone";
    wrong.getDistribution(DistributionType::fraction, ConcentrationType::volume, f, u);
    EXPECT_TRUE(f.empty() && u.empty());
    f.resize(2);
    wrong.getDistribution(DistributionType::density, ConcentrationType::number, f, u);
    EXPECT_TRUE(f.empty() && u.empty());
    for (const std::size_t n : {0u, 1u}) {
        f.resize(2);
        makeFilled(makeInfo(n)).getFractions(f, u);
        EXPECT_TRUE(f.empty() && u.empty());
    }
}

TEST(Spectrum, DistributionsTakeTheMoment)
{
    const Spectrum s = makeFilled(makeInfo(5), 0); // as read from a file: diagonal
    for (const DistributionType kind : {DistributionType::density, DistributionType::fraction}) {
        RealVector number, numberU, v, u;
        s.getDistribution(kind, ConcentrationType::number, number, numberU);
        ASSERT_EQ(number.size(), kind == DistributionType::density ? 5u : 4u);
        for (int type = 1; type < 5; ++type) {
            s.getDistribution(kind, ConcentrationType(type), v, u);
            ASSERT_EQ(v.size(), number.size());
            for (std::size_t i = 0; i < v.size(); ++i) {
                const double r = std::pow(1.25, double(i) + (kind == DistributionType::fraction ? 0.5 : 0.0));
                const double moments[] = {1, r, 2 * r, 4 * pi * r * r, 4 * pi / 3 * r * r * r};
                EXPECT_NEAR(v[i] / number[i], moments[type], 1e-12 * moments[type]);
                EXPECT_NEAR(u[i] / numberU[i], moments[type], 1e-12 * moments[type]);
            }
        }
    }
}

TEST(Spectrum, SmoothingIsADenseProduct)
{
    for (const std::size_t bandwidth : {0u, 1u}) {
        const Spectrum s = makeFilled(makeInfo(8), bandwidth);
        const RealMatrix m = smoothingWindowMatrix(8, 3.0);
        RealMatrix dense(8, 8);
        const BandMatrix &band = s.covariances;
        for (std::size_t i = 0; i < 8; ++i) {
            for (std::size_t j = 0; j < 8; ++j)
                dense(i, j) = band(i, j);
        }
        const RealMatrix expected = prod(m, RealMatrix(prod(dense, m)));
        const Spectrum smooth = s.smoothed(3.0, CovarianceSmoothing::smooth);
        const BandMatrix &c = smooth.covariances;
        ASSERT_EQ(c.lower(), 1u);
        for (std::size_t i = 0; i < 8; ++i) {
            double value = 0;
            for (std::size_t k = 0; k < 8; ++k)
                value += s.concentrations[k] * m(k, i);
            EXPECT_NEAR(smooth.concentrations[i], value, 1e-12);
            for (std::size_t j = 0; j < 8; ++j)
                EXPECT_NEAR(c(i, j), i > j + 1 || j > i + 1 ? 0.0 : expected(i, j), 1e-13);
        }
        EXPECT_EQ(smooth.status, 1);
        EXPECT_TRUE(std::isnan(smooth.currentRmsError));
        EXPECT_EQ(smooth.info, s.info);
        const Spectrum kept = s.smoothed(3.0, CovarianceSmoothing::keep);
        EXPECT_EQ(static_cast<const BandMatrix &>(kept.covariances)(3, 3), band(3, 3));
    }
}

TEST(Spectrum, SmoothingSpreadsAMissingValueOrCopies)
{
    Spectrum s = makeFilled(makeInfo(6));
    s.concentrations[2] = noValue;
    const Spectrum smooth = s.smoothed(1.0, CovarianceSmoothing::keep);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_TRUE(std::isnan(smooth.concentrations[i])) << i;

    const Spectrum good = makeFilled(makeInfo(6));
    EXPECT_EQ(good.smoothed(0.0, CovarianceSmoothing::keep).status, 0);
    EXPECT_EQ(good.smoothed(smoothingWindowMatrix(5, 2.0), CovarianceSmoothing::keep).status, 0) << "wrong order";
    EXPECT_EQ(makeFilled(makeInfo(1)).smoothed(2.0, CovarianceSmoothing::keep).status, 0);
    Spectrum bare = good;
    bare.info = nullptr;
    EXPECT_EQ(bare.smoothed(2.0, CovarianceSmoothing::keep).status, 0);
    EXPECT_FALSE(bare.isValid());
    EXPECT_EQ(makeSpectrum()->status, 1);
}

} // namespace
