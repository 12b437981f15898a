#include "spectra/factoredinversion.h"

#include "spectra/invertermodel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace SpectMath {

namespace {

using namespace Kernels;

/// Below these the order of operations, which is not that of the plain scheme, begins to show: in the first estimate
/// most of all, since the coefficients go with the inverse square of it.
constexpr double leastInitialRegularisation = 0.01;
constexpr double leastRegularisation = 5e-5;
constexpr double leastRegularisationOffDiagonal = 0.05; // the correction may cost a weaker one its definiteness
constexpr double greatestRegularisation = 1e60;
constexpr double leastDiagonal = 1e-200;
constexpr double greatestDiagonal = 1e200;
constexpr double leastRemainder = 1e-3; // of the greatest class before the removals, whose rounding errors stay
constexpr double leastPivot = 1e-9;     // of the diagonal element; the regularisation keeps them far above

bool allFinite(const double *values, std::size_t count)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i)
        sum += values[i] * 0.0; // NaN for whatever isn't finite
    return sum == 0.0;
}

std::vector<double> padded(const RealMatrix &matrix, std::size_t columns)
{
    std::vector<double> result(matrix.size1() * columns, 0.0);
    for (std::size_t i = 0; i < matrix.size1(); ++i) {
        for (std::size_t j = 0; j < matrix.size2(); ++j)
            result[i * columns + j] = matrix(i, j);
    }
    return result;
}

RealMatrix identity(std::size_t order)
{
    RealMatrix matrix(order, order, 0.0);
    for (std::size_t i = 0; i < order; ++i)
        matrix(i, i) = 1.0;
    return matrix;
}

/// For each tile of columns the first row in which one of them isn't zero.
void findFirstRows(SystemShape &shape, const std::vector<double> &besides)
{
    for (std::size_t tile = 0; tile < shape.firstRow.size(); ++tile) {
        std::size_t row = 0;
        const auto isZero = [&](std::size_t i) {
            const double *first = besides.data() + i * shape.besides + tile * tileColumns;
            return std::all_of(first, first + tileColumns, [](double v) { return v == 0.0; });
        };
        while (row < shape.order && isZero(row))
            ++row;
        shape.firstRow[tile] = row;
    }
}

/// Memory that a thread's inversions share one after the other: fresh pages would cost more than the arithmetic.
double *sharedMemory(std::size_t doubles)
{
    thread_local std::vector<double> memory;
    if (memory.size() < doubles + tileColumns)
        memory.assign(doubles + tileColumns, 0.0);
    const auto address = reinterpret_cast<std::uintptr_t>(memory.data());
    return memory.data() + (64 - address % 64) % 64 / sizeof(double);
}

/// The arrays of one inversion, one behind the other in the memory that a thread's inversions share.
struct Workspace {
    Workspace(const SystemShape &estimate, const SystemShape &solve, std::size_t currents, std::size_t removals)
    {
        const std::size_t rows = estimate.rows, columns = estimate.columns;
        const struct {
            double *&array;
            std::size_t size;
        } parts[] = {
            {system, rows * std::max(estimate.stride(), solve.stride())},
            {normal, rows * columns},
            {lower, rows * columns},
            {weighted, currents * columns},
            {weights, currents},
            {pivots, columns},
            {y, columns},
            {x, columns},
            {diagonal, columns},
            {r, columns},
            {removed, removals * columns},
            {band, 2 * solve.besides},
            {output, solve.besides},
        };
        std::size_t total = 0;
        for (const auto &part : parts)
            total += roundedUp(part.size, tileColumns);
        double *next = sharedMemory(total);
        for (const auto &part : parts)
            part.array = std::exchange(next, next + roundedUp(part.size, tileColumns));
    }

    double *system;   ///< [ S | X ], rows of the shape in use
    double *normal;   ///< S as it is without regularisation, upper tiles
    double *lower;    ///< Lᵀ
    double *weighted; ///< W A
    double *weights;
    double *pivots; ///< 1 / D
    double *y;      ///< Aᵀ W s
    double *x;
    double *diagonal;
    double *r;
    double *removed; ///< a row u for each removal
    double *band;
    double *output;
};

} // namespace

