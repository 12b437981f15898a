// What one inversion costs: ours, the uBLAS products of the tests' plain transcription, and Eigen's LLT in the same
// flow. One thread, ways alternated, medians of ratios. inversion_scipy.py compares with scipy on the same problems,
// which `spectra_bench --write DIRECTORY` writes and `spectra_bench --time M N` times our way.

#include "spectra/instrument_model.h"
#include "spectra/inverter.h"
#include "spectra/reference_inversion.h"
#include "support/measuring.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>

namespace {

using SpectMath::Inverter;
using SpectMath::InverterSettings;

struct Record {
    RealVector signal, variance;
    reference::Vector plainSignal, plainVariance;
    Eigen::VectorXd eigenSignal, eigenVariance;
};

/// Records of an instrument of m currents, n classes and 50 points with two or three removals each.
struct Problem {
    Problem(std::size_t m, std::size_t n) : model(m, n, 50, 17)
    {
        model.background = 0.5;
        model.settings.negRemoveIterations = 3;
        window = reference::window(int(n), model.settings.regulSmoothingCoef);
        while (records.size() < 100) {
            Record r;
            model.measure(r.signal, r.variance);
            r.plainSignal = r.signal;
            r.plainVariance = r.variance;
            if (reference::run(model.settings, window, r.plainSignal, r.plainVariance).removals < 2)
                continue;
            r.eigenSignal = Eigen::Map<const Eigen::VectorXd>(&r.signal[0], Eigen::Index(m));
            r.eigenVariance = Eigen::Map<const Eigen::VectorXd>(&r.variance[0], Eigen::Index(m));
            records.push_back(r);
        }
    }

    InstrumentModel model;
    RealMatrix window;
    std::vector<Record> records;
};

using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

Eigen::MatrixXd toEigen(const RealMatrix &m)
{
    return Eigen::Map<const RowMajor>(&m.data()[0], Eigen::Index(m.size1()), Eigen::Index(m.size2()));
}

/// The inversion as one would write it with Eigen: Cholesky solves throughout, only the band of the covariance formed.
class EigenInversion {
public:
    EigenInversion(const InverterSettings &settings, const RealMatrix &window)
        : m_settings(settings), m_a(toEigen(settings.instrumentMatrix)), m_p(toEigen(settings.postTransform)),
          m_window(toEigen(window)), m_identity(Eigen::MatrixXd::Identity(m_a.cols(), m_a.cols()))
    {
    }

