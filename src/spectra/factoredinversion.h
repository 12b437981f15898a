#pragma once

#include "spectra/eliminationkernels.h"
#include "spectra/inversionsteps.h"

#include <memory>
#include <optional>
#include <vector>

namespace SpectMath {

struct InverterModel;

/// The fast way of an inversion, prepared once per inverter: S = L D Lᵀ in natural order instead of an inverse of S.
///
/// Where the numbers come from. The first estimate needs x0 and the diagonal of S⁻¹: with Z = L⁻¹, Σ Z(k,i)² / D(k).
/// The output's covariance is the band of Pᵀ S⁻¹ P, which is that of Zᵀ D⁻¹ Z with Z = L⁻¹ P: only the band is ever
/// formed. A class c is removed by a Schur complement: with u the column c of the inverse, x' = x - u x(c) / u(c),
/// where u was itself freed of the classes removed before. The reduced normal matrix is a principal submatrix with the
/// coefficients of the first solve, so nothing is factored anew.
///
/// Why its failures are those of the plain scheme. The pivots of that scheme are the D of this one, in the same order;
/// a principal submatrix of a positive definite matrix is positive definite, so that after a first solve a reduced one
/// fails for want of columns only. This way is taken where all of S, Aᵀ W s and r are finite, r isn't tiny and every
/// pivot is well above zero; everything else, failures and NaN included, is handed back to the plain scheme.
class FactoredInversion {
public:
    /// Null where the sizes of the inverter's matrices don't fit or an output element isn't finite. What it keeps is
    /// copied.
    static std::shared_ptr<const FactoredInversion> prepare(const InverterModel &model);

    /// Nothing if it can't vouch for the result.
    std::optional<InversionSteps> invert(const InverterModel &model, const TreatedSignal &treated,
                                         bool keepRemovals) const;

private:
    class Run;

    std::size_t m_currents = 0;           ///< m
    std::size_t m_classes = 0;            ///< n
    std::size_t m_points = 0;             ///< of the output
    std::vector<double> m_instrument;     ///< m rows of n, padded
    std::vector<double> m_output;         ///< n rows of points, padded: transformation and smoothing in one
    std::vector<double> m_regulSmoothing; ///< n rows of n, padded; empty for none
    Kernels::SystemShape m_estimate;      ///< of the first estimate, the identity besides
    Kernels::SystemShape m_solve;         ///< of the solve, the output matrix besides
};

} // namespace SpectMath
