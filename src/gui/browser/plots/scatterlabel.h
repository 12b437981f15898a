#pragma once

#include <QRgb>
#include <QString>

namespace Tsb {

/// One line of the label at the selected record, as HTML: the series' name in its colour, and the value with its unit.
QString scatterLabelLine(QRgb color, const QString &name, double value, const QString &unit);
/// The same as plain text.
QString scatterValueText(const QString &name, double value, const QString &unit);

} // namespace Tsb
