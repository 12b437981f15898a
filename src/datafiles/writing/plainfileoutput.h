#pragma once

#include "datafiles/writing/closingfiles.h"
#include "datafiles/writing/heldrows.h"
#include "log/logger.h"
#include "records/rawrecord.h"
#include "records/record.h"
#include "records/recordmetadata.h"
#include "spectra/spectrum.h"

#include <QHash>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace Spectrometer {

class OutputFile;
class RowFields;
class RowText;

/// Writes records to day files of tab-separated text, each opened with a header that describes it. A file that already
/// ends in a block of the same header is continued. Every row is in the file when its writer returns; one that could
/// not be written is logged under "filewriter", the file ends where it ended before, and the output goes on. What is
/// cut off at the end of a file that is continued goes into "NAME.torn" beside it, which is logged. A file that others
/// remove, rename, replace or cut while it is written is told, all rows that were written to it count as lost, and the
/// next row opens it anew.
///
/// Lives on one thread; settings() and setSettings() may be called from any.
class PlainFileOutput : public QObject {
    Q_OBJECT
public:
    using File = OutputFile;
    struct SpectraFile;
    struct StdFiles;

    struct VariantSettings {
        QString name;
        bool diagnostics = false;
        bool currents = false;
        bool records = true;
        bool spectra = true;
    };

    using PassOver = Spectrometer::PassOver;

    struct Settings {
        QString folder;                       ///< made when the first row comes, if it doesn't exist
        QString fileNamePattern;              ///< time codes, such as "%Y%m%d", expanded by the row's local time
        QString timeFormat;                   ///< of the times in rows, such as "%Y-%m-%d %H:%M:%s"
        QHash<int, VariantSettings> variants; ///< by RecordHead::dpVariantId
        bool rawFile = false;
        bool logFile = false;
        bool inversionVars = false;                     ///< the residuals of the currents, in spectra files
        std::shared_ptr<const RecordMetadata> metadata; ///< without it nothing is written
        QMap<QString, QVector<SpectMath::SpectrumInfoPointer>> spectra; ///< to write, by the name of the operating mode
        QString remark;                                                 ///< free
        PassOver passOver = PassOver::Nothing;
        /// Unless it is empty: no file that exists is continued. The rows of such a one are lost, with these words, in
        /// which the name stands for %1.
        QString refusalOfExisting;
        bool syncFiles = false; ///< a file's rows are on the disk when it is closed; its name may not be
    };

    /// The fate of a row: `Skipped` is one that the settings or the record don't ask for, `Held` one that the file
    /// holds.
    enum class RowResult { Written, Skipped, Held, Lost };
    struct RowCounts {
        qint64 written = 0;
        qint64 lost = 0;
        qint64 held = 0;      ///< passed over
        qint64 differing = 0; ///< of these, which the file holds with other values or flags
    };

    explicit PlainFileOutput(const Settings &settings, QObject *parent = nullptr);
    ~PlainFileOutput() override;

    Settings settings() const;
    /// Takes effect with the next applySettings().
    void setSettings(const Settings &settings);

    /// The fields of one record's rows, made ahead on any thread.
    struct MadeRows {
        MadeRows();
        ~MadeRows();
        MadeRows(MadeRows &&) noexcept;
        MadeRows &operator=(MadeRows &&) noexcept;

        std::unique_ptr<RowText> spectra, record, currents, diagnostics;
    };
    /// Makes the rows for which there are files, in the memory of earlier ones. Any number of threads may do this at a
    /// time, while no other function of this object is at work.
    void makeRows(const Record &record, const SpectMath::SpectrumPointerList &spectra, MadeRows *rows) const;
    /// Writes the record's rows of all kinds.
    void writeRows(const Record &record, const MadeRows &rows);

