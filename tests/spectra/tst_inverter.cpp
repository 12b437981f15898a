#include "instrument_model.h"
#include "reference_inversion.h"
#include "spectra/factoredinversion.h"
#include "spectra/inverter.h"
#include "spectra/plaininversion.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

using namespace SpectMath;
using Inversion::InversionException;

const double inf = std::numeric_limits<double>::infinity();

SpectrumInfoPointer infoOf(std::size_t points)
{
    return testInfo("x", testGrid(int(points), 3, 0.99), DistributionScale::mobility);
}

/// How far two sets of numbers are apart, in parts of the largest; infinite unless what isn't finite agrees.
class Difference {
public:
    void add(double ours, double expected)
    {
        m_largest = std::isfinite(expected) ? std::max(m_largest, std::fabs(expected)) : m_largest;
        if (std::isfinite(ours) && std::isfinite(expected))
            m_apart = std::max(m_apart, std::fabs(ours - expected));
        else if (!(std::isnan(ours) && std::isnan(expected)) && ours != expected)
            m_apart = inf;
    }
    void scale(double largest) { m_largest = std::max(m_largest, largest); }
    double relative() const { return m_apart == 0 ? 0 : m_apart / m_largest; }

private:
    double m_largest = 0, m_apart = 0;
};

/// One random problem with all that may go wrong in it.
struct Case {
    InverterSettings settings;
    RealVector signal, variance;
};

class CaseMaker {
public:
    explicit CaseMaker(unsigned seed) : m_random(seed) {}

    double uniform() { return std::uniform_real_distribution<double>(0.0, 1.0)(m_random); }
    bool chance(double p) { return uniform() < p; }
    std::size_t number(std::size_t low, std::size_t high) { return low + m_random() % (high - low + 1); }
    template<typename T>
    T oneOf(std::initializer_list<T> values)
    {
        return *(values.begin() + std::ptrdiff_t(number(0, values.size() - 1)));
    }

    Case make()
    {
        Case c = chance(0.5) ? physical() : arbitrary();
        InverterSettings &s = c.settings;
        s.initialRegulCoef = chance(0.85) ? oneOf({0.1, 0.1, 1.0, 0.01, 1e-3, 1e-5, 1e-7, 3.0}) : oneOf({-2.0, -1.0});
        s.nextRegulCoef = oneOf({2.0, 2.0, 0.5, 20.0});
        s.negRemoveIterations = oneOf({10, 10, 0, 1, 3, 1000, -1});
        s.regulSmoothingCoef = oneOf({2.0, 2.0, 0.0, 2.5, 6.0, 1.0});
        s.regulOffDiagCorrection = chance(0.2);
        s.hasRegulLimit = chance(0.5);
        s.regulLimit =
            chance(0.85) ? oneOf({0.1, 1.0, 10.0, 1000.0, 0.5}) : oneOf({-3.0, 1e-3, 1e-4, 1e-5, 2e-6, 1e-7});
        s.negSignalBias = chance(0.7);
        const std::size_t n = s.instrumentMatrix.size2(), m = s.instrumentMatrix.size1();
        if (chance(0.3)) {
            s.postTransform.resize(n, chance(0.3) ? m : number(1, 40), false);
            for (double &p : s.postTransform.data())
                p = chance(0.5) ? 0.0 : uniform();
        }
        const std::size_t points = s.postTransform.size1() > 0 ? s.postTransform.size2() : n;
        if (points == m && chance(0.5))
            s.smoothing = oneOf({1.0, 2.0, 3.7});
        return c;
    }

private:
    Case physical()
    {
        const std::size_t n = number(2, 27);
        InstrumentModel model(number(2, 24), n, chance(0.5) ? number(1, 40) : 0, unsigned(m_random()));
        model.noise = oneOf({0.1, 3.0, 30.0});
        Case c;
        model.measure(c.signal, c.variance);
        c.settings = model.settings;
        spoil(c, 0.02);
        return c;
    }

