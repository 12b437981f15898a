#pragma once

#include "util/numeric.h"

#include <vector>

namespace SpectMath {

/// The steps of one inversion, the same for every way of computing it.
struct InversionSteps {
    struct Removal {
        std::size_t column;          ///< the class that was removed
        std::vector<double> classes; ///< all n classes after it, zeros for the removed
    };

    int status = 0;                     ///< as in Spectrum::status
    bool solved = false;                ///< the first solve succeeded: the members below are set
    std::vector<double> regularisation; ///< r of the first solve
    std::vector<double> firstClasses;   ///< x of the first solve
    std::vector<Removal> removals;      ///< filled if asked for
    std::vector<double> classes;        ///< x after the last removal
    RealVector concentrations;          ///< on the output points; empty after a failure
    BandMatrix covariances;             ///< bands 1, 1
};

/// The currents as they enter the solves: missing ones are 0 with an enormous variance, negative ones may have been
/// given a greater variance.
struct TreatedSignal {
    std::vector<double> signal;
    std::vector<double> variance;
};

} // namespace SpectMath