/// One inversion's working memory and steps.
class FactoredInversion::Run {
public:
    Run(const FactoredInversion &prepared, const InverterModel &model, const TreatedSignal &treated)
        : m_prepared(prepared), m_settings(model.settings), m_treated(treated), m_n(prepared.m_classes),
          m_columns(prepared.m_estimate.columns),
          m_work(prepared.m_estimate, prepared.m_solve, prepared.m_currents,
                 std::size_t(std::clamp(m_settings.negRemoveIterations, 0, int(m_n))))
    {
    }

    /// False where the result would have to be vouched for by the plain scheme.
    bool perform(bool keepRemovals)
    {
        if (!formNormal() || !estimate() || !chooseRegularisation() || !solve())
            return false;
        m_steps.solved = true;
        m_steps.firstClasses.assign(m_work.x, m_work.x + m_n);
        m_steps.regularisation.assign(m_work.r, m_work.r + m_n);
        const double greatestBefore = greatestClass();
        if (!removeNegatives(keepRemovals) || (greatestClass() < leastRemainder * greatestBefore))
            return false;
        m_steps.classes.assign(m_work.x, m_work.x + m_n);
        return m_steps.status != 0 || makeOutput();
    }

    InversionSteps &steps() { return m_steps; }

private:
    bool formNormal()
    {
        const std::size_t m = m_prepared.m_currents;
        for (std::size_t i = 0; i < m; ++i) {
            m_work.weights[i] = 1.0 / m_treated.variance[i];
            if (!(m_work.weights[i] > 0.0 && m_work.weights[i] <= greatestDiagonal))
                return false;
        }
        normalMatrix(m_prepared.m_estimate, m_prepared.m_instrument.data(), m_work.weights, m, m_work.weighted,
                     m_work.normal);
        std::fill(m_work.y, m_work.y + m_columns, 0.0);
        addRowTimes(m_treated.signal.data(), m_work.weighted, m, m_columns, m_work.y);
        for (std::size_t i = 0; i < m_n; ++i) {
            const double s = m_work.normal[i * m_columns + i];
            if (!(s >= leastDiagonal && s <= greatestDiagonal))
                return false;
        }
        // With positive weights no element of S exceeds those of the diagonal in its row and column: all are finite.
        return allFinite(m_work.y, m_n);
    }

    /// Lays out [ S | X ] with the diagonal of S raised by 1 + r.
    template<typename Coefficient>
    void layOut(const SystemShape &shape, Coefficient coefficient)
    {
        for (std::size_t i = 0; i < shape.rows; ++i) {
            double *row = m_work.system + i * shape.stride();
            const std::size_t begin = i / tileRows * tileRows / tileColumns * tileColumns;
            std::copy(m_work.normal + i * m_columns + begin, m_work.normal + i * m_columns + m_columns, row + begin);
            if (i < m_n)
                row[i] *= 1.0 + coefficient(i);
        }
    }

    bool estimate()
    {
        const SystemShape &shape = m_prepared.m_estimate;
        if (!(m_settings.initialRegulCoef >= leastInitialRegularisation &&
              m_settings.initialRegulCoef <= greatestRegularisation))
            return false;
        layOut(shape, [this](std::size_t) { return m_settings.initialRegulCoef; });
        for (std::size_t i = 0; i < shape.rows; ++i) {
            double *besides = m_work.system + i * shape.stride() + m_columns;
            // Columns whose first row comes later are passed over.
            std::fill(besides, besides + std::min(shape.besides, roundedUp(i + tileRows, tileColumns)), 0.0);
            if (i < m_n)
                besides[i] = 1.0;
        }
        if (!eliminate(shape, m_work.system, m_work.lower, m_work.pivots, leastPivot))
            return false;
        double *z = m_work.r; // free until the coefficients are chosen
        std::copy(m_work.y, m_work.y + m_columns, z);
        solveForward(shape, m_work.lower, z, 0);
        inverseDiagonal(shape, m_work.system, m_work.pivots, z, m_work.diagonal, m_work.x);
        return true;
    }

