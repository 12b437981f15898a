#include "terminal/remainingtime.h"

#include <cmath>

namespace {

constexpr double leastShare = 0.01;
constexpr double leastSeconds = 2;
constexpr double mostSeconds = 1e6; ///< beyond it an estimate is none

/// Rounded upwards to a multiple of the step.
int inSteps(double value, int step)
{
    return int(std::ceil(value / step)) * step;
}

} // namespace

QString remainingTimeText(double done, double seconds)
{
    if (!(done >= leastShare && done < 1 && seconds >= leastSeconds))
        return QString();
    const double left = seconds * (1 - done) / done;
    if (left > mostSeconds)
        return QString();
    if (left <= 10)
        return QStringLiteral("about %1 s left").arg(inSteps(left, 1));
    if (left <= 55)
        return QStringLiteral("about %1 s left").arg(inSteps(left, 5));
    const int minutes = inSteps(left, 60) / 60;
    if (minutes < 60)
        return QStringLiteral("about %1 min left").arg(minutes);
    return QStringLiteral("about %1 h %2 min left").arg(QString::number(minutes / 60), QString::number(minutes % 60));
}
