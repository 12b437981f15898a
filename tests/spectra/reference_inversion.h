#pragma once

#include "spectra/inverter.h"

#include <boost/numeric/ublas/symmetric.hpp>

#include <cmath>
#include <string>
#include <vector>

/// The inversion step by step in uBLAS products, slow and without a thought for speed: what the product is compared
/// with, in results and in time. Shares nothing with it but the settings.
namespace reference {

namespace ublas = boost::numeric::ublas;
using Vector = ublas::vector<double>;
using Matrix = ublas::matrix<double>;
using Packed = ublas::symmetric_matrix<double, ublas::lower, ublas::row_major>;

struct Result {
    int status = 0;
    std::string exception;
    Vector concentrations;
    Matrix covariance; ///< dense; only its band counts
    Vector classes;
    Vector coefficients;
    double rms = NAN, meanAbsolute = NAN, total = NAN;
    int removals = 0;
    bool closeCall = false; ///< two classes were nearly equal when one of them had to go
};

inline Matrix window(int order, double width)
{
    if (!std::isfinite(width))
        width = 0;
    const int length = std::max(1, int(std::max(width, -2.0) + 1.0) + 1);
    std::vector<double> k(std::size_t(length), 1.0);
    double sum = 0;
    for (int i = 1; i < length; ++i)
        sum += k[std::size_t(i)] = 0.5 + 0.5 * std::cos(i * std::acos(-1.0) / (width + 1.0));
    const auto kernel = [&](int d) { return std::abs(d) < length ? k[std::size_t(std::abs(d))] / (2 * sum + 1) : 0.0; };
    Matrix m(static_cast<std::size_t>(order), static_cast<std::size_t>(order));
    for (int i = 0; i < order; ++i) {
        for (int j = 0; j < order; ++j)
            m(std::size_t(i), std::size_t(j)) = kernel(i - j) + kernel(i + j + 1) + kernel(2 * order - 1 - i - j);
    }
    return m;
}

/// False for a pivot of zero or below, or no pivot at all.
inline bool invert(Packed &s)
{
    const int n = int(s.size1());
    auto a = [&s](int i) -> double & { return s.data()[std::size_t(i - 1)]; };
    std::vector<double> h(std::size_t(n) + 1);
    for (int k = n; k >= 1; --k) {
        const double p = a(1);
        if (p <= 0)
            return false;
        int q = 1;
        for (int i = 2; i <= n; ++i) {
            const int m = q;
            q = q + i;
            const double t = a(m + 1);
            h[std::size_t(i)] = i <= k ? -t / p : t / p;
            for (int j = m + 2; j <= q; ++j)
                a(j - i) = a(j) + t * h[std::size_t(j - m)];
        }
        a(q) = 1 / p;
        for (int i = 2; i <= n; ++i)
            a(q - n + i - 1) = h[std::size_t(i)];
    }
    return n > 0;
}

struct Solution {
    int status = 0;
    Vector x, r;
    Packed c;
};

inline Solution solve(const SpectMath::InverterSettings &set, const Matrix &regulWindow, const Matrix &b,
                      const Vector &s, const Vector &v, const Vector &given)
{
    Solution out;
    out.r = given;
    Matrix wb = b;
    for (std::size_t i = 0; i < v.size(); ++i) {
        if (v(i) == 0.0) {
            out.status = 2;
            return out;
        }
        for (std::size_t j = 0; j < b.size2(); ++j)
            wb(i, j) *= 1.0 / v(i);
    }
    const std::size_t n = b.size2();
    const Matrix full = prod(trans(wb), b);
    Packed original(n, n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= i; ++j)
            original(i, j) = full(i, j);
    }
    const Vector y = prod(trans(wb), s);
    Packed work = original;
    if (given.size() == 0) {
        for (std::size_t i = 0; i < n; ++i)
            work(i, i) *= 1 + set.initialRegulCoef;
        if (!invert(work)) {
            out.status = 3;
            return out;
        }
        const Vector x0 = prod(work, y);
        out.r = Vector(n);
        for (std::size_t i = 0; i < n; ++i) {
            double c = work(i, i) * set.nextRegulCoef / (x0(i) * x0(i));
            if (c < set.initialRegulCoef)
                c = set.initialRegulCoef;
            out.r(i) = set.hasRegulLimit && (x0(i) < 0 || c > set.regulLimit) ? set.regulLimit : c;
        }
        if (set.regulSmoothingCoef != 0.0)
            out.r = Vector(prod(out.r, regulWindow));
        work = original;
    }
    for (std::size_t i = 0; i < n; ++i) {
        work(i, i) *= 1 + out.r(i);
        for (std::size_t j = 0; set.regulOffDiagCorrection && j < i; ++j)
            work(i, j) /= 1 + std::sqrt(out.r(i) * out.r(j)) / double(set.instrumentMatrix.size2());
    }
    if (!invert(work)) {
        out.status = 4;
        return out;
    }
    out.x = prod(work, y);
    out.c = work;
    return out;
}

