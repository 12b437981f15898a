#pragma once

#include "dataexport/delimitedline.h"
#include "dataexport/exportdata.h"
#include "dataexport/exportsetup.h"
#include "dataexport/fieldsource.h"
#include "records/record.h"

#include <QByteArray>
#include <QHash>

#include <memory>
#include <vector>

namespace DataExport {

/// The text of a table: its head and the line of each record. Knows no files.
class ExportTable {
public:
    ExportTable(const ExportSetup &setup, const ExportData &data);
    ~ExportTable();

    /// What was wrong with the fields and cost them columns, in words.
    const QStringList &errors() const { return m_errors; }
    /// Spectra are named, and none of them is known.
    bool lacksSpectra() const { return m_namesSpectra && m_usedSpectra.empty(); }
    /// Comment lines, if they are asked for, and the line of titles.
    QByteArray head() const;
    /// Whether the record's mode is one of those to export.
    bool takes(const Record &record) const;
    /// Of times, mode and fields.
    std::size_t columns() const;
    /// An empty line with the table's separator.
    DelimitedLine emptyLine() const { return DelimitedLine(m_setup.general.separator); }
    /// Appends the record's line, with its line feed. Any number of threads may do this at a time.
    void addLine(const Record &record, DelimitedLine &line) const;

private:
    struct NamedSpectrum {
        SpectMath::SpectrumInfoPointer info;
        QString label;
    };

    void add(const ConcentrationField &field);
    void noteDecades(const ConcentrationField &field) const;
    void add(const SpectrumField &field);
    void add(const VariableField &field);
    void add(const ElectrometerField &field);
    template<typename Source, typename SpectraField>
    void addSpectra(const SpectraField &field);
    void addSource(std::unique_ptr<FieldSource> source);
    void leaveOutField();
    QByteArray commentLines() const;
    QString timeText(RecordTime time, std::int64_t utcOffset) const;
    bool takesMode(const QString &mode) const;

    ExportSetup m_setup;
    ExportData m_data;
    QHash<QString, NamedSpectrum> m_spectra;  ///< all, by hash
    std::vector<NamedSpectrum> m_usedSpectra; ///< in the order of their first columns
    bool m_namesSpectra = false;
    std::vector<std::unique_ptr<FieldSource>> m_sources;
    std::vector<bool> m_takenModes; ///< by the mode's index, that of unknown modes behind them
    std::size_t m_columns = 0;
    QStringList m_errors;
};

} // namespace DataExport
