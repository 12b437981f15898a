#include "demo/atmosphere.h"

#include "demo/random.h"
#include "spectra/mobilitymodel.h"

#include <cmath>

namespace Demo {

namespace {

constexpr double pi = 3.14159265358979323846;

// Formation of new particles, hours of the day.
constexpr double formationBegin = 11.0;
constexpr double formationPeak = 12.25;
constexpr double formationEnd = 13.5;
constexpr int cohortCount = 12;
constexpr double formedDiameter = 1.6;
constexpr double lifetimeHours = 5.0;

/// Hours of full growth up to an hour counted from the event day's midnight: vapours run out in the evening.
double growthHours(double hour)
{
    constexpr double evening = 18.5;
    return hour < evening ? hour : evening + 2 * (1 - std::exp(-(hour - evening) / 2));
}

/// A smooth wave of mean 0 and amplitude 1, highest at that hour of the day.
double daily(double day, double highestHour)
{
    return std::cos(2 * pi * (day - highestHour / 24));
}

std::uint64_t streamOfDay(int day)
{
    return 0x100000000u + std::uint64_t(std::int64_t(day));
}

const SpectMath::MobilityModel &model()
{
    static const SpectMath::MobilityModel standard;
    return standard;
}

} // namespace

double LognormalMode::density(double x) const
{
    const double z = std::log10(x / median) / width;
    return number / (width * std::sqrt(2 * pi)) * std::exp(-0.5 * z * z);
}

void LognormalMode::addDensities(const std::vector<double> &logPoints, RealVector &densities) const
{
    const double logMedian = std::log10(median);
    const double peak = number / (width * std::sqrt(2 * pi));
    for (std::size_t i = 0; i < logPoints.size(); ++i) {
        const double z = (logPoints[i] - logMedian) / width;
        if (std::fabs(z) < 7) // beyond, less than 1e-10 of the peak
            densities[i] += peak * std::exp(-0.5 * z * z);
    }
}

double mobilityOf(double diameter, int charges)
{
    return SpectMath::radiusToMobility(model(), diameter * 0.5e-9, charges) * 1e4;
}

double diameterOf(double mobility)
{
    return SpectMath::mobilityToRadius(model(), mobility * 1e-4) * 2e9;
}

double mobilitySlopeAt(double diameter)
{
    constexpr double step = 1.001;
    return std::log(mobilityOf(diameter / step) / mobilityOf(diameter * step)) / (2 * std::log(step));
}

double chargedFraction(double diameter, Polarity polarity)
{
    const double fraction = 0.2 * (1 - std::exp(-std::pow(diameter / 40, 1.15)));
    return polarity == Polarity::Negative ? 1.15 * fraction : fraction; // negative ions are the faster ones
}

Axis::Axis(Mode mode, Polarity polarity, const RealVector &points) : m_mode(mode), m_polarity(polarity)
{
    for (double point : points) {
        const double diameter = mode == Mode::Ions ? diameterOf(point) : 2 * point;
        m_logDiameters.push_back(std::log10(diameter));
        m_logMobilities.push_back(std::log10(point));
        m_chargedParts.push_back(chargedFraction(diameter, polarity) / mobilitySlopeAt(diameter));
    }
}

RealVector Aerosol::densities(const Axis &axis) const
{
    RealVector densities(axis.size(), 0.0);
    if (axis.m_mode == Mode::Offset)
        return densities;
    for (const LognormalMode &mode : particles)
        mode.addDensities(axis.m_logDiameters, densities);
    if (axis.m_mode == Mode::Particles)
        return densities;
    for (std::size_t i = 0; i < densities.size(); ++i)
        densities[i] *= axis.m_chargedParts[i];
    clusters[int(axis.m_polarity)].addDensities(axis.m_logMobilities, densities);
    return densities;
}

double Atmosphere::eventStrength(int day) const
{
    if (day < 0)
        return 0;
    Random random(m_seed, streamOfDay(day));
    const double luck = random.uniform();
    if (day == 0)
        return 0.9 + 0.2 * luck;
    return luck < 0.35 ? 0 : 0.1 + luck;
}

double Atmosphere::growthRate(int day) const
{
    Random random(m_seed, streamOfDay(day));
    random.uniform();
    return 6.1 + 0.6 * (random.uniform() - 0.5);
}

double Atmosphere::eventDiameter(double day) const
{
    const int eventDay = int(std::floor(day));
    const double hour = 24 * (day - eventDay);
    return formedDiameter + growthRate(eventDay) * (growthHours(hour) - growthHours(formationPeak));
}

/// The new particles of a day, as groups that formed together, grow at the same pace and are lost at the same rate.
void Atmosphere::addEvent(std::vector<LognormalMode> &modes, int eventDay, double day) const
{
    const double strength = eventStrength(eventDay);
    const double hour = 24 * (day - eventDay);
    if (strength == 0 || hour <= formationBegin)
        return;
    const double rate = growthRate(eventDay);
    const double step = (formationEnd - formationBegin) / cohortCount;
    for (int i = 0; i < cohortCount; ++i) {
        const double born = formationBegin + (i + 0.5) * step;
        // Particles of a group appear over twice the step, so that the sum is smooth in time.
        const double appeared = 0.5 + 0.5 * std::tanh((hour - born) / step);
        const double age = growthHours(hour) - growthHours(born);
        const double phase = (born - formationBegin) / (formationEnd - formationBegin);
        const double formed = 3.2e4 * strength * std::sin(pi * phase) * pi / (2 * cohortCount);
        const double survived = std::exp(-std::max(0.0, hour - born) / lifetimeHours);
        modes.push_back({formed * appeared * survived, formedDiameter + rate * std::max(0.0, age), 0.07});
    }
}

Aerosol Atmosphere::aerosolAt(double day) const
{
    Aerosol aerosol;
    const double traffic = 1 + 0.3 * daily(day, 8) + 0.15 * daily(2 * day, 16);
    aerosol.particles = {{1100 * traffic, 62, 0.24}, {500 * traffic, 22, 0.26}, {250, 3, 0.3}};
    const int today = int(std::floor(day));
    addEvent(aerosol.particles, today - 1, day); // what is left of yesterday's
    addEvent(aerosol.particles, today, day);

    // Clusters are fewest when there are many particles to take them up, and most in the calm of the early morning.
    double sink = 0;
    for (const LognormalMode &mode : aerosol.particles)
        sink += mode.number * mode.median;
    const double ions = (1 + 0.18 * daily(day, 5)) / (1 + sink / 9e5);
    aerosol.clusters[int(Polarity::Negative)] = {640 * ions, 1.55, 0.095};
    aerosol.clusters[int(Polarity::Positive)] = {700 * ions, 1.28, 0.09};
    return aerosol;
}

Weather Atmosphere::weatherAt(double day) const
{
    Random random(m_seed, 1);
    const double phase = random.uniform();
    const double front = std::sin(2 * pi * (day / 5.3 + phase));
    const double temperature = 12.5 + 2.5 * front + 6.5 * daily(day, 15) + 0.8 * daily(2 * day, 30);
    const double humidity = 64 - 5 * front - 3.1 * (temperature - 12.5) + 4 * daily(3 * day, 9);
    return {temperature, std::min(97.0, std::max(18.0, humidity)),
            1012.4 - 6.5 * std::cos(2 * pi * (day / 5.3 + phase))};
}

} // namespace Demo
