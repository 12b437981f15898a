#include "datafiles/parsing/newlinereader.h"

#include "datafiles/parsing/filereadererror.h"

namespace {

struct Magic {
    const char *line;
    int kind;
};
constexpr Magic magics[] = {
    {"# Quilvane currents", 0}, {"# Quilvane diagnostics", 1}, {"# Quilvane spectra", 2},
    {"# Quilvane flags", 3},    {"# Quilvane records", 4},
};

void demand(bool met, const char *complaint)
{
    if (!met)
        throw FileReaderError(QString::fromLatin1(complaint));
}

} // namespace

NewLineReader::NewLineReader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                             FileReaderState *state)
    : m_logger(QStringLiteral("new_line_reader")), m_state(state), m_fileKind(kindOf(firstLine))
{
    try {
        readSections(columnRow, yamlText);
    } catch (const Llama::YamlError &error) {
        throw FileReaderError(error.message());
    } catch (const Llama::NodeError &error) {
        throw FileReaderError(error.message());
    }
    m_electrometers = std::size_t(state->electrometerCount);
    m_fieldCount = countFields();
}

NewLineReader::FileKind NewLineReader::kindOf(const QByteArray &firstLine)
{
    const QByteArray line = firstLine.trimmed();
    for (const Magic &magic : magics)
        if (line == magic.line)
            return FileKind(magic.kind);
    throw FileReaderError(QStringLiteral("Unknown file"));
}

void NewLineReader::readSections(const QByteArray &columnRow, const QByteArray &yamlText)
{
    const QVariantList documents =
        Llama::yamlLoad(yamlText, QStringLiteral("<header data>"), m_state->mostNodes(yamlText.size()));
    if (documents.isEmpty())
        return;
    demand(documents.first().canConvert(QVariant::Map), "Header has bad structure");
    const Llama::MapNode header = Llama::Node(documents.first(), QStringLiteral("header")).toMap();
    m_hasOpmodes = HeaderSections::readOpmodes(header, *m_state);
    m_hasElectrometers = HeaderSections::readElectrometers(header, *m_state);
    m_variableSlots = HeaderSections::readVariables(header, *m_state);
    if (m_fileKind == FileKind::records)
        m_noFlagsColumn = !columnRow.trimmed().endsWith("\tflags");
    else
        m_flagLevels = HeaderSections::readFlagLevels(header, *m_state);
    m_spectra = HeaderSections::readSpectra(header, *m_state, m_logger);
    HeaderSections::readInstrumentSettings(header, *m_state);
}

std::size_t NewLineReader::countFields() const
{
    const std::size_t heads = 3, n = m_electrometers;
    const std::size_t variables = m_variableSlots ? std::size_t(m_variableSlots->size()) : 0;
    switch (m_fileKind) {
    case FileKind::currents:
        demand(m_hasElectrometers, "Header does not describe electrometers");
        return heads + 3 * n;
    case FileKind::diagnostics:
        demand(m_hasElectrometers && m_variableSlots, "Header does not describe electrometers or diagnostics");
        return heads + n + variables + (m_flagLevels ? 1 : 0);
    case FileKind::spectra:
        demand(m_spectra.has_value(), "Header does not describe spectra");
        return heads + spectrumFieldCount();
    case FileKind::flags:
        return heads + 1;
    case FileKind::records:
        return heads + variables + 4 * n + (m_noFlagsColumn ? 0 : 1);
    }
    return heads;
}

std::size_t NewLineReader::spectrumFieldCount() const
{
    std::size_t count = 0;
    for (const auto &info : m_spectra->infos)
        count += 2 * info->nativePoints().size() + std::size_t(m_spectra->inversionVariables.size());
    return count;
}
