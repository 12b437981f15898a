#include "gui/common/recordviews/distribution/distributiontext.h"

#include "util/timeformat.h"

#include <QCoreApplication>
#include <QTextStream>

namespace RecordViews {

namespace {

using SpectMath::DistributionScale;
using SpectMath::DistributionType;

QString axisUnit(const SpectMath::SpectrumInfo &info, DistributionScale axis)
{
    return (axis == DistributionScale::mobility ? info.mobilityUnit : info.sizeUnit).toString();
}

void writeLine(QTextStream &out, const QString &name, const RealVector &values)
{
    out << name;
    for (double value : values)
        out << '\t' << value;
}

} // namespace

QString horizontalTitle(const SpectMath::SpectrumInfo &info, DistributionScale axis)
{
    static const char *const words[] = {QT_TRANSLATE_NOOP("DistributionText", "mobility"),
                                        QT_TRANSLATE_NOOP("DistributionText", "radius"),
                                        QT_TRANSLATE_NOOP("DistributionText", "diameter")};
    return QStringLiteral("%1 (%2)").arg(QCoreApplication::translate("DistributionText", words[int(axis)]),
                                         axisUnit(info, axis));
}

QString verticalTitle(const SpectMath::SpectrumInfo &info, const PlotOptions &options, DistributionScale axis)
{
    const QString unit = info.concentrationUnitOf(options.verticalQuantity).toString();
    if (options.distributionType == DistributionType::fraction)
        return QStringLiteral("n (%1)").arg(unit);
    switch (axis) {
    case DistributionScale::mobility:
        return QStringLiteral("dn/dlogZ (%1)").arg(unit);
    case DistributionScale::diameter:
        return QStringLiteral("dn/dlogD (%1)").arg(unit);
    case DistributionScale::radius:
        break;
    }
    return QStringLiteral("dn/dlog?? (%1)").arg(unit);
}

QString recordTimeText(const Spectrometer::RecordHead &head)
{
    const QString begin =
        timeToString(localTime(head.beginTime, head.beginUtcOffset), QStringLiteral("%d. %B %Y %H:%M:%S"));
    if (isMissing(head.endTime))
        return begin;
    const QString end = timeToString(localTime(head.endTime, head.endUtcOffset), QStringLiteral("%H:%M:%S"));
    return QStringLiteral("%1 - %2").arg(begin, end);
}

QString spectrumText(const SpectMath::Spectrum &spectrum, const PlotOptions &options, DistributionScale axis,
                     DisplaySmoothing &smoothing)
{
    if (spectrum.status != 0 || !spectrum.info)
        return QStringLiteral("# Inversion failed\n");
    const DistributionValues shown = distributionValues(spectrum, options, axis, smoothing);
    const bool isFraction = options.distributionType == DistributionType::fraction;
    const QString type = SpectMath::toText(options.verticalQuantity);
    const QString unit = spectrum.info->concentrationUnitOf(options.verticalQuantity).toString();
    const QString points = isFraction ? QStringLiteral("%1 bins (%2)") : QStringLiteral("%1 (%2)");
    const QString values =
        isFraction ? QStringLiteral("fraction %1 concentration (%2)") : QStringLiteral("%1 concentration density (%2)");
    QString text;
    QTextStream out(&text);
    writeLine(out, points.arg(SpectMath::toText(axis), axisUnit(*spectrum.info, axis)), shown.grid);
    out << '\n';
    writeLine(out, values.arg(type, unit), shown.values);
    out << '\n';
    writeLine(out, QStringLiteral("uncertainty (%1)").arg(unit), shown.uncertainties);
    return text;
}

} // namespace RecordViews
