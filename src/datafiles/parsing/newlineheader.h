#pragma once

#include "datafiles/parsing/flagsection.h"
#include "datafiles/parsing/rowlayout.h"
#include "datafiles/parsing/spectrasection.h"

/// The header of a current-format block: the kind of its rows, and their columns.
class NewLineHeader {
public:
    enum class FileKind { currents, diagnostics, spectra, flags, records };

    /// Reads the magic line, the YAML text and the column row, of which only the ending matters. Adds its news to the
    /// state of the read. Throws FileReaderError; additions before a fault stay.
    NewLineHeader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                  FileReaderState &state);

    /// The layout of its rows.
    RowLayout layout(const FileReaderState &state) const;
    /// Whether a row ends in flags, as levels or as ids.
    bool hasFlagsField() const;

    FileKind fileKind;
    std::size_t fieldCount = 0;    ///< of a row
    std::size_t electrometers = 0; ///< of the whole read at the time of this header
    bool hasOpmodes = false;
    bool hasElectrometers = false;
    bool noFlagsColumn = false;                ///< of a records file
    std::optional<QVector<int>> variableSlots; ///< for each column of a variable
    std::optional<HeaderSections::Spectra> spectra;
    std::optional<QVector<HeaderSections::FlagLevel>> flagLevels;

private:
    void readSections(const QByteArray &columnRow, const QByteArray &yamlText, FileReaderState &state);
    std::size_t countFields() const;
    std::size_t spectrumFieldCount() const;
};
