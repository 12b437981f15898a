#include "datafiles/parsing/newlineheader.h"

#include "datafiles/parsing/electrometersection.h"
#include "datafiles/parsing/filereadererror.h"
#include "datafiles/parsing/instrumentsection.h"
#include "datafiles/parsing/opmodesection.h"
#include "datafiles/parsing/variablesection.h"
#include "log/logger.h"

namespace {

using FileKind = NewLineHeader::FileKind;

struct Magic {
    const char *line;
    FileKind kind;
};
constexpr Magic magics[] = {
    {"# Quilvane currents", FileKind::currents}, {"# Quilvane diagnostics", FileKind::diagnostics},
    {"# Quilvane spectra", FileKind::spectra},   {"# Quilvane flags", FileKind::flags},
    {"# Quilvane records", FileKind::records},
};

FileKind kindOf(const QByteArray &firstLine)
{
    const QByteArray line = firstLine.trimmed();
    for (const Magic &magic : magics)
        if (line == magic.line)
            return magic.kind;
    throw FileReaderError(QStringLiteral("Unknown file"));
}

void demand(bool met, const char *complaint)
{
    if (!met)
        throw FileReaderError(QString::fromLatin1(complaint));
}

} // namespace

NewLineHeader::NewLineHeader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                             FileReaderState &state)
    : fileKind(kindOf(firstLine))
{
    try {
        readSections(columnRow, yamlText, state);
    } catch (const Llama::YamlError &error) {
        throw FileReaderError(error.message());
    } catch (const Llama::NodeError &error) {
        throw FileReaderError(error.message());
    }
    electrometers = std::size_t(state.electrometerCount);
    fieldCount = countFields();
}

void NewLineHeader::readSections(const QByteArray &columnRow, const QByteArray &yamlText, FileReaderState &state)
{
    const QVariantList documents =
        Llama::yamlLoad(yamlText, QStringLiteral("<header data>"), state.mostNodes(yamlText.size()));
    if (documents.isEmpty())
        return;
    demand(documents.first().canConvert(QVariant::Map), "Header has bad structure");
    const Llama::MapNode header = Llama::Node(documents.first(), QStringLiteral("header")).toMap();
    hasOpmodes = HeaderSections::readOpmodes(header, state);
    hasElectrometers = HeaderSections::readElectrometers(header, state);
    variableSlots = HeaderSections::readVariables(header, state);
    if (fileKind == FileKind::records)
        noFlagsColumn = !columnRow.trimmed().endsWith("\tflags");
    else
        flagLevels = HeaderSections::readFlagLevels(header, state);
    spectra = HeaderSections::readSpectra(header, state, Log::Logger(QStringLiteral("new_line_reader")));
    HeaderSections::readInstrumentSettings(header, state);
}

std::size_t NewLineHeader::countFields() const
{
    const std::size_t heads = 3, n = electrometers;
    const std::size_t variables = variableSlots ? std::size_t(variableSlots->size()) : 0;
    switch (fileKind) {
    case FileKind::currents:
        demand(hasElectrometers, "Header does not describe electrometers");
        return heads + 3 * n;
    case FileKind::diagnostics:
        demand(hasElectrometers && variableSlots, "Header does not describe electrometers or diagnostics");
        return heads + n + variables + (flagLevels ? 1 : 0);
    case FileKind::spectra:
        demand(spectra.has_value(), "Header does not describe spectra");
        return heads + spectrumFieldCount();
    case FileKind::flags:
        return heads + 1;
    case FileKind::records:
        return heads + variables + 4 * n + (noFlagsColumn ? 0 : 1);
    }
    return heads;
}

std::size_t NewLineHeader::spectrumFieldCount() const
{
    std::size_t count = 0;
    for (const auto &info : spectra->infos)
        count += 2 * info->nativePoints().size() + std::size_t(spectra->inversionVariables.size());
    return count;
}

bool NewLineHeader::hasFlagsField() const
{
    switch (fileKind) {
    case FileKind::diagnostics:
        return flagLevels.has_value();
    case FileKind::flags:
        return true;
    case FileKind::records:
        return !noFlagsColumn;
    case FileKind::currents:
    case FileKind::spectra:
        break;
    }
    return false;
}

RowLayout NewLineHeader::layout(const FileReaderState &state) const
{
    RowLayout layout;
    layout.kind = int(fileKind);
    const bool isRecords = fileKind == FileKind::records;
    layout.groups.currents = isRecords || fileKind == FileKind::currents;
    layout.groups.voltages = layout.groups.variables = isRecords || fileKind == FileKind::diagnostics;
    layout.electrometers = electrometers;
    layout.variables = std::size_t(state.variableNames.size());
    layout.columns = {int(fileKind), int(fieldCount), hasFlagsField()};
    if (fileKind == FileKind::spectra) {
        layout.columns.push_back(spectra->infos.size());
        for (const auto &info : qAsConst(spectra->infos))
            layout.columns.push_back(int(info->nativePoints().size()));
        for (const auto variable : qAsConst(spectra->inversionVariables))
            layout.columns.push_back(int(variable));
    } else if (fileKind != FileKind::flags) {
        layout.columns.push_back(int(electrometers));
        if (fileKind != FileKind::currents && variableSlots)
            layout.columns.insert(layout.columns.end(), variableSlots->begin(), variableSlots->end());
    }
    return layout;
}
