#pragma once

#include "spectra/inverter.h"

#include <cmath>
#include <random>

/// A made-up instrument whose electrometers see bell-shaped stretches of the size axis: for tests and benchmarks of the
/// inversion.
struct InstrumentModel {
    SpectMath::InverterSettings settings;
    std::mt19937 random;
    double noise = 3.0;
    double background = 5.0;

    InstrumentModel(std::size_t m, std::size_t n, std::size_t points, unsigned seed) : random(seed)
    {
        settings.instrumentMatrix.resize(m, n);
        for (std::size_t i = 0; i < m; ++i) {
            for (std::size_t j = 0; j < n; ++j) {
                const double distance = (double(i) + 0.5) / double(m) - (double(j) + 0.5) / double(n);
                settings.instrumentMatrix(i, j) =
                    (0.5 + 0.5 * double(j) / double(n)) * std::exp(-distance * distance * 200) + 0.002;
            }
        }
        if (points > 0) {
            settings.postTransform.resize(n, points);
            for (std::size_t j = 0; j < n; ++j) {
                for (std::size_t k = 0; k < points; ++k) {
                    const double distance = (double(j) + 0.5) / double(n) - (double(k) + 0.5) / double(points);
                    settings.postTransform(j, k) = std::exp(-distance * distance * 0.5 * double(n) * double(n));
                }
            }
        }
        settings.totalWeights = RealVector(points > 0 ? points : n, 0.02);
    }

    /// A background and a mode somewhere, in currents with their noise.
    void measure(RealVector &signal, RealVector &variance)
    {
        const RealMatrix &a = settings.instrumentMatrix;
        std::uniform_real_distribution<double> uniform(0.0, 1.0);
        std::normal_distribution<double> normal;
        const double place = uniform(random), width = 0.05 + 0.1 * uniform(random);
        const double height = std::pow(10.0, 2 + 2 * uniform(random));
        signal = RealVector(a.size1(), 0.0);
        variance = RealVector(a.size1(), 0.0);
        for (std::size_t i = 0; i < a.size1(); ++i) {
            for (std::size_t j = 0; j < a.size2(); ++j) {
                const double t = (double(j) / double(a.size2()) - place) / width;
                signal[i] += a(i, j) * (background + height * std::exp(-0.5 * t * t));
            }
            variance[i] = noise * noise * (0.5 + uniform(random)) + 0.01 * signal[i];
            signal[i] += std::sqrt(variance[i]) * normal(random);
        }
    }
};
