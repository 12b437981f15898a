#include "dataexport/exporttable.h"

#include "dataexport/concentrationfieldsource.h"
#include "dataexport/electrometerfieldsource.h"
#include "dataexport/spectrumfieldsource.h"
#include "dataexport/variablefieldsource.h"
#include "spectra/spectrumnaming.h"
#include "util/buildinfo.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QDebug>

#include <algorithm>

namespace DataExport {

ExportTable::ExportTable(const ExportSetup &setup, const ExportData &data) : m_setup(setup), m_data(data)
{
    const QStringList labels = SpectrumNaming::displayNames(data.infos.toList());
    for (int i = 0; i < labels.size(); ++i)
        m_spectra.insert(data.infos.at(i)->hash, {data.infos.at(i), labels.at(i)});
    for (const Opmode &mode : data.metadata->opmodes)
        m_takenModes.push_back(takesMode(mode.name));
    m_takenModes.push_back(takesMode(QString()));
    for (const Field &field : setup.fields)
        std::visit([this](const auto &any) { add(any); }, field);
}

ExportTable::~ExportTable() = default;

// ---- columns

void ExportTable::leaveOutField()
{
    m_errors << QStringLiteral("A field was left out: a table has no more than %1 columns.").arg(mostColumns);
}

void ExportTable::addSource(std::unique_ptr<FieldSource> source)
{
    const std::size_t columns = std::size_t(source->titles().size());
    if (m_columns + columns > mostColumns) {
        leaveOutField();
        return;
    }
    m_columns += columns;
    m_sources.push_back(std::move(source));
}

template<typename Source, typename SpectraField>
void ExportTable::addSpectra(const SpectraField &field)
{
    auto source = std::make_unique<Source>(field, mostColumns - m_columns);
    for (const QString &hash : field.spectra) {
        m_namesSpectra = true;
        const auto spectrum = m_spectra.constFind(hash);
        if (spectrum == m_spectra.constEnd()) {
            m_errors << QStringLiteral("Unknown spectrum '%1'.").arg(hash);
            continue;
        }
        const auto isThis = [&](const NamedSpectrum &used) { return used.info == spectrum->info; };
        if (std::none_of(m_usedSpectra.begin(), m_usedSpectra.end(), isThis))
            m_usedSpectra.push_back(*spectrum);
        if (!source->addSpectrum(spectrum->info, spectrum->label, &m_errors)) {
            leaveOutField();
            return;
        }
    }
    addSource(std::move(source));
}

void ExportTable::add(const ConcentrationField &field)
{
    if (field.decades.isEnabled && !m_data.isPreview)
        noteDecades(field);
    addSpectra<ConcentrationFieldSource>(field);
}

void ExportTable::noteDecades(const ConcentrationField &field) const
{
    for (const QString &hash : field.spectra) {
        const auto spectrum = m_spectra.constFind(hash);
        if (spectrum == m_spectra.constEnd())
            continue;
        const Limits range = field.decades.range(gridIn(*spectrum->info, field.decades.scale));
        qDebug() << spectrum->info->name << "start:" << range.first << "end:" << range.second;
    }
}

void ExportTable::add(const SpectrumField &field)
{
    addSpectra<SpectrumFieldSource>(field);
}

void ExportTable::add(const VariableField &field)
{
    addSource(std::make_unique<VariableFieldSource>(field.variables, *m_data.metadata, &m_errors));
}

void ExportTable::add(const ElectrometerField &field)
{
    addSource(std::make_unique<ElectrometerFieldSource>(field, *m_data.metadata, &m_errors));
}

// ---- head

QByteArray ExportTable::commentLines() const
{
    QByteArray lines;
    const auto add = [&lines](const char *key, const QString &value) {
        lines += "# " + QByteArray(key) + ": " + escapeTextNoQuote(value).toUtf8() + '\n';
    };
    QStringList modes;
    for (int i = 0; i < m_data.metadata->opmodes.size(); ++i)
        if (m_takenModes[std::size_t(i)])
            modes << m_data.metadata->opmodes.at(i).name;
    add("program", QStringLiteral("Morvantide"));
    add("version", BuildInfo::version() + QStringLiteral(" revision ") + BuildInfo::revision());
    add("folder", m_data.folder);
    add("files", m_data.files.join(QStringLiteral(", ")));
    add("span", timeText(m_data.first.beginTime, m_data.first.beginUtcOffset) + QStringLiteral(" - ") +
                    timeText(Spectrometer::effectiveEnd(m_data.last), m_data.last.endUtcOffset));
    add("modes", modes.join(QStringLiteral(", ")));
    for (const NamedSpectrum &spectrum : m_usedSpectra)
        add("spectrum", QStringLiteral("%1, id %2, inverter %3")
                            .arg(spectrum.label, spectrum.info->hash, spectrum.info->inverterName));
    return lines;
}

QByteArray ExportTable::head() const
{
    DelimitedLine line(m_setup.general.separator);
    for (const char *title : {"begin time", "end time", "opmode"})
        line.addText(QString::fromLatin1(title));
    for (const auto &source : m_sources) {
        const QStringList titles = source->titles();
        for (const QString &title : titles)
            line.addText(title);
    }
    line.endLine();
    const QByteArray titles(line.data(), int(line.size()));
    return m_setup.general.commentLines ? commentLines() + titles : titles;
}

// ---- records

bool ExportTable::takesMode(const QString &mode) const
{
    return m_setup.general.opmodes.isEmpty() || m_setup.general.opmodes.contains(mode);
}

bool ExportTable::takes(const Record &record) const
{
    const std::size_t modes = m_takenModes.size() - 1;
    return m_takenModes[std::min(std::size_t(std::uint32_t(record.opmode)), modes)];
}

QString ExportTable::timeText(RecordTime time, std::int64_t utcOffset) const
{
    if (isMissing(time))
        return QString();
    const std::int64_t offset = m_setup.general.local ? utcOffset : 0;
    return timeToString(localTime(time, offset), offset, m_setup.general.timeFormat);
}

std::size_t ExportTable::columns() const
{
    constexpr std::size_t timesAndMode = 3;
    return timesAndMode + m_columns;
}

void ExportTable::addLine(const Record &record, DelimitedLine &line) const
{
    line.addText(timeText(record.beginTime, record.beginUtcOffset));
    line.addText(timeText(record.endTime, record.endUtcOffset));
    line.addText(m_data.metadata->opmodeName(record.opmode));
    for (const auto &source : m_sources)
        source->values(record, line);
    line.endLine();
}

} // namespace DataExport
