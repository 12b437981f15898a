#pragma once

#include "util/numeric.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace RecordViews {

/// What a record tells of its electrometers, one element for each, as the user's coefficients correct it.
struct ElectrometerValues {
    RealVector currents;    ///< fA
    RealVector rawCurrents; ///< fA
    RealVector variances;   ///< fA^2, of the currents
};

/// Multiplies each element of all three with its coefficient; variances are required to be multiplied with it once, not
/// with its square. Unless all three have one element for each coefficient, changes nothing and returns false.
bool correctElectrometers(ElectrometerValues &values, const std::vector<double> &coefficients);

struct Coefficients {
    std::vector<double> values;
    QString wrongPart; ///< the first that isn't a number; empty if all are
};

/// Reads numbers between blanks and commas.
Coefficients parseCoefficients(const QString &text);
/// Each with six digits.
QStringList coefficientTexts(const std::vector<double> &coefficients);

} // namespace RecordViews
