#include "spectra/eliminationkernels.h"

#include "util/functionclones.h"

#include <algorithm>

#define INLINED inline __attribute__((always_inline))

namespace SpectMath::Kernels {

namespace {

using Four = double __attribute__((vector_size(32)));

constexpr std::size_t lanes = 4;

/// Four numbers at any address of a double. A struct, since not every compiler lets a reference to a mere vector take
/// another alignment than the vector's own.
struct __attribute__((packed, aligned(alignof(double)), may_alias)) Stored {
    Four four;
};

INLINED const Stored &at(const double *p)
{
    return *reinterpret_cast<const Stored *>(p);
}

INLINED Stored &at(double *p)
{
    return *reinterpret_cast<Stored *>(p);
}

/// A tile of 4 rows by 8 columns.
struct Tile {
    Four a0, a1, b0, b1, c0, c1, d0, d1;
};

INLINED void loadTile(Tile &t, const double *p, std::size_t stride)
{
    t.a0 = at(p).four, t.a1 = at(p + lanes).four, p += stride;
    t.b0 = at(p).four, t.b1 = at(p + lanes).four, p += stride;
    t.c0 = at(p).four, t.c1 = at(p + lanes).four, p += stride;
    t.d0 = at(p).four, t.d1 = at(p + lanes).four;
}

INLINED void storeTile(const Tile &t, double *p, std::size_t stride)
{
    at(p).four = t.a0, at(p + lanes).four = t.a1, p += stride;
    at(p).four = t.b0, at(p + lanes).four = t.b1, p += stride;
    at(p).four = t.c0, at(p + lanes).four = t.c1, p += stride;
    at(p).four = t.d0, at(p + lanes).four = t.d1;
}

/// t -= Σ factors[k][0..3] · rows[k][0..7] for k from first up to end.
INLINED void subtractProducts(Tile &t, const double *factors, std::size_t factorStride, const double *rows,
                              std::size_t stride, std::size_t first, std::size_t end)
{
#pragma GCC unroll 2
    for (std::size_t k = first; k < end; ++k) {
        const double *f = factors + k * factorStride;
        const Four x0 = at(rows + k * stride).four;
        const Four x1 = at(rows + k * stride + lanes).four;
        t.a0 -= f[0] * x0, t.a1 -= f[0] * x1;
        t.b0 -= f[1] * x0, t.b1 -= f[1] * x1;
        t.c0 -= f[2] * x0, t.c1 -= f[2] * x1;
        t.d0 -= f[3] * x0, t.d1 -= f[3] * x1;
    }
}

/// What four rows take from each other: unit upper triangle of the 4 by 4 block on the diagonal.
struct BlockFactors {
    double f01, f02, f03, f12, f13, f23;
};

INLINED void eliminateWithin(Tile &t, const BlockFactors &f)
{
    t.b0 -= f.f01 * t.a0, t.b1 -= f.f01 * t.a1;
    t.c0 -= f.f02 * t.a0, t.c1 -= f.f02 * t.a1;
    t.d0 -= f.f03 * t.a0, t.d1 -= f.f03 * t.a1;
    t.c0 -= f.f12 * t.b0, t.c1 -= f.f12 * t.b1;
    t.d0 -= f.f13 * t.b0, t.d1 -= f.f13 * t.b1;
    t.d0 -= f.f23 * t.c0, t.d1 -= f.f23 * t.c1;
}

/// The factors of the block whose rows begin at p; false for a pivot that isn't above the least that is wanted.
INLINED bool factorBlock(const double *p, std::size_t stride, const double *leastPivots, BlockFactors &f,
                         double *inversePivots)
{
    const double *a = p, *b = p + stride, *c = p + 2 * stride, *d = p + 3 * stride;
    inversePivots[0] = 1.0 / a[0];
    f.f01 = a[1] * inversePivots[0], f.f02 = a[2] * inversePivots[0], f.f03 = a[3] * inversePivots[0];
    const double b1 = b[1] - f.f01 * a[1];
    const double b2 = b[2] - f.f01 * a[2];
    const double b3 = b[3] - f.f01 * a[3];
    inversePivots[1] = 1.0 / b1;
    f.f12 = b2 * inversePivots[1], f.f13 = b3 * inversePivots[1];
    const double c2 = c[2] - f.f02 * a[2] - f.f12 * b2;
    const double c3 = c[3] - f.f02 * a[3] - f.f12 * b3;
    inversePivots[2] = 1.0 / c2;
    f.f23 = c3 * inversePivots[2];
    const double d3 = d[3] - f.f03 * a[3] - f.f13 * b3 - f.f23 * c3;
    inversePivots[3] = 1.0 / d3;
    return a[0] > leastPivots[0] && b1 > leastPivots[1] && c2 > leastPivots[2] && d3 > leastPivots[3];
}

INLINED double sumOf(const Four &v)
{
    return (v[0] + v[1]) + (v[2] + v[3]);
}

} // namespace

SystemShape SystemShape::of(std::size_t order, std::size_t besides)
{
    SystemShape shape;
    shape.order = order;
    shape.rows = roundedUp(order, tileRows);
    shape.columns = roundedUp(order, tileColumns);
    shape.besides = roundedUp(besides, tileColumns);
    shape.firstRow.assign(shape.besides / tileColumns, 0);
    return shape;
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void normalMatrix(const SystemShape &shape, const double *a, const double *weights, std::size_t rows, double *weighted,
                  double *normal)
{
    const std::size_t n = shape.columns;
    for (std::size_t l = 0; l < rows; ++l) {
        for (std::size_t j = 0; j < n; j += lanes)
            at(weighted + l * n + j).four = weights[l] * at(a + l * n + j).four;
    }
    for (std::size_t i = 0; i < shape.rows; i += tileRows) {
        for (std::size_t j = i / tileColumns * tileColumns; j < n; j += tileColumns) {
            Tile t{};
            for (std::size_t l = 0; l < rows; ++l) {
                const double *f = weighted + l * n + i;
                const Four x0 = at(a + l * n + j).four;
                const Four x1 = at(a + l * n + j + lanes).four;
                t.a0 += f[0] * x0, t.a1 += f[0] * x1;
                t.b0 += f[1] * x0, t.b1 += f[1] * x1;
                t.c0 += f[2] * x0, t.c1 += f[2] * x1;
                t.d0 += f[3] * x0, t.d1 += f[3] * x1;
            }
            storeTile(t, normal + i * n + j, n);
        }
    }
    for (std::size_t i = shape.order; i < shape.rows; ++i)
        normal[i * n + i] = 1.0;
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
bool eliminate(const SystemShape &shape, double *system, double *lower, double *inversePivots, double leastPivot)
{
    const std::size_t stride = shape.stride();
    for (std::size_t i = 0; i < shape.rows; i += tileRows) {
        double *rows = system + i * stride;
        double least[tileRows];
        for (std::size_t r = 0; r < tileRows; ++r)
            least[r] = leastPivot * rows[r * stride + i + r];
        BlockFactors within{};
        const std::size_t begin = i / tileColumns * tileColumns;
        for (std::size_t j = begin; j < stride; j += tileColumns) {
            const bool beside = j >= shape.columns;
            const std::size_t first = beside ? shape.firstRow[(j - shape.columns) / tileColumns] : 0;
            if (first >= i + tileRows)
                continue; // all zero
            Tile t;
            loadTile(t, rows + j, stride);
            subtractProducts(t, lower + i, shape.columns, system + j, stride, first, i);
            if (j == begin) {
                storeTile(t, rows + j, stride);
                if (!factorBlock(rows + i, stride, least, within, inversePivots + i))
                    return false;
            }
            eliminateWithin(t, within);
            storeTile(t, rows + j, stride);
        }
        for (std::size_t r = 0; r < tileRows; ++r) {
            double *target = lower + (i + r) * shape.columns;
            for (std::size_t j = begin; j < shape.columns; j += lanes)
                at(target + j).four = inversePivots[i + r] * at(rows + r * stride + j).four;
            std::fill(target + begin, target + i + r + 1, 0.0);
        }
    }
    return true;
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void solveForward(const SystemShape &shape, const double *lower, double *z, std::size_t first)
{
    const std::size_t n = shape.columns;
    for (std::size_t k = first / tileRows * tileRows; k < shape.rows; k += tileRows) {
        const double *a = lower + k * n, *b = a + n, *c = b + n, *d = c + n;
        z[k + 1] -= a[k + 1] * z[k];
        z[k + 2] -= a[k + 2] * z[k] + b[k + 2] * z[k + 1];
        z[k + 3] -= a[k + 3] * z[k] + b[k + 3] * z[k + 1] + c[k + 3] * z[k + 2];
        for (std::size_t j = k + tileRows; j < n; j += lanes)
            at(z + j).four -= (z[k] * at(a + j).four + z[k + 1] * at(b + j).four) +
                              (z[k + 2] * at(c + j).four + z[k + 3] * at(d + j).four);
    }
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void solveBackward(const SystemShape &shape, const double *lower, const double *inversePivots, double *z)
{
    const std::size_t n = shape.columns;
    std::fill(z + shape.order, z + n, 0.0);
    for (std::size_t k = shape.rows; k > 0;) {
        k -= tileRows;
        const double *a = lower + k * n, *b = a + n, *c = b + n, *d = c + n;
        Four sa{}, sb{}, sc{}, sd{};
        for (std::size_t j = k + tileRows; j < n; j += lanes) {
            const Four x = at(z + j).four;
            sa += at(a + j).four * x;
            sb += at(b + j).four * x;
            sc += at(c + j).four * x;
            sd += at(d + j).four * x;
        }
        z[k + 3] = z[k + 3] * inversePivots[k + 3] - sumOf(sd);
        z[k + 2] = z[k + 2] * inversePivots[k + 2] - sumOf(sc) - c[k + 3] * z[k + 3];
        z[k + 1] = z[k + 1] * inversePivots[k + 1] - sumOf(sb) - b[k + 3] * z[k + 3] - b[k + 2] * z[k + 2];
        z[k] = z[k] * inversePivots[k] - sumOf(sa) - a[k + 3] * z[k + 3] - a[k + 2] * z[k + 2] - a[k + 1] * z[k + 1];
    }
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void inverseDiagonal(const SystemShape &shape, const double *system, const double *inversePivots, const double *z,
                     double *diagonal, double *x)
{
    std::fill(diagonal, diagonal + shape.columns, 0.0);
    std::fill(x, x + shape.columns, 0.0);
    for (std::size_t k = 0; k < shape.order; ++k) {
        const double *row = system + k * shape.stride() + shape.columns;
        const double inverse = inversePivots[k];
        const double scaled = z[k] * inverse;
        for (std::size_t j = 0; j <= k; j += lanes) {
            const Four v = at(row + j).four;
            at(diagonal + j).four += v * v * inverse;
            at(x + j).four += scaled * v;
        }
    }
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void bandOfProduct(const SystemShape &shape, const double *system, const double *inversePivots, double *diagonal,
                   double *overlap)
{
    for (std::size_t j = 0; j < shape.besides; j += tileColumns) {
        const std::size_t first = shape.firstRow[j / tileColumns];
        const bool last = j + tileColumns == shape.besides;
        Four d0{}, d1{}, o0{}, o1{};
        for (std::size_t i = first; i < shape.order; ++i) {
            const double *row = system + i * shape.stride() + shape.columns + j;
            const Four v0 = at(row).four, v1 = at(row + lanes).four;
            const Four w0 = inversePivots[i] * v0, w1 = inversePivots[i] * v1;
            d0 += w0 * v0, d1 += w1 * v1;
            o0 += w0 * at(row + 1).four;
            const Four next = last ? Four{row[5], row[6], row[7], 0.0} : at(row + 5).four;
            o1 += w1 * next;
        }
        at(diagonal + j).four = d0, at(diagonal + j + lanes).four = d1;
        at(overlap + j).four = o0, at(overlap + j + lanes).four = o1;
    }
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void addRowTimes(const double *row, const double *matrix, std::size_t rows, std::size_t columns, double *out)
{
    for (std::size_t j = 0; j < columns; j += tileColumns) {
        Four even0 = at(out + j).four, even1 = at(out + j + lanes).four, odd0{}, odd1{};
        std::size_t i = 0;
        for (const double *p = matrix + j; i + 1 < rows; i += 2, p += 2 * columns) {
            even0 += row[i] * at(p).four, even1 += row[i] * at(p + lanes).four;
            odd0 += row[i + 1] * at(p + columns).four, odd1 += row[i + 1] * at(p + columns + lanes).four;
        }
        if (i < rows) {
            even0 += row[i] * at(matrix + i * columns + j).four;
            even1 += row[i] * at(matrix + i * columns + j + lanes).four;
        }
        at(out + j).four = even0 + odd0, at(out + j + lanes).four = even1 + odd1;
    }
}

} // namespace SpectMath::Kernels