    Case arbitrary()
    {
        Case c;
        const std::size_t m = number(1, 24), n = number(1, 27);
        c.settings.instrumentMatrix.resize(m, n);
        const bool sparse = chance(0.3), sign = chance(0.5);
        for (double &a : c.settings.instrumentMatrix.data())
            a = sparse && chance(0.6) ? 0.0 : uniform() - (sign ? 0.5 : 0.0);
        c.signal = RealVector(m);
        c.variance = RealVector(m);
        const bool zero = chance(0.1), negative = chance(0.2);
        for (std::size_t i = 0; i < m; ++i) {
            c.signal[i] = zero ? 0.0 : 20 * uniform() - (negative ? 20 : 5);
            c.variance[i] = 0.01 + uniform();
        }
        spoil(c, 0.1);
        return c;
    }

    void spoil(Case &c, double probability)
    {
        const auto any = [this](auto &values) -> double & { return values[number(0, values.size() - 1)]; };
        if (chance(probability))
            any(c.signal) = noValue;
        if (chance(probability))
            any(c.signal) = oneOf({inf, -inf, -1e3, 1e200});
        if (chance(probability))
            any(c.variance) = oneOf({0.0, 0.0, noValue, inf, -0.3, 5e-324, 1e-300, 1e300});
        if (chance(probability))
            any(c.settings.instrumentMatrix.data()) = oneOf({inf, noValue, -inf, 1e160, 1e-170, -4.0});
    }

    std::mt19937 m_random;
};

TEST(Inverter, AgreesWithThePlainTranscription)
{
    CaseMaker maker(20190912);
    int compared = 0, statuses[5] = {}, undefined = 0;
    for (int k = 0; k < 6000; ++k) {
        const Case c = maker.make();
        const reference::Result expected = reference::run(c.settings, c.signal, c.variance);
        if (expected.closeCall)
            continue; // which of two equal classes goes first is decided by rounding
        const Inverter inverter(c.settings, infoOf(expected.concentrations.size()));
        const auto spectrum = inverter.invert(c.signal, c.variance);
        ASSERT_EQ(spectrum->status, expected.status) << "case " << k;
        ++compared;
        ++statuses[expected.status];
        if (expected.status != 0)
            continue;
        Difference concentrations, covariances, residuals;
        ASSERT_EQ(spectrum->concentrations.size(), expected.concentrations.size());
        const BandMatrix &band = spectrum->covariances;
        for (std::size_t i = 0; i < expected.concentrations.size(); ++i) {
            concentrations.add(spectrum->concentrations[i], expected.concentrations[i]);
            for (std::size_t j = 0; j < band.size2(); ++j)
                covariances.add(band(i, j), i > j + 1 || j > i + 1 ? 0.0 : expected.covariance(i, j));
        }
        undefined += std::isnan(expected.concentrations[0]);
        residuals.add(spectrum->currentRmsError, expected.rms);
        residuals.add(spectrum->currentMeanAbsError, expected.meanAbsolute);
        residuals.add(spectrum->currentTotalError, expected.total);
        for (const double s : c.signal)
            residuals.scale(std::isfinite(s) ? std::fabs(s) : 0);
        for (const Difference &d : {concentrations, covariances, residuals})
            ASSERT_LE(d.relative(), 1e-9) << "case " << k;
    }
    EXPECT_GE(compared, 5000);
    EXPECT_GE(statuses[2], 20);
    EXPECT_GE(statuses[3], 20);
    EXPECT_GE(statuses[4], 20);
    EXPECT_GE(undefined, 20);
}

TEST(Inverter, PhysicalRecordsTakeTheFactoredWay)
{
    InstrumentModel model(42, 60, 50, 3);
    model.background = 0.1;
    const Inverter inverter(model.settings, infoOf(50));
    const auto factored = FactoredInversion::prepare(inverter.model());
    ASSERT_TRUE(factored);
    RealVector s, v;
    int removals = 0;
    for (int k = 0; k < 200; ++k) {
        model.measure(s, v);
        const TreatedSignal treated{{s.begin(), s.end()}, {v.begin(), v.end()}};
        const auto fast = factored->invert(inverter.model(), treated, true);
        ASSERT_TRUE(fast) << k;
        const InversionSteps plain = invertPlainly(inverter.model(), treated, true);
        ASSERT_EQ(fast->removals.size(), plain.removals.size());
        removals += int(plain.removals.size());
        Difference d;
        for (std::size_t i = 0; i < plain.removals.size(); ++i) {
            EXPECT_EQ(fast->removals[i].column, plain.removals[i].column);
            for (std::size_t j = 0; j < 60; ++j)
                d.add(fast->removals[i].classes[j], plain.removals[i].classes[j]);
        }
        EXPECT_LE(d.relative(), 1e-10);
    }
    EXPECT_GE(removals, 400) << "or there was nothing to see";
}

