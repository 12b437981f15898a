#include "axis/valueticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tsb {

namespace {

constexpr int maxTicks = 1000;
constexpr int maxDecimals = 30;
constexpr double minMinorDistance = 3; ///< pixels

struct LinearStep {
    double step = 0;
    int decimals = 0;
    bool valid = false;
};

LinearStep chooseStep(double span, int height, int lineHeight)
{
    const double maxLabels = std::max(2.0, double(height) / std::max(lineHeight, 1) / 1.5);
    const double exponent = std::ceil(std::log10(span / maxLabels));
    LinearStep result{std::pow(10.0, exponent), 0, false};
    const double ratio = span / result.step;
    if (!std::isfinite(exponent) || !std::isfinite(ratio) || result.step <= 0)
        return result;
    result.decimals = int(-exponent);
    const double want = maxLabels * 1.3;
    const int divisor = want > ratio * 10 ? 10 : want > ratio * 5 ? 5 : want > ratio * 2 ? 2 : 1;
    if (divisor > 1) {
        result.step /= divisor;
        result.decimals += 1;
    }
    result.valid = result.step > 0;
    return result;
}

/// v * 10^power, in two factors where one alone would leave the range of a double.
double scaledByPowerOfTen(double v, int power)
{
    const int half = power / 2;
    return v * std::pow(10.0, half) * std::pow(10.0, power - half);
}

/// How the labels of a linear axis are written.
class LinearLabel {
public:
    LinearLabel(const LinearStep &step, double lower, double upper) : m_decimals(step.decimals)
    {
        if (step.step > 1000 || step.step < 0.001) {
            m_exponent = int(std::floor(std::log10(std::max(std::abs(lower), std::abs(upper)))));
            m_decimals += m_exponent;
            m_suffix = fmt::format("e{:+02d}", m_exponent);
        }
        m_decimals = std::clamp(m_decimals, 0, maxDecimals);
    }

    QString of(double value) const
    {
        const double scaled = m_suffix.empty() ? value : scaledByPowerOfTen(value, -m_exponent);
        return QString::fromStdString(fmt::format("{0:.{1}f}{2}", scaled, m_decimals, m_suffix));
    }

private:
    int m_decimals;
    int m_exponent = 0;
    std::string m_suffix;
};

/// Which of 2 to 9 get a tick, and which of those a label, in a decade of that many pixels.
struct MinorPlan {
    std::vector<int> ticks;
    std::vector<int> labels;
};

MinorPlan planMinorTicks(double pixelsPerDecade, int lineHeight)
{
    const std::vector<int> all{2, 3, 4, 5, 6, 7, 8, 9}, even{2, 4, 6, 8}, few{2, 5};
    const double closestOfAll = std::log10(10.0 / 9) * pixelsPerDecade;
    const double closestOfEven = std::log10(10.0 / 8) * pixelsPerDecade;
    const double closestOfFew = std::log10(2.0) * pixelsPerDecade;
    MinorPlan plan;
    if (closestOfAll >= minMinorDistance)
        plan.ticks = all;
    else if (closestOfEven >= minMinorDistance)
        plan.ticks = even;
    else if (closestOfFew >= minMinorDistance)
        plan.ticks = few;
    if (closestOfAll >= lineHeight)
        plan.labels = all;
    else if (closestOfFew >= lineHeight)
        plan.labels = few;
    // A label stands at a tick, also where the even ones alone have room.
    for (int m : plan.labels)
        if (std::find(plan.ticks.begin(), plan.ticks.end(), m) == plan.ticks.end())
            plan.ticks.push_back(m);
    std::sort(plan.ticks.begin(), plan.ticks.end());
    return plan;
}

/// Ticks at even steps of the value itself, for a range so short that less than two of the others have a text in it.
/// Texts within the range keep their distance.
class FinerTicks {
public:
    FinerTicks(std::vector<ValueTick> &ticks, double lower, double upper, int height, int lineHeight)
        : m_ticks(ticks), m_lower(lower), m_upper(upper), m_height(height), m_lineHeight(lineHeight)
    {
    }

    bool areNeeded() const
    {
        return std::count_if(m_ticks.begin(), m_ticks.end(),
                             [this](const ValueTick &tick) { return isReadable(tick); }) < 2;
    }