inline Result run(const SpectMath::InverterSettings &set, const Matrix &regulWindow, Vector s, Vector v)
{
    Result out;
    const Matrix &a = set.instrumentMatrix;
    const Vector measured = s;
    if (s.size() != a.size1() || v.size() != a.size1()) {
        out.exception = "Instrument matrix does not match signal vector size";
        return out;
    }
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (std::isnan(s(i))) {
            s(i) = 0;
            v(i) = 1e10;
        } else if (set.negSignalBias && s(i) < 0) {
            v(i) += s(i) * s(i);
        }
    }
    const Solution first = solve(set, regulWindow, a, s, v, Vector());
    out.status = first.status;
    if (out.status != 0)
        return out;
    out.coefficients = first.r;
    out.classes = first.x;
    Vector x = first.x;
    std::vector<std::size_t> active(a.size2());
    for (std::size_t i = 0; i < active.size(); ++i)
        active[i] = i;
    for (int it = 0; it < set.negRemoveIterations; ++it) {
        std::size_t least = 0;
        for (std::size_t i = 1; i < x.size(); ++i)
            least = x(i) < x(least) ? i : least;
        if (!(x(least) < 0))
            break;
        for (std::size_t i = 0; i < x.size(); ++i)
            out.closeCall = out.closeCall || (i != least && std::fabs(x(i) - x(least)) <= 1e-7 * std::fabs(x(least)));
        out.closeCall = out.closeCall || std::fabs(x(least)) < 1e-9 * norm_inf(x);
        active.erase(active.begin() + std::ptrdiff_t(least));
        Matrix reduced(a.size1(), active.size());
        Vector r(active.size());
        for (std::size_t j = 0; j < active.size(); ++j) {
            for (std::size_t i = 0; i < a.size1(); ++i)
                reduced(i, j) = a(i, active[j]);
            r(j) = first.r(active[j]);
        }
        const Solution next = solve(set, regulWindow, reduced, s, v, r);
        out.status = next.status;
        if (out.status != 0)
            return out;
        ++out.removals;
        x = next.x;
        out.classes = ublas::zero_vector<double>(a.size2());
        for (std::size_t j = 0; j < active.size(); ++j)
            out.classes(active[j]) = x(j);
    }
    const Vector d = prod(a, out.classes) - measured;
    double squares = 0;
    out.meanAbsolute = out.total = 0;
    for (const double value : d) {
        squares += value * value;
        out.meanAbsolute += std::fabs(value) / double(d.size());
        out.total += value;
    }
    out.rms = std::sqrt(squares) / std::sqrt(double(d.size()));
    Vector c = out.classes;
    Matrix t = first.c;
    if (set.postTransform.size1() > 0) {
        const Matrix &p = set.postTransform;
        if (p.size1() != c.size()) {
            out.exception = "Post-transform matrix size does not match intermediate vector size";
            return out;
        }
        c = Vector(prod(c, p));
        t = prod(trans(p), Matrix(prod(t, p)));
    }
    if (set.smoothing > 0) {
        const Matrix m = window(int(a.size1()), set.smoothing);
        if (m.size1() != c.size()) {
            out.exception = "Smoothing matrix size does not match spectrum size";
            return out;
        }
        c = Vector(prod(c, m));
        t = prod(m, Matrix(prod(t, m)));
    }
    out.concentrations = c;
    out.covariance = t;
    return out;
}

inline Result run(const SpectMath::InverterSettings &set, const Vector &s, const Vector &v)
{
    return run(set, window(int(set.instrumentMatrix.size2()), set.regulSmoothingCoef), s, v);
}

} // namespace reference