/// Classes of the same number of electrometers, each coupled to its neighbours.
InverterSettings coupled(std::size_t n, double coupling, double regulLimit)
{
    InverterSettings settings;
    settings.instrumentMatrix = RealMatrix(n, n, 0.0);
    for (std::size_t i = 0; i < n; ++i) {
        settings.instrumentMatrix(i, i) = 1.0;
        if (i > 0)
            settings.instrumentMatrix(i, i - 1) = settings.instrumentMatrix(i - 1, i) = coupling;
    }
    settings.hasRegulLimit = true;
    settings.regulLimit = regulLimit;
    settings.negSignalBias = false;
    return settings;
}

TEST(Inverter, RemovalMovesAllCoupledClasses)
{
    InverterSettings settings = coupled(4, 0.6, 0.1);
    settings.totalWeights = RealVector(4, 1.0);
    const RealVector s = realVector({9, -4, 9, 2}), v(4, 1.0);
    QString report;
    const auto spectrum = Inverter(settings, infoOf(4)).invert(s, v, &report);
    const reference::Result expected = reference::run(settings, s, v);
    ASSERT_GE(expected.removals, 1);
    EXPECT_NEAR(spectrum->concentrations[0], expected.classes[0], 1e-12);
    EXPECT_EQ(spectrum->concentrations[1], 0.0);
    EXPECT_TRUE(report.startsWith("<h4>Negative concentration removal</h4><table cellpadding='1'>"
                                  "<tr><th>vpar</th><td></td><td>0.1</td><td>0.1</td><td>0.1</td><td>0.1</td></tr>"
                                  "<tr><th>i</th><td><b>"))
        << report.toStdString();
    EXPECT_TRUE(report.contains("</td></tr><tr><th>1</th><td><b>")) << report.toStdString();
    EXPECT_EQ(report.count("<font color='red'>0</font>"), expected.removals);
    EXPECT_TRUE(report.contains("</table><br><h4>Reverse calculation</h4><table cellpadding='1'><tr><th>elm.</th>"
                                "<th>measured</th><th>calculated</th></tr><tr><td>0</td><td>9</td><td>"));
    EXPECT_TRUE(report.contains("<tr><th>sum</th><td>16</td><td>"));
    EXPECT_TRUE(report.endsWith("</td></tr></table>"));
    const QString first = QString::number(expected.classes[0], 'g', 6);
    EXPECT_TRUE(report.contains("<td>" + first + "</td>")) << first.toStdString();
}

TEST(Inverter, FailedSpectraKeepTheirPlace)
{
    InstrumentModel model(5, 4, 7, 1);
    RealVector s, v;
    model.measure(s, v);
    v[2] = 0.0;
    QString report = "old";
    const auto spectrum = Inverter(model.settings, infoOf(7)).invert(s, v, &report);
    EXPECT_EQ(spectrum->status, 2);
    EXPECT_TRUE(report.isEmpty());
    EXPECT_TRUE(spectrum->isValid());
    const BandMatrix &band = spectrum->covariances;
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_TRUE(std::isnan(spectrum->concentrations[i]));
        for (std::size_t j = 0; j < 7; ++j)
            EXPECT_EQ(std::isnan(band(i, j)), i <= j + 1 && j <= i + 1);
    }
    EXPECT_TRUE(std::isnan(spectrum->currentRmsError));
}