    bool chooseRegularisation()
    {
        for (std::size_t i = 0; i < m_n; ++i) {
            double c = m_work.diagonal[i] * m_settings.nextRegulCoef / (m_work.x[i] * m_work.x[i]);
            if (c < m_settings.initialRegulCoef)
                c = m_settings.initialRegulCoef;
            const bool limited = m_settings.hasRegulLimit && (m_work.x[i] < 0.0 || c > m_settings.regulLimit);
            m_work.r[i] = limited ? m_settings.regulLimit : c;
        }
        std::fill(m_work.r + m_n, m_work.r + m_columns, 0.0);
        if (!m_prepared.m_regulSmoothing.empty()) {
            std::copy(m_work.r, m_work.r + m_columns, m_work.diagonal);
            std::fill(m_work.r, m_work.r + m_columns, 0.0);
            addRowTimes(m_work.diagonal, m_prepared.m_regulSmoothing.data(), m_n, m_columns, m_work.r);
        }
        const double least = m_settings.regulOffDiagCorrection ? leastRegularisationOffDiagonal : leastRegularisation;
        return std::all_of(m_work.r, m_work.r + m_n,
                           [least](double r) { return r >= least && r <= greatestRegularisation; });
    }

    bool solve()
    {
        const SystemShape &shape = m_prepared.m_solve;
        layOut(shape, [this](std::size_t i) { return m_work.r[i]; });
        if (m_settings.regulOffDiagCorrection)
            correctOffDiagonal();
        for (std::size_t i = 0; i < m_n; ++i)
            std::copy_n(m_prepared.m_output.data() + i * shape.besides, shape.besides,
                        m_work.system + i * shape.stride() + m_columns);
        for (std::size_t i = m_n; i < shape.rows; ++i)
            std::fill_n(m_work.system + i * shape.stride() + m_columns, shape.besides, 0.0);
        if (!eliminate(shape, m_work.system, m_work.lower, m_work.pivots, leastPivot))
            return false;
        std::copy(m_work.y, m_work.y + m_columns, m_work.x);
        solveForward(shape, m_work.lower, m_work.x, 0);
        solveBackward(shape, m_work.lower, m_work.pivots, m_work.x);
        return allFinite(m_work.x, m_n);
    }

    void correctOffDiagonal()
    {
        const SystemShape &shape = m_prepared.m_solve;
        double *roots = m_work.diagonal;
        for (std::size_t i = 0; i < m_columns; ++i)
            roots[i] = i < m_n ? std::sqrt(m_work.r[i]) : 0.0;
        for (std::size_t i = 0; i < m_n; ++i) {
            double *row = m_work.system + i * shape.stride();
            const double scale = roots[i] / double(m_n);
            for (std::size_t j = i + 1; j < m_n; ++j)
                row[j] /= 1.0 + scale * roots[j];
        }
    }

    double greatestClass() const
    {
        double greatest = 0.0;
        for (std::size_t i = 0; i < m_n; ++i)
            greatest = std::max(greatest, std::fabs(m_work.x[i]));
        return greatest;
    }

    bool removeNegatives(bool keepRemovals)
    {
        std::vector<std::size_t> active(m_n);
        for (std::size_t i = 0; i < m_n; ++i)
            active[i] = i;
        std::vector<std::size_t> removed;
        for (int iteration = 0; iteration < m_settings.negRemoveIterations; ++iteration) {
            const auto smallest = std::min_element(active.begin(), active.end(), [this](std::size_t a, std::size_t b) {
                return m_work.x[a] < m_work.x[b];
            });
            const std::size_t column = *smallest;
            if (!(m_work.x[column] < 0.0))
                return true;
            active.erase(smallest);
            if (active.empty()) {
                m_steps.status = 3; // a solve without columns
                return true;
            }
            if (!freeOf(column, removed))
                return false;
            removed.push_back(column);
            if (keepRemovals)
                m_steps.removals.push_back({column, std::vector<double>(m_work.x, m_work.x + m_n)});
        }
        return true;
    }