    // ---- single rows, for direct callers. Provisional records are skipped, except for diagnostics.
    RowResult writeRecordRow(const FullRecord &record);
    RowResult writeDiagnosticsRow(const FullRecord &record);
    RowResult writeCurrentsRow(const FullRecord &record);
    /// `provisional` tells whether these spectra are.
    RowResult writeSpectraRow(const RecordHead &head, const SpectMath::SpectrumPointerList &spectra, bool provisional);
    /// The record's own spectra.
    RowResult writeSpectraRow(const Record &record);

    /// Which lost rows are logged: each, or the first of each file, for a caller that tells their number in the end.
    enum class LossMessages { EachRow, FirstOfFile };
    void setLossMessages(LossMessages messages) { m_lossMessages = messages; }
    /// The rows of all kinds since the object was made.
    RowCounts counts() const { return m_counts; }
    /// Closes and unlocks all files; the next rows open them again. Where a closing fails, which is logged, all rows
    /// since the opening count as lost, those that were passed over, too.
    void closeFiles();
    /// The rows that were written to each file that was closed, by its path.
    const QHash<QString, qint64> &rowsOfClosedFiles() const { return m_rowsOfClosedFiles; }

public Q_SLOTS:
    void rawRecord(Spectrometer::RawRecordPointer record);
    /// The records, diagnostics and currents rows of a final record.
    void fullRecord(Spectrometer::FullRecordPointer record);
    void spectra(SpectMath::SpectrumRecordPointer record);
    void addLogEntry(Log::Entry msg);
    /// Drops all files and prepares those that the settings ask for.
    void applySettings();
    void stop();

Q_SIGNALS:
    void stopped();

private:
    StdFiles *filesOf(int dpVariantId) const;
    void makeVariantFiles(int id, const VariantSettings &variant, const QVariantMap &commonKeys);
    using Flags = std::vector<std::shared_ptr<RecordFlag>>;
    /// Opens the file for that local time and appends the row of the fields that `putFields(row)` puts, and one with
    /// these flags if there is a list.
    template<typename PutFields>
    RowResult writeRow(File &file, RecordTime localTime, PutFields putFields, const Flags *flags = nullptr);
    /// The same without counting. False if the file holds the row. Throws FileOutputError.
    template<typename PutFields>
    bool appendRow(File &file, RecordTime localTime, PutFields putFields, const Flags *flags);
    bool isHeld(File &file, const Flags *flags);
    void putFlags(File &file, const Flags &flags);
    template<typename PutFields>
    RowResult writeSpectraRow(const RecordHead &head, bool provisional, PutFields putFields);
    template<typename PutFields>
    RowResult writeRecordRow(const FullRecord &record, PutFields putFields);
    template<typename PutFields>
    RowResult writeCurrentsRow(const FullRecord &record, PutFields putFields);
    template<typename PutFields>
    RowResult writeDiagnosticsRow(const FullRecord &record, PutFields putFields);
    RowFields fields() const;
    void logLoss(const QString &fileName, const QString &message);
    void countLost(const QString &fileName, const QString &message);
    void countClosed(const ClosingFiles::File &file, const QString &failure);
    std::unique_ptr<File> makeFile(const QString &pattern, const QList<QByteArray> &header);

    Log::Logger m_logger;
    mutable QMutex m_settingsMutex; ///< guards m_settings
    Settings m_settings;
    Settings m_applied;     ///< those that the files were made from
    ClosingFiles m_closing; ///< of all that follow
    QHash<int, std::shared_ptr<StdFiles>> m_files;
    std::unique_ptr<File> m_rawFile;
    std::unique_ptr<File> m_logFile;
    std::unique_ptr<RowText> m_row; ///< one buffer for all rows
    RowCounts m_counts;
    QHash<QString, qint64> m_rowsOfClosedFiles;
    QHash<QString, qint64> m_heldOfClosedFiles;
    LossMessages m_lossMessages = LossMessages::EachRow;
    QSet<QString> m_toldFiles; ///< of which a loss was logged
};

} // namespace Spectrometer
