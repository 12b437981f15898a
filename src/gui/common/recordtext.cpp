#include "gui/common/recordtext.h"

#include "util/timeformat.h"

#include <QCoreApplication>

#include <cstdlib>

namespace RecordText {
namespace {

using Spectrometer::RecordFlag;

constexpr int mostFlagLines = 1000;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(RecordText)
};

QString flagLine(int index, const RecordFlag &flag)
{
    QString kind = QStringLiteral("info");
    if (flag.type == RecordFlag::Warning)
        kind = QStringLiteral("warning");
    else if (flag.type == RecordFlag::Failure)
        kind = QStringLiteral("failure");
    return QStringLiteral("<div><a href='%1' class='%3'> %2</div>")
        .arg(QString::number(index), flag.message.toHtmlEscaped(), kind);
}

} // namespace

QString zone(std::int64_t utcOffset)
{
    if (utcOffset == 0)
        return {};
    const std::int64_t minutes = std::abs(utcOffset / 60);
    const QString sign = utcOffset < 0 ? QStringLiteral("-") : QStringLiteral("+");
    const QString hours = QString::number(minutes / 60);
    if (minutes % 60 == 0)
        return sign + hours;
    return QStringLiteral("%1%2:%3").arg(sign, hours,
                                         QString::number(minutes % 60).rightJustified(2, QLatin1Char('0')));
}

Times times(const Spectrometer::RecordHead &head)
{
    const QString dateFormat = QStringLiteral("%Y-%m-%d");
    const QString timeFormat = QStringLiteral("%H:%M:%3s");
    const RecordTime begin = localTime(head.beginTime, head.beginUtcOffset);
    const RecordTime end = localTime(head.endTime, head.endUtcOffset);
    const bool ended = !isMissing(head.endTime);
    Times result;
    result.date =
        QStringLiteral("%1 (UTC%2)").arg(timeToString(ended ? end : begin, dateFormat), zone(head.beginUtcOffset));
    result.begin = ended ? timeToString(begin, timeFormat) : Words::tr("n/a");
    result.end = timeToString(ended ? end : begin, timeFormat);
    return result;
}

QString moment(const Spectrometer::RecordHead &head)
{
    return timeToString(localTime(head.beginTime, head.beginUtcOffset), QStringLiteral("%Y-%m-%d %H:%M:%S"));
}

QString notes(const Record &record)
{
    const QString info = QStringLiteral("<div class=\"info\">%1</div>");
    QString lines;
    if (record.provisional)
        lines += info.arg(Words::tr("Measurement results are provisional"));
    else if (record.spectraProvisional)
        lines += info.arg(Words::tr("Distribution estimates are provisional"));
    const int count = int(record.flags.size());
    for (int i = 0; i < std::min(count, mostFlagLines); ++i)
        lines += flagLine(i, *record.flags[std::size_t(i)]);
    if (count > mostFlagLines)
        lines += info.arg(Words::tr("and %1 more").arg(count - mostFlagLines));
    return lines.isEmpty() ? QString() : QStringLiteral("<html><body>%1</body></html>").arg(lines);
}

} // namespace RecordText