    void add()
    {
        const auto steps = linearTicks(std::pow(10.0, m_lower), std::pow(10.0, m_upper), m_height, m_lineHeight);
        if (steps.size() < 2)
            return;
        const double greatest = std::max(std::abs(steps.front().value), std::abs(steps.back().value));
        const double digits = std::ceil(std::log10(greatest / (steps[1].value - steps[0].value))) + 1;
        for (const ValueTick &step : steps)
            if (step.value > 0)
                place(std::log10(step.value), QString::number(step.value, 'g', int(std::clamp(digits, 6.0, 17.0))));
        std::stable_sort(m_ticks.begin(), m_ticks.end(),
                         [](const ValueTick &a, const ValueTick &b) { return a.value < b.value; });
    }

private:
    bool isReadable(const ValueTick &tick) const
    {
        return !tick.label.isEmpty() && tick.value >= m_lower && tick.value <= m_upper;
    }

    /// A tick with a text takes the place of one without that stands too close.
    void place(double decade, const QString &text)
    {
        if (decade < m_lower || decade > m_upper)
            return;
        const double pixelsPerDecade = m_height / (m_upper - m_lower);
        const auto distance = [&](const ValueTick &tick) { return std::abs(tick.value - decade) * pixelsPerDecade; };
        if (std::any_of(m_ticks.begin(), m_ticks.end(),
                        [&](const ValueTick &tick) { return isReadable(tick) && distance(tick) < m_lineHeight; }))
            return;
        const auto gone = std::remove_if(m_ticks.begin(), m_ticks.end(), [&](const ValueTick &tick) {
            return !tick.major && distance(tick) < minMinorDistance;
        });
        m_ticks.erase(gone, m_ticks.end());
        m_ticks.push_back({decade, text, false});
    }

    std::vector<ValueTick> &m_ticks;
    double m_lower, m_upper;
    int m_height, m_lineHeight;
};

} // namespace

QString powerOfTenText(double decade, int mantissa)
{
    const double value = mantissa * std::pow(10.0, decade);
    if (std::isnormal(value) && std::abs(decade) < 307)
        return QString::number(value);
    if (std::abs(decade) < 1e15)
        return QStringLiteral("%1e%2%3").arg(QString::number(mantissa), QLatin1String(decade < 0 ? "-" : "+"),
                                             QString::number(std::abs(decade), 'f', 0));
    return {};
}

std::vector<ValueTick> linearTicks(double lower, double upper, int height, int lineHeight)
{
    if (lower > upper)
        std::swap(lower, upper);
    const double span = upper - lower;
    if (!(span > 0) || !std::isfinite(span) || height <= 0)
        return {};
    const LinearStep chosen = chooseStep(span, height, lineHeight);
    const double step = chosen.step;
    if (!chosen.valid)
        return {};
    double first = std::floor(lower / step) * step;
    if (first < lower)
        first += step;
    if (!std::isfinite(first))
        return {};

    const LinearLabel label(chosen, lower, upper);
    std::vector<ValueTick> ticks;
    double previous = -std::numeric_limits<double>::infinity();
    for (int i = -1; i < maxTicks - 1; ++i) {
        // From the index, and stopped where it doesn't grow: adding a step that is lost in rounding would never end.
        double t = first + i * step;
        if (!std::isfinite(t) || t <= previous || t > upper + step)
            break;
        previous = t;
        if (std::abs(t) < step / 1e6)
            t = 0;
        ticks.push_back({t, label.of(t), true});
    }
    return ticks;
}

std::vector<ValueTick> logarithmicTicks(double lower, double upper, int height, int lineHeight)
{
    if (lower > upper)
        std::swap(lower, upper);
    const double span = upper - lower;
    if (!(span > 0) || !std::isfinite(span) || height <= 0)
        return {};
    const double pixelsPerDecade = height / span;
    const double k = std::max(1.0, std::ceil(lineHeight / pixelsPerDecade));
    double first = std::floor(lower);
    if (k > 1)
        first = std::floor(first / k) * k;
    const double last = std::ceil(upper) + k;
    const MinorPlan minor = k > 1 ? MinorPlan() : planMinorTicks(pixelsPerDecade, lineHeight);

    std::vector<ValueTick> ticks;
    double previous = -std::numeric_limits<double>::infinity();
    for (int i = -1; i < maxTicks - 1; ++i) {
        const double decade = first + i * k;
        if (!std::isfinite(decade) || decade <= previous || decade > last)
            break;
        previous = decade;
        ticks.push_back({decade, powerOfTenText(decade), true});
        for (int m : minor.ticks) {
            const bool labelled = std::find(minor.labels.begin(), minor.labels.end(), m) != minor.labels.end();
            ticks.push_back({decade + std::log10(m), labelled ? powerOfTenText(decade, m) : QString(), false});
        }
    }
    FinerTicks finer(ticks, lower, upper, height, lineHeight);
    if (k == 1 && finer.areNeeded())
        finer.add();
    return ticks;
}

} // namespace Tsb
