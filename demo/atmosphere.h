#pragma once

#include "util/numeric.h"

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
    /// Adds the densities at points given by their log10.
    void addDensities(const std::vector<double> &logPoints, RealVector &densities) const;
};

enum class Mode { Ions, Particles, Offset };

/// Points of a mode's axis with all that is needed there but doesn't change with time.
class Axis {
public:
    /// Mobilities in cm^2/V/s for ions, radii in nm for particles.
    Axis(Mode mode, Polarity polarity, const RealVector &points);

    std::size_t size() const { return m_logDiameters.size(); }

private:
    friend class Aerosol;
    Mode m_mode;
    Polarity m_polarity;
    std::vector<double> m_logDiameters;
    std::vector<double> m_logMobilities; ///< of ions
    std::vector<double> m_chargedParts;  ///< of ions: the charge that each particle density adds to theirs
};

/// The aerosol of one moment.
class Aerosol {
public:
    /// On each point of the axis, 1/cm^3: dN/dlog10(r) of particles of all charges, or dN/dlog10(Z) of the natural ions
    /// of one polarity, clusters and charged particles. Zeros for Mode::Offset.
    RealVector densities(const Axis &axis) const;

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
