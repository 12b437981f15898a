#pragma once

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/filereaderstate.h"
#include "datafiles/parsing/headersections.h"
#include "datafiles/parsing/linereader.h"

/// Understands one block of a current-format day file. The columns are known from the header alone and read by
/// position.
class NewLineReader : public LineReader {
public:
    /// Reads the header: its magic line, the YAML text and the column row, of which only the ending matters. The state
    /// must outlive the reader. Throws FileReaderError.
    NewLineReader(const QByteArray &firstLine, const QByteArray &columnRow, const QByteArray &yamlText,
                  FileReaderState *state);

    bool readRow(QByteArray line) override;

private:
    enum class FileKind { currents, diagnostics, spectra, flags, records };
    static FileKind kindOf(const QByteArray &firstLine);

    void readSections(const QByteArray &columnRow, const QByteArray &yamlText);
    std::size_t countFields() const;
    std::size_t spectrumFieldCount() const;

    bool complain(const QString &text);
    bool readFlagDefinition(TextView text);
    int addOpmode(TextView name);
    bool readValues(const std::shared_ptr<Record> &record);
    void readElectrometers(FieldCursor &fields, Record &record) const;
    void readVoltages(FieldCursor &fields, Record &record) const;
    bool readVariables(FieldCursor &fields, Record &record);
    bool readFlagLevels(TextView levels, Record &record);
    bool readFlagIds(TextView ids, Record &record);
    bool readSpectra(FieldCursor &fields, const std::shared_ptr<Record> &record);
    std::shared_ptr<SpectMath::Spectrum> readSpectrum(FieldCursor &fields,
                                                      const SpectMath::SpectrumInfoPointer &info) const;

    Log::Logger m_logger;
    FileReaderState *m_state;
    FileKind m_fileKind;
    std::size_t m_fieldCount = 0;
    std::size_t m_electrometers = 0; ///< of the whole read at the time of this header
    bool m_hasOpmodes = false;
    bool m_hasElectrometers = false;
    bool m_noFlagsColumn = false;
    std::optional<QVector<int>> m_variableSlots;
    std::optional<HeaderSections::Spectra> m_spectra;
    std::optional<QVector<HeaderSections::FlagLevel>> m_flagLevels;
    std::size_t m_spectrumBytes = 0; ///< of one row; 0 before their series are counted
    QHash<QByteArray, std::shared_ptr<Spectrometer::RecordFlag>> m_flagIds; ///< as defined in this block
    FieldSplitter m_fields;
    QByteArray m_lastMode; ///< the mode text of the last new record, and its index
    int m_lastModeIndex = -1;
};
