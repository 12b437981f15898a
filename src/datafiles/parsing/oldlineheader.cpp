#include "datafiles/parsing/oldlineheader.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/parsing/headerlimits.h"
#include "datafiles/parsing/unittext.h"
#include "spectra/unitparser.h"

#include <QDebug>
#include <QRegExp>

#include <limits>

namespace {

enum class LineKind { unknown, modes, diagnostics, diagnosticsWithVoltages, currents, rawCurrents, spectrum };

struct LineBegin {
    const char *words;
    LineKind kind;
};
constexpr LineBegin lineBegins[] = {
    {"#Operating modes: ", LineKind::modes},
    {"#Possible operating modes: ", LineKind::modes},
    {"#Diagnostics: ", LineKind::diagnostics},
    {"#Diagnostic values and voltages: ", LineKind::diagnosticsWithVoltages},
    {"#Electrometer currents: ", LineKind::currents},
    {"#Raw electrometer currents: ", LineKind::rawCurrents},
    {"#Result spectrum: ", LineKind::spectrum},
};

/// The kind of a header line, and what stands behind the words that tell it.
LineKind kindOf(const QString &line, QString *rest)
{
    for (const LineBegin &begin : lineBegins) {
        const QLatin1String words(begin.words);
        if (line.startsWith(words)) {
            *rest = line.mid(words.size());
            return begin.kind;
        }
    }
    return LineKind::unknown;
}

QString unquoted(const QString &text)
{
    return text.size() >= 2 && text.startsWith(QLatin1Char('"')) && text.endsWith(QLatin1Char('"'))
               ? text.mid(1, text.size() - 2)
               : text;
}

bool readFloats(const QString &text, RealVector *points, QString *bad)
{
    const QStringList parts = text.split(QLatin1Char(','));
    points->resize(std::size_t(parts.size()), false);
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        (*points)[std::size_t(i)] = double(parts[i].trimmed().toFloat(&ok)); // old axes have the precision of a float
        if (!ok) {
            *bad = parts[i].trimmed();
            return false;
        }
    }
    return true;
}

/// `parts` are the stretches of the line that the pattern for it captures.
std::shared_ptr<SpectMath::SpectrumInfo> makeSpectrumInfo(const QStringList &parts, const RealVector &points)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = parts[1];
    const Unit axisUnit = parseHeaderUnit(parts[6]);
    info->concentrationUnit = parseHeaderUnit(parts[4]);
    if (parts[5] == QLatin1String("mob")) {
        info->scale = SpectMath::DistributionScale::mobility;
        info->mobilityUnit = axisUnit;
        info->mobilities = points;
    } else {
        info->scale = SpectMath::DistributionScale::radius;
        info->sizeUnit = axisUnit;
        info->radii = points;
    }
    info->finish();
    return info;
}

} // namespace

OldLineHeader::OldLineHeader(const QList<QByteArray> &lines, FileReaderState *state)
    : m_logger(QStringLiteral("old_line_reader")), m_state(state)
{
    try {
        for (const QByteArray &line : lines) {
            if (!line.startsWith('#'))
                break;
            readLine(QString::fromUtf8(line));
        }
    } catch (const ValueParsingError &error) {
        throw FileReaderError(QStringLiteral("Failed to understand header: %1").arg(error.message()));
    }
    readColumnRow(lines.isEmpty() ? QByteArray() : lines.last());
}

bool OldLineHeader::isKnown(const QByteArray &line)
{
    return std::any_of(std::begin(lineBegins), std::end(lineBegins),
                       [&line](const LineBegin &begin) { return line.startsWith(begin.words); });
}

void OldLineHeader::warn(const QString &text) const
{
    m_logger.log(Log::Warning, text);
}

