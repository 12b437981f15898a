#include "demo/instrument.h"

#include <algorithm>
#include <cmath>

namespace Demo {

namespace {

constexpr double highestMobility = 3.2;             // cm^2/V/s
constexpr double lowestMobility = 0.0013;           // cm^2/V/s
constexpr double sampleFlow = 500;                  // cm^3/s through each analyser
constexpr double elementaryCharge = 1.602176634e-4; // fA s
constexpr double peakTransfer = 0.62;
constexpr int greatestCharge = 5;

/// The part that isn't lost in the inlet by diffusion.
double penetration(double diameter)
{
    return std::exp(-0.55 / diameter);
}

double meanCharge(double diameter, Polarity polarity)
{
    const double charge = 0.02 * std::pow(diameter / 2, 1.45);
    return polarity == Polarity::Negative ? 1.1 * charge : charge;
}

/// The gain of each electrometer, as if calibrated: a few per cent about one.
double gain(Polarity polarity, int electrometer)
{
    return 1 + 0.03 * std::sin(2.4 * electrometer + (polarity == Polarity::Positive ? 1 : 0));
}

double transfer(int electrometer, double mobility)
{
    // Small ions spread by diffusion on their way.
    const double width = 0.47 * Instrument::mobilityStep() * (1 + 0.25 * mobility / highestMobility);
    const double z = std::log10(mobility / Instrument::centreMobility(electrometer)) / width;
    return peakTransfer * std::exp(-0.5 * z * z);
}

} // namespace

QString modeName(Mode mode)
{
    switch (mode) {
    case Mode::Ions:
        return QStringLiteral("ions");
    case Mode::Particles:
        return QStringLiteral("particles");
    default:
        return QStringLiteral("offset");
    }
}

QString polarityName(Polarity polarity)
{
    return polarity == Polarity::Negative ? QStringLiteral("neg") : QStringLiteral("pos");
}

int Instrument::firstChannel(Polarity polarity)
{
    return polarity == Polarity::Negative ? 0 : electrometersPerPolarity;
}

double Instrument::mobilityStep()
{
    static const double step = std::log10(highestMobility / lowestMobility) / (electrometersPerPolarity - 1);
    return step;
}

double Instrument::centreMobility(int electrometer)
{
    return highestMobility * std::pow(10.0, -electrometer * mobilityStep());
}

double Instrument::ionResponse(Polarity polarity, int electrometer, double mobility) const
{
    return sampleFlow * elementaryCharge * gain(polarity, electrometer) * penetration(diameterOf(mobility)) *
           transfer(electrometer, mobility);
}

double Instrument::particleResponse(Polarity polarity, int electrometer, double radius) const
{
    const double diameter = 2 * radius;
    const double mean = meanCharge(diameter, polarity);
    double probability = std::exp(-mean); // of no charge; charges come by chance, one after the other
    double collected = 0;
    for (int charges = 1; charges <= greatestCharge; ++charges) {
        probability *= mean / charges;
        collected += charges * probability * transfer(electrometer, mobilityOf(diameter, charges));
    }
    return sampleFlow * elementaryCharge * gain(polarity, electrometer) * penetration(diameter) * collected;
}

double Instrument::response(Polarity polarity, int electrometer, Mode mode, double position) const
{
    return mode == Mode::Ions ? ionResponse(polarity, electrometer, position)
                              : particleResponse(polarity, electrometer, position);
}

RealMatrix Instrument::matrix(Mode mode, Polarity polarity, const RealVector &points) const
{
    constexpr int steps = 8; // of the integration over each interval
    RealMatrix a(electrometersPerPolarity, points.size(), 0.0);
    if (mode == Mode::Offset)
        return a;
    for (std::size_t j = 0; j + 1 < points.size(); ++j) {
        const double ratio = points[j + 1] / points[j];
        const double width = std::fabs(std::log10(ratio)) / steps;
        for (int step = 0; step < steps; ++step) {
            const double place = (step + 0.5) / steps;
            const double position = points[j] * std::pow(ratio, place);
            for (int i = 0; i < electrometersPerPolarity; ++i) {
                const double current = width * response(polarity, i, mode, position);
                a(std::size_t(i), j) += (1 - place) * current;
                a(std::size_t(i), j + 1) += place * current;
            }
        }
    }
    return a;
}

double Instrument::variance(double current, double seconds) const
{
    const double noise = 0.6;              // fA in one second, of the electrometer itself
    const double unrest = 0.012 * current; // of the air, which doesn't average out within a record
    return (noise * noise + elementaryCharge * std::fabs(current)) / std::max(seconds, 1.0) + unrest * unrest;
}

RealVector logarithmicGrid(double first, double last, int count)
{
    RealVector grid{std::size_t(count)};
    for (int i = 0; i < count; ++i)
        grid[std::size_t(i)] = first * std::pow(last / first, double(i) / (count - 1));
    return grid;
}

} // namespace Demo
