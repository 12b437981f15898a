#pragma once

#include "demo/atmosphere.h"
#include "util/numeric.h"

#include <QString>

namespace Demo {

constexpr int modeCount = 3;
QString modeName(Mode mode);             ///< "ions", "particles", "offset"
QString polarityName(Polarity polarity); ///< "neg", "pos"

/// The forward model of a made-up spectrometer: two mobility analysers, one for each polarity, with a row of
/// electrometers each. Currents are A x, where x is a density over log10 of the axis of the mode: dN/dlog10(Z), Z in
/// cm^2/V/s, for ions, and dN/dlog10(r), r in nm, for particles, which are charged before they are analysed.
class Instrument {
public:
    static constexpr int electrometersPerPolarity = 21;
    static constexpr int electrometerCount = 2 * electrometersPerPolarity;
    /// The first channel of a polarity; its channels are neighbours.
    static int firstChannel(Polarity polarity);

    /// The mobility, in cm^2/V/s, that an electrometer of either analyser sees best; falls with the index.
    static double centreMobility(int electrometer);
    /// The distance of neighbouring electrometers in log10 of the mobility.
    static double mobilityStep();

    /// fA for each singly charged ion per cm^3 of that mobility.
    double ionResponse(Polarity polarity, int electrometer, double mobility) const;
    /// fA for each particle per cm^3 of that radius in nm, with all the charges that it may get.
    double particleResponse(Polarity polarity, int electrometer, double radius) const;

    /// A, one row per electrometer of the polarity, one column per point of the axis. The density is taken as linear
    /// between the points, over log10 of the axis, and as 0 outside. Mode::Offset gives zeros.
    RealMatrix matrix(Mode mode, Polarity polarity, const RealVector &points) const;

    /// fA^2: the variance of a mean current over that many seconds.
    double variance(double current, double seconds) const;

private:
    double response(Polarity polarity, int electrometer, Mode mode, double position) const;
};

/// `count` points from `first` to `last`, evenly spaced in the logarithm.
RealVector logarithmicGrid(double first, double last, int count);

} // namespace Demo