    /// Takes a class out of x: x -= u x(c) / u(c), u the column c of the inverse of what is left.
    bool freeOf(std::size_t column, const std::vector<std::size_t> &removed)
    {
        const SystemShape &shape = m_prepared.m_solve;
        double *u = m_work.removed + removed.size() * m_columns;
        std::fill(u, u + m_columns, 0.0);
        u[column] = 1.0;
        solveForward(shape, m_work.lower, u, column);
        solveBackward(shape, m_work.lower, m_work.pivots, u);
        for (std::size_t k = 0; k < removed.size(); ++k) {
            const double *earlier = m_work.removed + k * m_columns;
            const double part = earlier[column] / earlier[removed[k]];
            for (std::size_t i = 0; i < m_n; ++i)
                u[i] -= earlier[i] * part;
        }
        if (!(u[column] > 0.0))
            return false;
        const double part = m_work.x[column] / u[column];
        for (std::size_t i = 0; i < m_n; ++i)
            m_work.x[i] -= u[i] * part;
        m_work.x[column] = 0.0;
        for (const std::size_t c : removed)
            m_work.x[c] = 0.0;
        return allFinite(m_work.x, m_n);
    }

    bool makeOutput()
    {
        const SystemShape &shape = m_prepared.m_solve;
        const std::size_t k = m_prepared.m_points;
        double *diagonal = m_work.band;
        double *overlap = m_work.band + shape.besides;
        bandOfProduct(shape, m_work.system, m_work.pivots, diagonal, overlap);
        std::fill(m_work.output, m_work.output + shape.besides, 0.0);
        addRowTimes(m_work.x, m_prepared.m_output.data(), m_n, shape.besides, m_work.output);
        if (k > 0 && !(allFinite(diagonal, k) && allFinite(overlap, k - 1) && allFinite(m_work.output, k)))
            return false;
        m_steps.concentrations.resize(k, false);
        std::copy(m_work.output, m_work.output + k, m_steps.concentrations.begin());
        m_steps.covariances.resize(k, k, 1, 1, false);
        m_steps.covariances.clear();
        for (std::size_t i = 0; i < k; ++i) {
            m_steps.covariances(i, i) = diagonal[i];
            if (i + 1 < k)
                m_steps.covariances(i, i + 1) = m_steps.covariances(i + 1, i) = overlap[i];
        }
        return true;
    }

    const FactoredInversion &m_prepared;
    const InverterSettings &m_settings;
    const TreatedSignal &m_treated;
    std::size_t m_n;
    std::size_t m_columns; ///< n, padded
    Workspace m_work;
    InversionSteps m_steps;
};

std::shared_ptr<const FactoredInversion> FactoredInversion::prepare(const InverterModel &model)
{
    const InverterSettings &settings = model.settings;
    const std::size_t m = settings.instrumentMatrix.size1();
    const std::size_t n = settings.instrumentMatrix.size2();
    RealMatrix output = settings.postTransform;
    if (m == 0 || n == 0 || (output.size1() > 0 && (output.size1() != n || output.size2() == 0)))
        return nullptr;
    if (output.size1() == 0)
        output = identity(n);
    if (settings.smoothing > 0) {
        if (model.smoothingMatrix.size1() != output.size2())
            return nullptr;
        output = prod(output, model.smoothingMatrix);
    }
    auto prepared = std::make_shared<FactoredInversion>();
    prepared->m_currents = m;
    prepared->m_classes = n;
    prepared->m_points = output.size2();
    prepared->m_estimate = SystemShape::of(n, n);
    prepared->m_solve = SystemShape::of(n, output.size2());
    prepared->m_instrument = padded(settings.instrumentMatrix, prepared->m_estimate.columns);
    prepared->m_output = padded(output, prepared->m_solve.besides);
    if (settings.regulSmoothingCoef != 0.0)
        prepared->m_regulSmoothing = padded(model.regulSmoothingMatrix, prepared->m_estimate.columns);
    if (!allFinite(prepared->m_output.data(), prepared->m_output.size()))
        return nullptr;
    for (std::size_t tile = 0; tile < prepared->m_estimate.firstRow.size(); ++tile)
        prepared->m_estimate.firstRow[tile] = tile * tileColumns;
    findFirstRows(prepared->m_solve, prepared->m_output);
    return prepared;
}

std::optional<InversionSteps> FactoredInversion::invert(const InverterModel &model, const TreatedSignal &treated,
                                                        bool keepRemovals) const
{
    Run run(*this, model, treated);
    if (!run.perform(keepRemovals))
        return std::nullopt;
    return std::move(run.steps());
}

} // namespace SpectMath
