#pragma once

#include <cstdint>
#include <vector>

/// A made-up place and its air, as truth for tests, benchmarks and demonstrations.
namespace Demo {

enum class Polarity { Negative, Positive };

/// A lognormal distribution over a size or a mobility.
struct LognormalMode {
    double number; ///< total concentration, 1/cm^3
    double median;
    double width; ///< standard deviation of log10

    /// dN/dlog10(x), 1/cm^3
    double density(double x) const;
};

/// The aerosol of one moment.
class Aerosol {
public:
    /// Particles of all charges: dN/dlog10(d) at the diameter in nm, 1/cm^3.
    double particleDensity(double diameter) const;
    /// Natural ions of one polarity, clusters and charged particles: dN/dlog10(Z) at the mobility in cm^2/V/s, 1/cm^3.
    double ionDensity(Polarity polarity, double mobility) const;

    std::vector<LognormalMode> particles; ///< over the diameter in nm
    LognormalMode clusters[2];            ///< over the mobility in cm^2/V/s, by polarity
};

/// Electrical mobility in cm^2/V/s of a particle with that many charges, and the diameter in nm of singly charged ones.
double mobilityOf(double diameter, int charges = 1);
double diameterOf(double mobility);
/// -d log Z / d log d
double mobilitySlopeAt(double diameter);
/// The part of particles that carries one charge of that polarity in the steady state of natural ions.
double chargedFraction(double diameter, Polarity polarity);

struct Weather {
    double temperature;      ///< °C
    double relativeHumidity; ///< %
    double pressure;         ///< hPa
};

/// Weather and aerosol of some days in May. Cluster ions and a background of particles stand all day; on most days, the
/// first among them, new particles form around noon and grow from about 2 to 40 nm until the evening.
class Atmosphere {
public:
    explicit Atmosphere(std::uint64_t seed) : m_seed(seed) {}

    /// `day` is the local time in days since midnight before the first day.
    Weather weatherAt(double day) const;
    Aerosol aerosolAt(double day) const;

    /// How strong the event of that day is, 0 for none.
    double eventStrength(int day) const;
    /// The diameter, in nm, to which particles have grown that formed at the time of strongest formation; below 2
    /// before it.
    double eventDiameter(double day) const;

private:
    double growthRate(int day) const; ///< nm per hour
    void addEvent(std::vector<LognormalMode> &modes, int eventDay, double day) const;

    std::uint64_t m_seed;
};

} // namespace Demo
