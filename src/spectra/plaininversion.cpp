#include "spectra/plaininversion.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace SpectMath {

namespace {

using Inversion::InversionException;

std::size_t packedIndex(std::size_t i, std::size_t j)
{
    return i >= j ? i * (i + 1) / 2 + j : j * (j + 1) / 2 + i;
}

/// Bᵀ W B, packed.
std::vector<double> normalMatrix(const RealMatrix &b, const std::vector<double> &weights)
{
    const std::size_t n = b.size2();
    std::vector<double> s(n * (n + 1) / 2, 0.0);
    for (std::size_t l = 0; l < b.size1(); ++l) {
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j <= i; ++j)
                s[packedIndex(i, j)] += b(l, i) * weights[l] * b(l, j);
        }
    }
    return s;
}

/// Bᵀ W s.
std::vector<double> weightedSignal(const RealMatrix &b, const std::vector<double> &weights,
                                   const std::vector<double> &signal)
{
    std::vector<double> y(b.size2(), 0.0);
    for (std::size_t l = 0; l < b.size1(); ++l) {
        for (std::size_t i = 0; i < y.size(); ++i)
            y[i] += b(l, i) * weights[l] * signal[l];
    }
    return y;
}

std::vector<double> timesPacked(const std::vector<double> &packed, const std::vector<double> &y)
{
    std::vector<double> x(y.size(), 0.0);
    for (std::size_t i = 0; i < y.size(); ++i) {
        for (std::size_t j = 0; j < y.size(); ++j)
            x[i] += packed[packedIndex(i, j)] * y[j];
    }
    return x;
}

/// A row vector times a matrix, with its zeros: 0 · infinity is a NaN that belongs in the result.
std::vector<double> rowTimes(const std::vector<double> &row, const RealMatrix &matrix)
{
    std::vector<double> result(matrix.size2(), 0.0);
    for (std::size_t i = 0; i < row.size(); ++i) {
        for (std::size_t j = 0; j < result.size(); ++j)
            result[j] += row[i] * matrix(i, j);
    }
    return result;
}

/// The coefficients of the first solve, from the inverse with the initial regularisation and its estimate x0.
std::vector<double> regularisation(const InverterModel &model, const std::vector<double> &inverse,
                                   const std::vector<double> &x0)
{
    const InverterSettings &settings = model.settings;
    std::vector<double> r(x0.size());
    for (std::size_t i = 0; i < r.size(); ++i) {
        double c = inverse[packedIndex(i, i)] * settings.nextRegulCoef / (x0[i] * x0[i]);
        if (c < settings.initialRegulCoef) // a NaN stays
            c = settings.initialRegulCoef;
        const bool limited = settings.hasRegulLimit && (x0[i] < 0.0 || c > settings.regulLimit);
        r[i] = limited ? settings.regulLimit : c;
    }
    return settings.regulSmoothingCoef != 0.0 ? rowTimes(r, model.regulSmoothingMatrix) : r;
}

/// The columns of a matrix whose numbers are listed.
RealMatrix columnsOf(const RealMatrix &matrix, const std::vector<std::size_t> &columns)
{
    RealMatrix result(matrix.size1(), columns.size());
    for (std::size_t i = 0; i < matrix.size1(); ++i) {
        for (std::size_t j = 0; j < columns.size(); ++j)
            result(i, j) = matrix(i, columns[j]);
    }
    return result;
}

std::size_t firstSmallest(const std::vector<double> &x)
{
    std::size_t smallest = 0;
    for (std::size_t i = 1; i < x.size(); ++i) {
        if (x[i] < x[smallest])
            smallest = i;
    }
    return smallest;
}

/// Takes out negative classes one by one; the status is that of the last solve.
void removeNegatives(const InverterModel &model, const TreatedSignal &treated, bool keepRemovals, InversionSteps &steps)
{
    const InverterSettings &settings = model.settings;
    std::vector<std::size_t> active(steps.classes.size());
    std::iota(active.begin(), active.end(), std::size_t(0));
    std::vector<double> x = steps.classes;
    std::vector<double> r = steps.regularisation;
    for (int iteration = 0; iteration < settings.negRemoveIterations; ++iteration) {
        const std::size_t position = firstSmallest(x);
        if (!(x[position] < 0.0))
            return;
        const std::size_t column = active[position];
        active.erase(active.begin() + std::ptrdiff_t(position));
        r.erase(r.begin() + std::ptrdiff_t(position));
        RegularisedSolution reduced =
            solveRegularised(model, columnsOf(settings.instrumentMatrix, active), treated.signal, treated.variance, r);
        steps.status = reduced.status;
        if (steps.status != 0)
            return;
        x = std::move(reduced.x);
        steps.classes.assign(steps.classes.size(), 0.0);
        for (std::size_t j = 0; j < active.size(); ++j)
            steps.classes[active[j]] = x[j];
        if (keepRemovals)
            steps.removals.push_back({column, steps.classes});
    }
}

RealMatrix unpacked(const std::vector<double> &packed, std::size_t order)
{
    RealMatrix matrix(order, order);
    for (std::size_t i = 0; i < order; ++i) {
        for (std::size_t j = 0; j < order; ++j)
            matrix(i, j) = packed[packedIndex(i, j)];
    }
    return matrix;
}

