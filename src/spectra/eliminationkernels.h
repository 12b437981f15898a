#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Dense kernels of the factored inversion, in tiles of 4 rows by 8 columns that stay in registers. They are built for
/// more than one processor generation and chosen at start; none reorders or fuses operations, so all give the same
/// bits.
namespace SpectMath::Kernels {

constexpr std::size_t tileRows = 4;
constexpr std::size_t tileColumns = 8;

constexpr std::size_t roundedUp(std::size_t n, std::size_t unit)
{
    return (n + unit - 1) / unit * unit;
}

/// Symmetric positive definite systems of order n beside which further columns are eliminated: rows of [ S | X ], n
/// rounded up to whole tiles in either direction. The rows and columns beyond n are those of the identity, so that they
/// change nothing. Elimination without pivoting in natural order turns S = L D Lᵀ into D Lᵀ and X into L⁻¹ X.
struct SystemShape {
    std::size_t order = 0;             ///< n
    std::size_t rows = 0;              ///< n rounded up to tileRows
    std::size_t columns = 0;           ///< n rounded up to tileColumns: where X begins
    std::size_t besides = 0;           ///< columns of X, rounded up
    std::vector<std::size_t> firstRow; ///< per tile of X: rows before it are zero in all of its columns

    std::size_t stride() const { return columns + besides; }
    static SystemShape of(std::size_t order, std::size_t besides);
};

/// The upper triangle of Aᵀ W A into `normal` (shape.rows rows of shape.columns), the identity beyond n; below the
/// diagonal it is filled as far as the tiles reach. `a` and `weighted` (overwritten with W A) have `rows` rows of
/// shape.columns, zero beyond n.
void normalMatrix(const SystemShape &shape, const double *a, const double *weights, std::size_t rows, double *weighted,
                  double *normal);

/// Eliminates. `lower` (shape.rows rows of shape.columns) gets Lᵀ with zeros in place of its unit diagonal and below,
/// from each row's own tile on, and `inversePivots` 1 / D. False, with everything undefined, if a pivot isn't above
/// `leastPivot` times the diagonal element that it started from.
bool eliminate(const SystemShape &shape, double *system, double *lower, double *inversePivots, double leastPivot);

/// z := L⁻¹ z for a z whose first nonzero is at `first`. Vectors have shape.columns elements, zero beyond n.
void solveForward(const SystemShape &shape, const double *lower, double *z, std::size_t first);
/// z := L⁻ᵀ D⁻¹ z.
void solveBackward(const SystemShape &shape, const double *lower, const double *inversePivots, double *z);

/// For a system with the identity besides: the diagonal of its inverse, and x = L⁻ᵀ D⁻¹ z, both of shape.columns
/// elements.
void inverseDiagonal(const SystemShape &shape, const double *system, const double *inversePivots, const double *z,
                     double *diagonal, double *x);
/// Diagonal and first superdiagonal of Xᵀ S⁻¹ X from L⁻¹ X, shape.besides elements each; overlap[j] is element (j, j +
/// 1), the last is undefined.
void bandOfProduct(const SystemShape &shape, const double *system, const double *inversePivots, double *diagonal,
                   double *overlap);

/// out += row times the matrix of `rows` rows of `columns` (a multiple of tileColumns).
void addRowTimes(const double *row, const double *matrix, std::size_t rows, std::size_t columns, double *out);

} // namespace SpectMath::Kernels
