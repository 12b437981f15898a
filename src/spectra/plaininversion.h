#pragma once

#include "spectra/inversionsteps.h"
#include "spectra/invertermodel.h"

namespace SpectMath {

/// Inverts a symmetric positive definite matrix in place: lower triangle packed by rows, element (i, j) at i(i + 1)/2 +
/// j. The Gauss-Jordan scheme of Bauer and Reinsch, without pivoting. False if a pivot is 0 or negative (a NaN passes),
/// or if the order is 0.
bool invertPacked(std::vector<double> &packed, std::size_t order);

/// One regularised solve.
struct RegularisedSolution {
    int status = 0; ///< 0, 2, 3 or 4
    std::vector<double> x;
    std::vector<double> covariance; ///< packed inverse of the regularised normal matrix
    std::vector<double> r;          ///< one coefficient per column
};

/// Solves for the columns of `matrix`. An empty r is determined here; otherwise it holds one coefficient per column.
/// Throws Inversion::InversionException where the variance or the signal has another size than the matrix has rows.
RegularisedSolution solveRegularised(const InverterModel &model, const RealMatrix &matrix,
                                     const std::vector<double> &signal, const std::vector<double> &variance,
                                     const std::vector<double> &r);

/// The whole inversion of a treated signal, as it is defined. Throws Inversion::InversionException where the output's
/// sizes don't fit, unless it fails before it gets there.
InversionSteps invertPlainly(const InverterModel &model, const TreatedSignal &treated, bool keepRemovals);

} // namespace SpectMath