    double invert(const Record &record)
    {
        using Eigen::Index;
        using Eigen::MatrixXd;
        using Eigen::VectorXd;
        const Index n = m_a.cols();
        VectorXd v = record.eigenVariance;
        for (Index i = 0; i < v.size(); ++i) {
            if (record.eigenSignal[i] < 0)
                v[i] += record.eigenSignal[i] * record.eigenSignal[i];
        }
        const VectorXd w = v.cwiseInverse();
        const MatrixXd weighted = w.cwiseSqrt().asDiagonal() * m_a;
        MatrixXd normal = MatrixXd::Zero(n, n);
        normal.selfadjointView<Eigen::Lower>().rankUpdate(weighted.transpose());
        const VectorXd y = m_a.transpose() * (w.asDiagonal() * record.eigenSignal);

        MatrixXd s = normal;
        s.diagonal() *= 1 + m_settings.initialRegulCoef;
        const Eigen::LLT<MatrixXd> estimate(s);
        const VectorXd x0 = estimate.solve(y);
        const VectorXd inverseDiagonal =
            MatrixXd(estimate.matrixL().solve(m_identity)).colwise().squaredNorm().transpose();
        VectorXd r(n);
        for (Index i = 0; i < n; ++i)
            r[i] =
                std::max(m_settings.initialRegulCoef, inverseDiagonal[i] * m_settings.nextRegulCoef / (x0[i] * x0[i]));
        r = m_window.transpose() * r;

        s = normal;
        s.diagonal().array() *= 1 + r.array();
        const Eigen::LLT<MatrixXd> solver(s);
        VectorXd x = solver.solve(y), full = x;
        std::vector<Index> active(static_cast<std::size_t>(n));
        for (Index i = 0; i < n; ++i)
            active[std::size_t(i)] = i;
        for (int it = 0; it < m_settings.negRemoveIterations; ++it) {
            Index least;
            if (!(x.minCoeff(&least) < 0))
                break;
            active.erase(active.begin() + least);
            const auto k = Index(active.size());
            MatrixXd reduced(k, k);
            VectorXd reducedY(k);
            for (Index j = 0; j < k; ++j) {
                for (Index i = j; i < k; ++i)
                    reduced(i, j) = s(active[std::size_t(i)], active[std::size_t(j)]);
                reducedY[j] = y[active[std::size_t(j)]];
            }
            x = Eigen::LLT<MatrixXd>(reduced).solve(reducedY);
            full.setZero();
            for (Index j = 0; j < k; ++j)
                full[active[std::size_t(j)]] = x[j];
        }
        const VectorXd residual = m_a * full - record.eigenSignal;
        const VectorXd concentrations = m_p.transpose() * full;
        const MatrixXd z = solver.matrixL().solve(m_p);
        const VectorXd diagonal = z.colwise().squaredNorm().transpose();
        const VectorXd beside =
            z.leftCols(z.cols() - 1).cwiseProduct(z.rightCols(z.cols() - 1)).colwise().sum().transpose();
        benchmark::DoNotOptimize(residual.squaredNorm() + beside[0] + diagonal[0]);
        return concentrations.sum();
    }

private:
    const InverterSettings &m_settings;
    Eigen::MatrixXd m_a, m_p, m_window, m_identity;
};

using Way = std::function<double(const Record &)>;

/// Microseconds per record.
double timed(const Problem &problem, const Way &way)
{
    const double begin = microseconds(CLOCK_MONOTONIC);
    double sum = 0;
    for (const Record &record : problem.records)
        sum += way(record);
    benchmark::DoNotOptimize(sum);
    return (microseconds(CLOCK_MONOTONIC) - begin) / double(problem.records.size());
}

void oneInversion(benchmark::State &state)
{
    const Problem problem(std::size_t(state.range(0)), std::size_t(state.range(1)));
    const Inverter inverter(problem.model.settings, nullptr);
    EigenInversion eigen(problem.model.settings, problem.window);
    const Way ours = [&](const Record &r) { return sum(inverter.invert(r.signal, r.variance)->concentrations); };
    const Way ublas = [&](const Record &r) {
        return sum(
            reference::run(problem.model.settings, problem.window, r.plainSignal, r.plainVariance).concentrations);
    };
    const Way llt = [&](const Record &r) { return eigen.invert(r); };
    for (const Record &r : problem.records) {
        const double expected = ublas(r);
        if (std::fabs(ours(r) - expected) > 1e-9 * expected || std::fabs(llt(r) - expected) > 1e-9 * expected)
            state.SkipWithError("the ways disagree");
    }
    std::vector<double> oursTimes, toUblas, toEigen;
    for (auto _ : state) {
        const double a = timed(problem, ours), b = timed(problem, ublas), c = timed(problem, llt);
        oursTimes.push_back(a);
        toUblas.push_back(b / a);
        toEigen.push_back(c / a);
    }
    state.counters["ours_us"] = median(oursTimes);
    state.counters["ublas_x"] = median(toUblas);
    state.counters["eigen_x"] = median(toEigen);
}
BENCHMARK(oneInversion)->Args({25, 30})->Args({42, 60})->Unit(benchmark::kMillisecond)->MinTime(2.0);

// ---- the same problems for another program

void put(std::ofstream &out, const void *data, std::size_t bytes)
{
    out.write(static_cast<const char *>(data), std::streamsize(bytes));
}

/// 64-bit counts m, n, points, records, removals at most; doubles: both coefficients, matrices by rows, window, then
/// the records with signal, variance and the sum of the concentrations.
void writeProblem(const std::string &path, const Problem &problem)
{
    const InverterSettings &s = problem.model.settings;
    const RealMatrix &a = s.instrumentMatrix, &p = s.postTransform;
    std::ofstream out(path, std::ios::binary);
    const std::int64_t counts[] = {std::int64_t(a.size1()), std::int64_t(a.size2()), std::int64_t(p.size2()),
                                   std::int64_t(problem.records.size()), s.negRemoveIterations};
    put(out, counts, sizeof(counts));
    const double coefficients[] = {s.initialRegulCoef, s.nextRegulCoef};
    put(out, coefficients, sizeof(coefficients));
    for (const RealMatrix *m : {&a, &p, &problem.window})
        put(out, &m->data()[0], m->data().size() * sizeof(double));
    const Inverter inverter(s, nullptr);
    for (const Record &r : problem.records) {
        put(out, &r.signal[0], a.size1() * sizeof(double));
        put(out, &r.variance[0], a.size1() * sizeof(double));
        const double total = sum(inverter.invert(r.signal, r.variance)->concentrations);
        put(out, &total, sizeof(total));
    }
}

int timeOurs(const char *m, const char *n)
{
    const Problem problem(std::size_t(std::atoi(m)), std::size_t(std::atoi(n)));
    const Inverter inverter(problem.model.settings, nullptr);
    std::vector<double> times;
    for (int i = 0; i < 200; ++i)
        times.push_back(timed(
            problem, [&](const Record &r) { return sum(inverter.invert(r.signal, r.variance)->concentrations); }));
    std::printf("%.3f\n", median(times));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--write") == 0) {
        writeProblem(std::string(argv[2]) + "/25x30.problem", Problem(25, 30));
        writeProblem(std::string(argv[2]) + "/42x60.problem", Problem(42, 60));
        return 0;
    }
    if (argc == 4 && std::strcmp(argv[1], "--time") == 0)
        return timeOurs(argv[2], argv[3]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
