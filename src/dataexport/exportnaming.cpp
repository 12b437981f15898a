#include "dataexport/exportnaming.h"

#include "util/filenamepart.h"
#include "util/timeformat.h"

namespace DataExport {

namespace {

constexpr std::int64_t noDay = -1;

std::int64_t dayOf(const Spectrometer::RecordHead &record, bool local)
{
    const RecordTime time = localTime(record.beginTime, local ? record.beginUtcOffset : 0);
    return isMissing(record.beginTime) || ticksOf(time) < 0 ? noDay : ticksOf(time) / ticksPerDay;
}

QString orUnknown(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("unknown") : text;
}

} // namespace

ExportNaming::ExportNaming(const GeneralSettings &general, std::shared_ptr<const Spectrometer::RecordMetadata> metadata)
    : m_local(general.local), m_addDate(general.addDate), m_addOpmode(general.addOpmode),
      m_metadata(std::move(metadata)), m_base(general.outputFile)
{
    const int name = m_base.lastIndexOf(QLatin1Char('/')) + 1;
    const int point = m_base.lastIndexOf(QLatin1Char('.'));
    if (point > name) { // a name that begins with its only point is all base
        m_suffix = m_base.mid(point);
        m_base.truncate(point);
    }
}

QString ExportNaming::fault() const
{
    const QString path = m_base + m_suffix;
    if (path.isEmpty() || path.endsWith(QLatin1Char('/')))
        return QStringLiteral("No output file is named.");
    if (path.contains(QChar::Null))
        return QStringLiteral("The output file's name can't be one.");
    return QString();
}

const QString &ExportNaming::pathOf(const Spectrometer::RecordHead &record)
{
    const std::int64_t day = m_addDate ? dayOf(record, m_local) : noDay;
    const int opmode = m_addOpmode ? record.opmode : 0;
    if (m_isNamed && day == m_day && opmode == m_opmode)
        return m_path;
    m_path = m_base;
    if (m_addDate)
        m_path += QLatin1Char('-') + dayText(day);
    if (m_addOpmode)
        m_path += QLatin1Char('-') + fileNamePart(orUnknown(m_metadata->opmodeName(opmode).remove(QChar::Null)));
    m_path += m_suffix;
    m_day = day;
    m_opmode = opmode;
    m_isNamed = true;
    return m_path;
}

QString ExportNaming::dayText(std::int64_t day) const
{
    return orUnknown(day == noDay ? QString()
                                  : timeToString(recordTimeFromTicks(day * ticksPerDay), QStringLiteral("%Y%m%d")));
}

} // namespace DataExport
