#include "gui/browser/plots/scatterlabel.h"

#include <QColor>

namespace Tsb {

QString scatterLabelLine(const QRgb color, const QString &name, double value, const QString &unit)
{
    const QString number = QString::number(value, 'g', 6);
    return QStringLiteral("<font color='") + QColor(color).name() + QLatin1String("'>") + name.toHtmlEscaped() +
           QLatin1String(":</font> ") + number +
           (unit.isEmpty() ? QString() : QLatin1String(" (") + unit.toHtmlEscaped() + QLatin1Char(')'));
}

QString scatterValueText(const QString &name, double value, const QString &unit)
{
    const QString text = QStringLiteral("%1: %2").arg(name, QString::number(value, 'g', 6));
    return unit.isEmpty() ? text : text + QLatin1Char(' ') + unit;
}

} // namespace Tsb
