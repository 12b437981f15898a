#include "demo/campaign.h"
#include "demo/instrument.h"

#include <gtest/gtest.h>

#include <cmath>

using Demo::Instrument;
using Demo::Mode;
using Demo::Polarity;

namespace {

const Polarity polarities[] = {Polarity::Negative, Polarity::Positive};

/// The current of a smooth density by a plain fine sum over log10 of the axis.
template<typename Density>
double plainCurrent(Mode mode, Polarity polarity, int electrometer, double first, double last, Density density)
{
    const Instrument instrument;
    constexpr int steps = 20000;
    const double width = std::log10(last / first) / steps;
    double current = 0;
    for (int k = 0; k < steps; ++k) {
        const double x = first * std::pow(10.0, (k + 0.5) * width);
        current += width * density(x) *
                   (mode == Mode::Ions ? instrument.ionResponse(polarity, electrometer, x)
                                       : instrument.particleResponse(polarity, electrometer, x));
    }
    return current;
}

} // namespace

TEST(Instrument, MatrixIsTheIntegralOverTheAxis)
{
    const Instrument instrument;
    const Demo::LognormalMode ions{600, 0.2, 0.3};
    const Demo::LognormalMode particles{5000, 6, 0.25};
    // Descending as published, and ascending: the order of the points mustn't matter.
    const struct {
        Mode mode;
        RealVector points;
        double first, last;
        Demo::LognormalMode density;
    } cases[] = {
        {Mode::Ions, Demo::logarithmicGrid(3.2, 0.0013, 200), 0.0013, 3.2, ions},
        {Mode::Ions, Demo::logarithmicGrid(0.0013, 3.2, 200), 0.0013, 3.2, ions},
        {Mode::Particles, Demo::logarithmicGrid(0.7, 50, 200), 0.7, 50, particles},
    };
    for (const auto &c : cases) {
        RealVector x(c.points.size());
        for (std::size_t j = 0; j < x.size(); ++j)
            x[j] = c.density.density(c.points[j]);
        for (Polarity polarity : polarities) {
            const RealVector currents = boost::numeric::ublas::prod(instrument.matrix(c.mode, polarity, c.points), x);
            const double largest = *std::max_element(currents.begin(), currents.end());
            EXPECT_GT(largest, 1.0); // fA, far above the noise
            for (int i = 0; i < Instrument::electrometersPerPolarity; i += 4)
                EXPECT_NEAR(currents[std::size_t(i)],
                            plainCurrent(c.mode, polarity, i, c.first, c.last,
                                         [&](double position) { return c.density.density(position); }),
                            2e-3 * largest);
        }
    }
}

TEST(Instrument, IonsAreCollectedAtMostOnceAndWhereTheyBelong)
{
    const Instrument instrument;
    const double whole = 500 * 1.602176634e-4; // fA, if every ion of the sample flow were collected
    for (double mobility : {2.0, 0.5, 0.05, 0.003})
        for (Polarity polarity : polarities) {
            double sum = 0;
            int best = 0;
            for (int i = 0; i < Instrument::electrometersPerPolarity; ++i) {
                sum += instrument.ionResponse(polarity, i, mobility);
                if (instrument.ionResponse(polarity, i, mobility) > instrument.ionResponse(polarity, best, mobility))
                    best = i;
            }
            EXPECT_LT(sum, whole) << mobility;
            EXPECT_GT(sum, 0.3 * whole) << mobility;
            EXPECT_LT(std::fabs(std::log10(Instrument::centreMobility(best) / mobility)), Instrument::mobilityStep());
        }
}

TEST(Instrument, LargerParticlesCarryMoreCharges)
{
    const Instrument instrument;
    double before = 0;
    for (double radius : {0.8, 1.5, 3.0, 6.0, 12.0}) {
        double sum = 0;
        for (int i = 0; i < Instrument::electrometersPerPolarity; ++i)
            sum += instrument.particleResponse(Polarity::Positive, i, radius);
        EXPECT_GT(sum, 1.5 * before) << radius;
        before = sum;
    }
}