void OldLineHeader::readLine(const QString &line)
{
    QString text;
    switch (kindOf(line, &text)) {
    case LineKind::modes:
        readModes(text);
        break;
    case LineKind::diagnostics:
        m_valueReaders.append(makeDiagnostics(text, false));
        break;
    case LineKind::diagnosticsWithVoltages:
        m_valueReaders.append(makeDiagnostics(text, true));
        break;
    case LineKind::currents:
        m_valueReaders.append(makeElectrometers(text, false));
        break;
    case LineKind::rawCurrents:
        m_valueReaders.append(makeElectrometers(text, true));
        break;
    case LineKind::spectrum:
        m_valueReaders.append(makeSpectrum(text));
        break;
    case LineKind::unknown:
        qDebug().noquote() << "unknown line" << line.left(200);
        break;
    }
    checkHeaderCount(m_valueReaders.size());
}

void OldLineHeader::readModes(const QString &text)
{
    checkHeaderCount(text.count(QLatin1Char(',')));
    for (const QString &name : text.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
        checkHeaderCount(0, m_state->isAffordable(MemoryBudget::ofName(name.size())));
        m_state->addOpmode(name);
    }
}

OldLineHeader::ValueReaderPointer OldLineHeader::makeDiagnostics(const QString &text, bool withVoltages)
{
    const QStringList names = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    checkHeaderCount(names.size() * (withVoltages ? 2 : 1));
    QVector<int> variableSlots;
    for (const QString &part : names) {
        const QString name = unquoted(part.trimmed());
        variableSlots.append(m_state->variableOf(name, name, QString()));
        if (withVoltages)
            variableSlots.append(m_state->variableOf(QStringLiteral("sens_%1").arg(name),
                                                     QStringLiteral("Sensor %1").arg(name), QStringLiteral("V")));
    }
    return std::make_shared<DiagnosticsReader>(variableSlots);
}

OldLineHeader::ValueReaderPointer OldLineHeader::makeElectrometers(const QString &text, bool raw)
{
    static const QRegExp groupsPattern(QStringLiteral("\\s*(\\d+)\\s*\\((.*)\\)"));
    static const QRegExp countPattern(QStringLiteral("\\s*(\\d+)\\s*"));
    QRegExp withGroups = groupsPattern, countAlone = countPattern; // copies share the machine, and hold the captures
    const bool hasGroups = withGroups.exactMatch(text);
    if (!hasGroups && !countAlone.exactMatch(text))
        throw ValueParsingError(QStringLiteral("Electrometer currents header line"));
    bool fits = false;
    const int count = (hasGroups ? withGroups : countAlone).cap(1).toInt(&fits);
    checkHeaderCount(count, fits && m_state->isAffordable(0, count, m_state->variableNames.size()));

    const auto ignored = std::make_shared<DummyReader>(raw ? count : 2 * count);
    if (m_state->electrometerCountKnown && count != m_state->electrometerCount) {
        warn(QStringLiteral("Electrometer current count not equal to previous value.  Electrometer fields will be "
                            "ignored in this file."));
        return ignored;
    }
    m_state->electrometerCount = count;
    m_state->electrometerCountKnown = true;
    Spectrometer::RecordMetadata &metadata = *m_state->metadata;
    metadata.totalElectrometers = count;
    if (hasGroups && !readGroups(withGroups.cap(2), count))
        return ignored;
    metadata.electrometerNames.resize(count);
    for (int i = 0; i < count; ++i)
        metadata.electrometerNames[i] = QString::number(i);
    return std::make_shared<ElectrometersReader>(count, raw);
}

