#include "gui/browser/controls/colorlimits.h"

#include <cmath>

namespace Tsb {

namespace {

constexpr double greatestSpan = 20; // decades

} // namespace

ColorLimits::ColorLimits(QObject *parent, double farthest) : QObject(parent), m_farthest(farthest) {}

bool ColorLimits::areUsable(double lower, double upper) const
{
    return upper - lower >= 0 && upper - lower <= greatestSpan && std::abs(lower) <= m_farthest &&
           std::abs(upper) <= m_farthest;
}

bool ColorLimits::set(double lower, double upper)
{
    if (!areUsable(lower, upper))
        return false;
    if (!m_set || lower != m_lower || upper != m_upper)
        store(lower, upper, std::pow(10.0, lower), std::pow(10.0, upper));
    return true;
}

bool ColorLimits::setLowerValue(double value)
{
    if (!(value < m_upperValue) || !areUsable(std::log10(value), m_upper))
        return false;
    if (!m_set || value != m_lowerValue)
        store(std::log10(value), m_upper, value, m_upperValue);
    return true;
}

bool ColorLimits::setUpperValue(double value)
{
    if (!(value > m_lowerValue) || !areUsable(m_lower, std::log10(value)))
        return false;
    if (!m_set || value != m_upperValue)
        store(m_lower, std::log10(value), m_lowerValue, value);
    return true;
}

void ColorLimits::store(double lower, double upper, double lowerValue, double upperValue)
{
    m_set = true;
    m_lower = lower;
    m_upper = upper;
    m_lowerValue = lowerValue;
    m_upperValue = upperValue;
    Q_EMIT changed(lower, upper);
}

} // namespace Tsb