/// The NaN of 0 / 0 has another sign, which shows in some prints.
double stored(double value)
{
    return std::isnan(value) ? noValue : value;
}

void makeOutput(const InverterModel &model, const std::vector<double> &covariance, InversionSteps &steps)
{
    const InverterSettings &settings = model.settings;
    const RealMatrix &p = settings.postTransform;
    std::vector<double> c = steps.classes;
    RealMatrix t = unpacked(covariance, c.size());
    if (p.size1() > 0) {
        if (p.size1() != c.size())
            throw InversionException(
                QStringLiteral("Post-transform matrix size does not match intermediate vector size"));
        c = rowTimes(c, p);
        t = prod(trans(p), RealMatrix(prod(t, p)));
    }
    if (settings.smoothing > 0) {
        const RealMatrix &m = model.smoothingMatrix;
        if (m.size1() != c.size())
            throw InversionException(QStringLiteral("Smoothing matrix size does not match spectrum size"));
        c = rowTimes(c, m);
        t = prod(m, RealMatrix(prod(t, m)));
    }
    steps.concentrations.resize(c.size(), false);
    std::transform(c.begin(), c.end(), steps.concentrations.begin(), stored);
    steps.covariances.resize(c.size(), c.size(), 1, 1, false);
    steps.covariances.clear();
    for (std::size_t i = 0; i < c.size(); ++i) {
        for (std::size_t j = i > 0 ? i - 1 : 0; j < c.size() && j <= i + 1; ++j)
            steps.covariances(i, j) = stored(t(i, j));
    }
}

} // namespace

bool invertPacked(std::vector<double> &packed, std::size_t order)
{
    if (order == 0)
        return false;
    double *a = packed.data() - 1; // counted from 1, as the scheme is published
    std::vector<double> work(order + 1);
    double *h = work.data();
    const std::size_t last = order * (order + 1) / 2;
    for (std::size_t k = order; k >= 1; --k) {
        const double p = a[1];
        if (p <= 0.0)
            return false;
        std::size_t q = 1;
        for (std::size_t i = 2; i <= order; ++i) {
            const std::size_t m = q;
            q += i;
            const double t = a[m + 1];
            h[i] = i <= k ? -t / p : t / p;
            for (std::size_t j = m + 2; j <= q; ++j)
                a[j - i] = a[j] + t * h[j - m];
        }
        a[last] = 1.0 / p;
        for (std::size_t i = 2; i <= order; ++i)
            a[last - order + i - 1] = h[i];
    }
    return true;
}

RegularisedSolution solveRegularised(const InverterModel &model, const RealMatrix &matrix,
                                     const std::vector<double> &signal, const std::vector<double> &variance,
                                     const std::vector<double> &r)
{
    const InverterSettings &settings = model.settings;
    RegularisedSolution solution;
    solution.r = r;
    if (variance.size() != matrix.size1())
        throw InversionException(QStringLiteral("Instrument matrix does not match variance vector size"));
    std::vector<double> weights(variance.size());
    for (std::size_t i = 0; i < weights.size(); ++i) {
        if (variance[i] == 0.0) {
            solution.status = 2;
            return solution;
        }
        weights[i] = 1.0 / variance[i];
    }
    const std::size_t n = matrix.size2();
    const std::vector<double> normal = normalMatrix(matrix, weights);
    if (signal.size() != matrix.size1())
        throw InversionException(QStringLiteral("Instrument matrix does not match record vector size"));
    const std::vector<double> y = weightedSignal(matrix, weights, signal);

    std::vector<double> s = normal;
    if (r.empty()) {
        for (std::size_t i = 0; i < n; ++i)
            s[packedIndex(i, i)] *= 1.0 + settings.initialRegulCoef;
        if (!invertPacked(s, n)) {
            solution.status = 3;
            return solution;
        }
        solution.r = regularisation(model, s, timesPacked(s, y));
        s = normal;
    }
    for (std::size_t i = 0; i < n; ++i)
        s[packedIndex(i, i)] *= 1.0 + solution.r[i];
    if (settings.regulOffDiagCorrection) {
        const double columns = double(settings.instrumentMatrix.size2()); // of all classes, in a reduced solve too
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < i; ++j)
                s[packedIndex(i, j)] /= 1.0 + std::sqrt(solution.r[i] * solution.r[j]) / columns;
        }
    }
    if (!invertPacked(s, n)) {
        solution.status = 4;
        return solution;
    }
    solution.x = timesPacked(s, y);
    solution.covariance = std::move(s);
    return solution;
}

InversionSteps invertPlainly(const InverterModel &model, const TreatedSignal &treated, bool keepRemovals)
{
    InversionSteps steps;
    RegularisedSolution first =
        solveRegularised(model, model.settings.instrumentMatrix, treated.signal, treated.variance, {});
    steps.status = first.status;
    if (steps.status != 0)
        return steps;
    steps.solved = true;
    steps.firstClasses = first.x;
    steps.regularisation = std::move(first.r);
    steps.classes = std::move(first.x);
    removeNegatives(model, treated, keepRemovals, steps);
    if (steps.status == 0)
        makeOutput(model, first.covariance, steps); // of the first solve: a removed class keeps its uncertainty
    return steps;
}

} // namespace SpectMath