/// False if a group is known with other channels.
bool OldLineHeader::readGroups(const QString &text, int count)
{
    checkHeaderCount(text.count(QLatin1Char(',')));
    bool understood = true;
    auto &groups = m_state->metadata->electrometerGroups;
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QStringList tokens = part.simplified().split(QLatin1Char(' '));
        if (tokens.size() != 3) {
            understood = false;
            continue;
        }
        bool hasFirst = false, hasLast = false;
        const int first = tokens[1].toInt(&hasFirst), last = tokens[2].toInt(&hasLast);
        const Spectrometer::ChannelRange range{first, last < std::numeric_limits<int>::max() ? last + 1 : last};
        const auto known = groups.constFind(tokens[0]);
        if (known != groups.constEnd()) {
            if (*known == range)
                continue;
            warn(QStringLiteral("Different definition for electrometer channel group %1. Electrometer fields will be "
                                "ignored in this file.")
                     .arg(tokens[0]));
            return false;
        }
        if (hasFirst && hasLast && range.first >= 0 && range.first <= range.end && range.end <= count) {
            checkHeaderCount(groups.size() + 1);
            groups.insert(tokens[0], range);
        } else {
            warn(QStringLiteral("Invalid electrometer channel group '%1'").arg(tokens[0]));
        }
    }
    if (!understood)
        warn(QStringLiteral("Electrometer currents header line is a bit invalid"));
    return true;
}

OldLineHeader::ValueReaderPointer OldLineHeader::makeSpectrum(const QString &text)
{
    // name, quantity, kind, concentration unit, scale, axis unit, points
    static const QRegExp pattern(
        QStringLiteral("\"(.*)\"\\s*(\\S*)\\s*(\\S*)\\s*\\(([^\\(\\)]*)\\)\\s*,\\s*(\\S*)\\s*\\(([^\\(\\)]*)\\)"
                       "\\s*(.*)"));
    QRegExp line = pattern;
    if (!line.exactMatch(text))
        throw ValueParsingError(QStringLiteral("Spectrum header line"));
    const QStringList parts = line.capturedTexts();
    const bool isDensity = parts[2] == QLatin1String("dif") || parts[2] == QLatin1String("density");
    const int pointCount = parts[7].count(QLatin1Char(',')) + 1;
    checkHeaderCount(pointCount);
    checkHeaderCount(m_state->spectrumInfos.size());

    const auto ignored = std::make_shared<DummyReader>(isDensity ? 2 * pointCount : 2 * (pointCount - 1));
    RealVector points;
    QString bad;
    if (!readFloats(parts[7], &points, &bad)) {
        warn(QStringLiteral("Spectrum header: %1 is not a number").arg(bad));
        return ignored;
    }
    if (!isDensity || parts[3] != QLatin1String("num")) {
        warn(QStringLiteral("Not nd spectrum will be ignored"));
        return ignored;
    }
    try {
        const auto info = m_state->shareSpectrum(makeSpectrumInfo(parts, points), false, m_logger);
        if (info)
            return std::make_shared<SpectrumReader>(info);
        warn(QStringLiteral("Found a different spectrum with a known hash. Spectrum will be ignored in this file."));
    } catch (const SpectMath::UnitParsingError &error) {
        warn(QStringLiteral("Unit parsing error: %1").arg(error.message()));
        warn(QStringLiteral("Spectrum will be ignored"));
    }
    return ignored;
}

void OldLineHeader::readColumnRow(const QByteArray &line)
{
    const QList<QByteArray> names = line.split(',');
    if (names.size() < 3)
        throw FileReaderError(
            QStringLiteral("The header row (first after the \"#...\") contains wrong number of elements"));
    if (names[0].trimmed() != "begintime" || names[1].trimmed() != "endtime")
        throw FileReaderError(QStringLiteral("Header row does not start with \"begintime,endtime\""));
    m_hasOpmode = names[2].trimmed() == "opmode";
    m_fieldCount = m_hasOpmode ? 3 : 2;
    for (const auto &reader : qAsConst(m_valueReaders)) {
        reader->firstColumn = m_fieldCount;
        m_fieldCount += reader->fieldCount;
    }
}

RowLayout OldLineHeader::layout() const
{
    RowLayout layout;
    layout.kind = RowLayout::oldKind;
    layout.electrometers = std::size_t(m_state->electrometerCount);
    layout.variables = std::size_t(m_state->variableNames.size());
    layout.columns = {layout.kind, m_fieldCount, m_hasOpmode};
    for (const auto &reader : m_valueReaders)
        reader->describe(layout);
    return layout;
}
