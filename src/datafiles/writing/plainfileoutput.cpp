#include "datafiles/writing/plainfileoutput.h"

#include "datafiles/writing/plainfileoutput_fields.h"
#include "datafiles/writing/plainfileoutput_file.h"
#include "datafiles/writing/plainfileoutput_header.h"
#include "datafiles/writing/plainfileoutput_row.h"
#include "util/filenamepart.h"
#include "util/timeformat.h"

#include <QMutexLocker>
#include <QThread>

namespace Spectrometer {

namespace {

constexpr int mostLooks = 20; // at a file into which others write, for one row

/// A part of a path with time codes that holds none itself.
QString withoutCodes(QString part)
{
    return part.replace(QLatin1Char('%'), QLatin1String("%%"));
}

QString nameInPattern(const QString &name)
{
    return withoutCodes(fileNamePart(name));
}

} // namespace

struct PlainFileOutput::SpectraFile {
    std::unique_ptr<File> file;
    QVector<SpectMath::SpectrumInfoPointer> spectra; ///< the meaning of the columns
};

/// The files of one variant. A file that is switched off is absent.
struct PlainFileOutput::StdFiles {
    std::unique_ptr<File> records;
    std::unique_ptr<File> diagnostics;
    std::unique_ptr<File> currents;
    QMap<int, std::shared_ptr<SpectraFile>> spectra; ///< by operating mode
};

PlainFileOutput::PlainFileOutput(const Settings &settings, QObject *parent)
    : QObject(parent), m_logger(QStringLiteral("filewriter")), m_settings(settings),
      m_closing([this](const ClosingFiles::File &file, const QString &failure) { countClosed(file, failure); }),
      m_row(std::make_unique<RowText>())
{
    applySettings();
}

PlainFileOutput::~PlainFileOutput()
{
    closeFiles();
}

PlainFileOutput::Settings PlainFileOutput::settings() const
{
    QMutexLocker lock(&m_settingsMutex);
    return m_settings;
}

void PlainFileOutput::setSettings(const Settings &settings)
{
    QMutexLocker lock(&m_settingsMutex);
    m_settings = settings;
}

// ---- files

void PlainFileOutput::applySettings()
{
    Q_ASSERT(QObject::thread() == QThread::currentThread());
    closeFiles();
    m_applied = settings();
    m_files.clear();
    m_rawFile.reset();
    m_logFile.reset();
    if (!m_applied.metadata)
        return;

    const QVariantMap common = FileHeader::commonKeys(*m_applied.metadata);
    const auto plainFile = [this](const QString &pattern, const FileHeader::Lines &header) {
        auto file = makeFile(pattern.arg(withoutCodes(m_applied.folder), m_applied.fileNamePattern), header);
        file->matchHeader = false;
        return file;
    };
    if (m_applied.rawFile)
        m_rawFile = plainFile(QStringLiteral("%1/%2.rawdata"), FileHeader::rawHeader(common, *m_applied.metadata));
    if (m_applied.logFile)
        m_logFile = plainFile(QStringLiteral("%1/%2.log"), FileHeader::logHeader());
    for (auto it = m_applied.variants.cbegin(); it != m_applied.variants.cend(); ++it)
        makeVariantFiles(it.key(), it.value(), common);
}

std::unique_ptr<PlainFileOutput::File> PlainFileOutput::makeFile(const QString &pattern,
                                                                 const FileHeader::Lines &header)
{
    auto file = std::make_unique<File>(pattern, header, m_closing);
    file->warningCallback = [logger = m_logger](const QString &message) { logger.log(Log::Warning, message); };
    file->lossCallback = [this](const QString &name, const QString &message) { countLost(name, message); };
    file->syncAtClose = m_applied.syncFiles;
    file->refusalOfExisting = m_applied.refusalOfExisting;
    return file;
}

void PlainFileOutput::makeVariantFiles(int id, const VariantSettings &variant, const QVariantMap &commonKeys)
{
    const RecordMetadata &metadata = *m_applied.metadata;
    const QString stem =
        QStringLiteral("%1/%3-%2")
            .arg(withoutCodes(m_applied.folder), nameInPattern(variant.name), m_applied.fileNamePattern);
    QVariantMap keys = commonKeys;
    keys[QStringLiteral("dataproc variant")] = variant.name;

    const Log::Logger logger = m_logger;
    const auto dayFile = [&](const QString &suffix, const FileHeader::Lines &header) {
        auto file = makeFile(stem + suffix, header);
        file->passOver = m_applied.passOver;
        return file;
    };
    const auto recordsFile = [&](const QString &suffix, const FileHeader::Lines &header) {
        auto file = dayFile(suffix, header);
        file->messageCallback = [logger, name = variant.name](const QString &message) {
            logger.log(Log::Debug, QStringLiteral("Updated %1 records file:\n%2").arg(name, message));
        };
        return file;
    };
    auto files = std::make_shared<StdFiles>();
    if (variant.records)
        files->records = recordsFile(QStringLiteral(".records"), FileHeader::recordsHeader(keys, metadata));
    if (variant.diagnostics)
        files->diagnostics = recordsFile(QStringLiteral(".diagnostics"), FileHeader::diagnosticsHeader(keys, metadata));
    if (variant.currents)
        files->currents = recordsFile(QStringLiteral(".currents"), FileHeader::currentsHeader(keys, metadata));

    for (int mode = 0; variant.spectra && mode < metadata.opmodes.size(); ++mode) {
        const QString modeName = metadata.opmodes.at(mode).name;
        const auto infos = m_applied.spectra.value(modeName);
        if (infos.isEmpty())
            continue;
        auto spectraFile = std::make_shared<SpectraFile>();
        spectraFile->spectra = infos;
        spectraFile->file = dayFile(QStringLiteral("-%1.spectra").arg(nameInPattern(modeName)),
                                    FileHeader::spectraHeader(keys, modeName, infos, m_applied.inversionVars));
        spectraFile->file->messageCallback = [logger, name = variant.name, modeName](const QString &message) {
            logger.log(Log::Debug, QStringLiteral("Updated %1 %2 spectra file:\n%3").arg(name, modeName, message));
        };
        files->spectra.insert(mode, spectraFile);
    }
    m_files.insert(id, files);
}

PlainFileOutput::StdFiles *PlainFileOutput::filesOf(int dpVariantId) const
{
    return m_files.value(dpVariantId).get();
}

void PlainFileOutput::closeFiles()
{
    for (const auto &files : qAsConst(m_files)) {
        for (File *file : {files->records.get(), files->diagnostics.get(), files->currents.get()})
            if (file)
                file->close();
        for (const auto &spectraFile : qAsConst(files->spectra))
            spectraFile->file->close();
    }
    for (File *file : {m_rawFile.get(), m_logFile.get()})
        if (file)
            file->close();
    m_closing.finish();
}

// ---- rows

template<typename PutFields>
PlainFileOutput::RowResult PlainFileOutput::writeRow(File &file, RecordTime localTime, PutFields putFields,
                                                     const Flags *flags)
{
    bool written = false;
    try {
        if (!appendRow(file, localTime, putFields, flags)) {
            ++file.heldCount;
            return RowResult::Held;
        }
        file.flagIds.commit();
        ++file.rowCount;
        written = true;
        file.settle();
    } catch (const FileOutputError &error) {
        logLoss(file.wantedName(), error.message());
        if (!written)
            file.flagIds.rollBack();
    }
    ++(written ? m_counts.written : m_counts.lost);
    return written ? RowResult::Written : RowResult::Lost;
}

template<typename PutFields>
bool PlainFileOutput::appendRow(File &file, RecordTime localTime, PutFields putFields, const Flags *flags)
{
    for (int look = 1;; ++look) {
        try {
            file.openFor(localTime);
            m_row->clear();
            putFields(*m_row);
            if (file.passOver != PassOver::Nothing && isHeld(file, flags))
                return false;
            if (flags)
                putFlags(file, *flags);
            m_row->endLine();
            file.append(m_row->data(), m_row->size());
            return true;
        } catch (const OvertakenError &) {
            if (look == mostLooks)
                throw;
            file.flagIds.rollBack();
        }
    }
}

/// Whether the file holds the row whose fields are at hand. Counts it then.
bool PlainFileOutput::isHeld(File &file, const Flags *flags)
{
    QByteArrayList texts;
    for (const auto &flag : flags ? *flags : Flags())
        if (flag)
            texts << FlagIds::writtenText(flag->text);
    const auto held = file.heldRows.take(QByteArray::fromRawData(m_row->data(), int(m_row->size())), texts);
    m_counts.held += held != HeldRows::Held::No;
    m_counts.differing += held == HeldRows::Held::Different;
    return held != HeldRows::Held::No;
}

/// The last field, and the lines that define its flags before the row.
void PlainFileOutput::putFlags(File &file, const Flags &flags)
{
    QByteArray definitions, field;
    for (const auto &flag : flags)
        if (flag)
            field += '!' + file.flagIds.idOf(flag, &definitions);
    m_row->addField(field);
    m_row->putBefore(definitions);
}

RowFields PlainFileOutput::fields() const
{
    return {*m_applied.metadata, m_applied.timeFormat};
}

void PlainFileOutput::logLoss(const QString &fileName, const QString &message)
{
    if (m_lossMessages == LossMessages::FirstOfFile && m_toldFiles.contains(fileName))
        return;
    m_toldFiles.insert(fileName);
    m_logger.log(Log::Error, message);
}

void PlainFileOutput::countClosed(const ClosingFiles::File &file, const QString &failure)
{
    const qint64 all = file.rowCount + file.heldCount;
    if (failure.isNull()) {
        m_rowsOfClosedFiles[file.name] += file.rowCount;
        m_heldOfClosedFiles[file.name] += file.heldCount;
    } else if (all > 0) {
        m_counts.written -= file.rowCount;
        m_counts.held -= file.heldCount;
        m_counts.lost += all;
        m_logger.log(Log::Error, failure);
    }
}

void PlainFileOutput::countLost(const QString &fileName, const QString &message)
{
    m_closing.finish(); // this file's may wait there
    const qint64 written = m_rowsOfClosedFiles.take(fileName), held = m_heldOfClosedFiles.take(fileName);
    m_counts.written -= written;
    m_counts.held -= held;
    m_counts.lost += written + held;
    if (written + held > 0)
        logLoss(fileName, message);
}

// ---- rows made ahead

PlainFileOutput::MadeRows::MadeRows()
    : spectra(std::make_unique<RowText>()), record(std::make_unique<RowText>()), currents(std::make_unique<RowText>()),
      diagnostics(std::make_unique<RowText>())
{
}

PlainFileOutput::MadeRows::~MadeRows() = default;
PlainFileOutput::MadeRows::MadeRows(MadeRows &&) noexcept = default;
PlainFileOutput::MadeRows &PlainFileOutput::MadeRows::operator=(MadeRows &&) noexcept = default;

void PlainFileOutput::makeRows(const Record &record, const SpectMath::SpectrumPointerList &spectra,
                               MadeRows *rows) const
{
    for (RowText *row : {rows->spectra.get(), rows->record.get(), rows->currents.get(), rows->diagnostics.get()})
        row->clear();
    const StdFiles *const files = filesOf(record.dpVariantId);
    if (!files)
        return;
    const RowFields fields = this->fields();
    if (const auto file = files->spectra.value(record.opmode))
        fields.putSpectra(*rows->spectra, record, spectra, file->spectra, m_applied.inversionVars);
    if (files->records)
        fields.putRecord(*rows->record, record);
    if (files->currents)
        fields.putCurrents(*rows->currents, record);
    if (files->diagnostics)
        fields.putDiagnostics(*rows->diagnostics, record);
}

void PlainFileOutput::writeRows(const Record &record, const MadeRows &rows)
{
    const auto putFields = [](const std::unique_ptr<RowText> &fields) {
        return [&fields](RowText &row) { row.putFields(*fields); };
    };
    writeSpectraRow(record, record.spectraProvisional,
                    [&rows](RowText &row, const auto &) { row.putFields(*rows.spectra); });
    writeRecordRow(record, putFields(rows.record));
    writeCurrentsRow(record, putFields(rows.currents));
    writeDiagnosticsRow(record, putFields(rows.diagnostics));
}

// ---- each kind of row

template<typename PutFields>
PlainFileOutput::RowResult PlainFileOutput::writeSpectraRow(const RecordHead &head, bool provisional,
                                                            PutFields putFields)
{
    const StdFiles *const files = filesOf(head.dpVariantId);
    const auto spectraFile = files ? files->spectra.value(head.opmode) : nullptr;
    if (!spectraFile || provisional)
        return RowResult::Skipped;
    return writeRow(*spectraFile->file, localTime(head.beginTime, head.beginUtcOffset),
                    [&](RowText &row) { putFields(row, spectraFile->spectra); });
}

template<typename PutFields>
PlainFileOutput::RowResult PlainFileOutput::writeRecordRow(const FullRecord &record, PutFields putFields)
{
    const StdFiles *const files = filesOf(record.dpVariantId);
    if (!files || !files->records || record.provisional)
        return RowResult::Skipped;
    return writeRow(*files->records, localTime(record.beginTime, record.beginUtcOffset), putFields, &record.flags);
}

template<typename PutFields>
PlainFileOutput::RowResult PlainFileOutput::writeCurrentsRow(const FullRecord &record, PutFields putFields)
{
    const StdFiles *const files = filesOf(record.dpVariantId);
    if (!files || !files->currents || record.provisional)
        return RowResult::Skipped;
    return writeRow(*files->currents, localTime(record.beginTime, record.beginUtcOffset), putFields);
}

template<typename PutFields>
PlainFileOutput::RowResult PlainFileOutput::writeDiagnosticsRow(const FullRecord &record, PutFields putFields)
{
    // Provisional records are written here, unlike everywhere else.
    const StdFiles *const files = filesOf(record.dpVariantId);
    if (!files || !files->diagnostics)
        return RowResult::Skipped;
    return writeRow(*files->diagnostics, localTime(record.beginTime, record.beginUtcOffset), putFields);
}

PlainFileOutput::RowResult PlainFileOutput::writeRecordRow(const FullRecord &record)
{
    return writeRecordRow(record, [&](RowText &row) { fields().putRecord(row, record); });
}

PlainFileOutput::RowResult PlainFileOutput::writeDiagnosticsRow(const FullRecord &record)
{
    return writeDiagnosticsRow(record, [&](RowText &row) { fields().putDiagnostics(row, record); });
}

PlainFileOutput::RowResult PlainFileOutput::writeCurrentsRow(const FullRecord &record)
{
    return writeCurrentsRow(record, [&](RowText &row) { fields().putCurrents(row, record); });
}

PlainFileOutput::RowResult PlainFileOutput::writeSpectraRow(const RecordHead &head,
                                                            const SpectMath::SpectrumPointerList &spectra,
                                                            bool provisional)
{
    return writeSpectraRow(head, provisional, [&](RowText &row, const auto &infos) {
        fields().putSpectra(row, head, spectra, infos, m_applied.inversionVars);
    });
}

PlainFileOutput::RowResult PlainFileOutput::writeSpectraRow(const Record &record)
{
    return writeSpectraRow(record, record.spectra, record.spectraProvisional);
}

// ---- slots

void PlainFileOutput::rawRecord(RawRecordPointer record)
{
    Q_ASSERT(QObject::thread() == QThread::currentThread());
    if (m_rawFile && record)
        writeRow(*m_rawFile, record->instrumentTime,
                 [&](RowText &row) { addRawFields(row, *m_applied.metadata, *record); });
}

void PlainFileOutput::fullRecord(FullRecordPointer record)
{
    if (QObject::thread() != QThread::currentThread())
        m_logger.log(Log::Error, QStringLiteral("FileOutput::fullRecord not called from correct thread"));
    if (!record || record->interim || record->provisional)
        return;
    writeRecordRow(*record);
    writeDiagnosticsRow(*record);
    writeCurrentsRow(*record);
}

void PlainFileOutput::spectra(SpectMath::SpectrumRecordPointer record)
{
    Q_ASSERT(QObject::thread() == QThread::currentThread());
    if (record)
        writeSpectraRow(*record, record->spectra, record->provisional);
}

void PlainFileOutput::addLogEntry(Log::Entry msg)
{
    Q_ASSERT(QObject::thread() == QThread::currentThread());
    if (!m_logFile)
        return;
    const RecordTime time = recordTimeFromTicks(saturatedMultiply(msg.time.toMSecsSinceEpoch(), ticksPerMillisecond));
    writeRow(*m_logFile, localTime(time, localUtcOffset(time)), [&](RowText &row) {
        QString message = msg.message;
        message.replace(QLatin1Char('\n'), QLatin1String("\n\t"));
        row.putBytes(QStringLiteral("%1\t%2\t%3\t%4")
                         .arg(msg.time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")), Log::levelName(msg.level),
                              msg.source, message)
                         .toUtf8());
    });
}

void PlainFileOutput::stop()
{
    Q_ASSERT(QObject::thread() == QThread::currentThread());
    Q_EMIT stopped();
}

} // namespace Spectrometer