TEST(Inverter, ReducedToNothing)
{
    // Eight classes of their own, all negative: they go one after the other.
    InverterSettings settings = coupled(8, 0, 1);
    const RealVector s = realVector({-1, -2, -3, -4, -5, -6, -7, -8}), v(8, 1.0);
    settings.negRemoveIterations = 8;
    QString report;
    auto spectrum = Inverter(settings, infoOf(8)).invert(s, v, &report);
    EXPECT_EQ(spectrum->status, 3);
    EXPECT_TRUE(std::isnan(spectrum->concentrations[0]));
    EXPECT_EQ(report.count("<font color='red'>"), 7);
    EXPECT_FALSE(report.contains("Reverse calculation"));
    settings.negRemoveIterations = 7;
    spectrum = Inverter(settings, infoOf(8)).invert(s, v);
    EXPECT_EQ(spectrum->status, 0);
    EXPECT_LT(spectrum->concentrations[0], 0.0) << "the limit came first";
    EXPECT_EQ(spectrum->concentrations[1], 0.0);
}

std::string thrownBy(const Inverter &inverter, const RealVector &s, const RealVector &v,
                     std::optional<std::pair<int, int>> range = {})
{
    try {
        if (range)
            inverter.invert(s, v, range->first, range->second);
        else
            inverter.invert(s, v);
    } catch (const InversionException &exception) {
        return exception.message().toStdString();
    }
    return "";
}

TEST(Inverter, SizesThatDoNotFit)
{
    InstrumentModel model(4, 3, 5, 1);
    const Inverter inverter(model.settings, infoOf(5));
    const RealVector four(4, 1.0), six(6, 1.0);
    const std::string mismatch = "Instrument matrix does not match signal vector size";
    EXPECT_EQ(thrownBy(inverter, four, six), mismatch);
    EXPECT_EQ(thrownBy(inverter, six, six), mismatch);
    EXPECT_EQ(thrownBy(inverter, six, six, {{1, 5}}), "");
    EXPECT_EQ(thrownBy(inverter, six, four, {{1, 5}}), mismatch) << "too few variances";
    EXPECT_EQ(thrownBy(inverter, six, six, {{0, 3}}), mismatch);
    for (const auto &range : {std::pair(-1, 3), std::pair(3, 2), std::pair(3, 7)})
        EXPECT_EQ(thrownBy(inverter, six, six, range), "Invalid vector subrange");

    InverterSettings settings = model.settings;
    settings.postTransform = RealMatrix(4, 5, 1.0);
    EXPECT_EQ(thrownBy(Inverter(settings, infoOf(5)), four, four),
              "Post-transform matrix size does not match intermediate vector size");
    EXPECT_EQ(thrownBy(Inverter(settings, infoOf(5)), four, RealVector(4, 0.0)), "") << "it fails before it gets there";
    settings = model.settings;
    settings.smoothing = 2.0;
    EXPECT_EQ(thrownBy(Inverter(settings, infoOf(5)), four, four),
              "Smoothing matrix size does not match spectrum size");

    const std::vector<double> two(2, 1.0), fitting(4, 1.0);
    EXPECT_THROW(solveRegularised(inverter.model(), model.settings.instrumentMatrix, fitting, two, {}),
                 InversionException);
    EXPECT_THROW(solveRegularised(inverter.model(), model.settings.instrumentMatrix, two, fitting, {}),
                 InversionException);
}

TEST(Inverter, APartOfTheElectrometers)
{
    InstrumentModel model(4, 3, 0, 1);
    const Inverter inverter(model.settings, infoOf(3));
    RealVector s, v;
    model.measure(s, v);
    RealVector wideS(9, 1e6), wideV(9, 1e-3);
    std::copy(s.begin(), s.end(), wideS.begin() + 2);
    std::copy(v.begin(), v.end(), wideV.begin() + 2);
    const auto whole = inverter.invert(s, v);
    const auto part = inverter.invert(wideS, wideV, 2, 6);
    EXPECT_EQ(whole->concentrations[1], part->concentrations[1]);
    EXPECT_EQ(whole->currentRmsError, part->currentRmsError);
    EXPECT_EQ(part->info, inverter.info());
    const Inverter copy = inverter;
    EXPECT_EQ(copy.invert(s, v)->concentrations[1], whole->concentrations[1]);
}

} // namespace
