#pragma once

#include <QString>

namespace RecordViews {

/// A mean as text, to the second digit of its deviation: "21.43", or "1.50000000e-12" where that would take more than 8
/// decimals. Without a deviation (not-a-number or as good as 0) it has two digits, empty for a mean that is
/// not-a-number.
QString diagnosticValueText(double mean, double deviation);

} // namespace RecordViews
