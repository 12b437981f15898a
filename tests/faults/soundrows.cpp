#include "faults/soundrows.h"

#include "datafiles/reading/filereadertask.h"
#include "log/logger.h"
#include "util/timeparse.h"

#include <QDir>

#include <cstring>
#include <mutex>

namespace Faults {

namespace {

enum Part { Head = 1, Currents = 2, Voltages = 4, Variables = 8, Spectra = 16, Flags = 32 };

int partsOf(const QString &name)
{
    static const std::pair<const char *, int> parts[] = {{".records", Currents | Voltages | Variables | Flags},
                                                         {".currents", Currents},
                                                         {".diagnostics", Voltages | Variables},
                                                         {".flags", Flags},
                                                         {".spectra", Spectra},
                                                         {".sig", Currents},
                                                         {".log", Variables},
                                                         {".nds", Spectra}};
    for (const auto &[suffix, of] : parts)
        if (name.endsWith(QLatin1String(suffix)))
            return Head | of;
    return 0;
}

bool opensHeader(const QByteArray &line)
{
    return line.startsWith("# Quilvane") || line.startsWith("#Only records") || line.startsWith("#All measured");
}

qint64 timeOf(const QByteArray &text)
{
    RecordTime time{};
    std::int64_t offset = 0;
    const QByteArray trimmed = text.trimmed();
    parseTime(trimmed.constData(), trimmed.size(), &time, &offset);
    return ticksOf(time);
}

/// Of a sound line.
qint64 beginOf(const QByteArray &line)
{
    const QList<QByteArray> fields = line.split(line.contains('\t') ? '\t' : ',');
    return fields.size() < 2 ? 0 : timeOf(fields[0]);
}

bool isSame(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (std::isnan(a) && std::isnan(b));
}

/// The wider one may have slots that files of others have added; they hold nothing.
template<typename Values>
bool areSame(const Values &expected, const Values &found)
{
    if (found.size() < expected.size())
        return false;
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (!isSame(expected[i], found[i]))
            return false;
    return true;
}

bool areSame(const SpectMath::Spectrum &expected, const SpectMath::Spectrum &found)
{
    const auto &a = expected.covariances.data(), &b = found.covariances.data();
    return expected.info->name == found.info->name && areSame(expected.info->radii, found.info->radii) &&
           areSame(expected.info->mobilities, found.info->mobilities) && expected.status == found.status &&
           expected.concentrations.size() == found.concentrations.size() &&
           areSame(expected.concentrations, found.concentrations) && a.size() == b.size() && areSame(a, b) &&
           isSame(expected.currentRmsError, found.currentRmsError) &&
           isSame(expected.currentMeanAbsError, found.currentMeanAbsError) &&
           isSame(expected.currentTotalError, found.currentTotalError);
}

} // namespace

std::shared_ptr<FileReader> readFiles(const QString &folder, const QStringList &files, int threads,
                                      std::size_t chunkBytes, QString *complaints)
{
    // Complaints of two threads come in the order of one.
    QStringList told;
    std::mutex mutex;
    Log::RootLogger::instance().setFilter([&](const Log::Entry &entry) {
        const std::lock_guard<std::mutex> lock(mutex);
        if (entry.level <= Log::Warning)
            told << entry.message;
        return false;
    });
    auto reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    FileReaderSettings settings;
    settings.files = files;
    settings.folder = folder;
    settings.threads = threads;
    settings.chunkBytes = chunkBytes;
    FileReaderTask(reader, settings).run();
    if (complaints)
        *complaints = told.join('\n');
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    return reader;
}

SoundRows::SoundRows(const QString &folder)
{
    for (const QString &name : QDir(folder).entryList(QDir::Files, QDir::Name)) {
        QFile file(QDir(folder).filePath(name));
        if (partsOf(name) == 0 || !file.open(QIODevice::ReadOnly))
            continue;
        m_files.emplace_back(name, file.readAll());
        SoundFile sound{readFiles(folder, {name}, 1, 0, nullptr), {}};
        QHash<QByteArray, int> known;
        QByteArray header;
        bool inHeader = false;
        for (const DamagedFile::Line &line : m_files.back().lines) {
            if (opensHeader(line.text)) {
                header.clear();
                inHeader = true;
            }
            if (inHeader)
                header += line.text;
            inHeader &= line.text.startsWith('#');
            if (!inHeader && !known.contains(header))
                known[header] = known.size();
            sound.headerOf.push_back(known.value(header, DamagedFile::changed));
        }
        m_sound.push_back(std::move(sound));
    }
}

QString SoundRows::faultOf(const std::vector<DamagedFile> &files, const FileReader &reader)
{
    m_rows.clear();
    m_changed.clear();
    m_times.clear();
    m_found.clear();
    m_headersWhole = true;
    m_compared = 0;
    for (std::size_t i = 0; i < files.size(); ++i)
        walk(int(i), files[i]);
    for (const auto &record : reader.datastore()->records()) {
        const qint64 time = ticksOf(record->beginTime);
        if (m_found.contains(time))
            return QString("There are two records of %1").arg(time);
        if (!m_times.contains(time))
            return QString("No row is of the record's time, %1").arg(time);
        m_found[time] = record.get();
    }
    for (const Row &row : m_rows) {
        const QString fault = faultOf(row, reader);
        if (!fault.isEmpty())
            return QString("%1, the row of %2: %3").arg(m_files[std::size_t(row.file)].name).arg(row.time).arg(fault);
        ++m_compared;
    }
    return {};
}

void SoundRows::walk(int file, const DamagedFile &damaged)
{
    const std::vector<int> &headerOf = m_sound[std::size_t(file)].headerOf;
    QByteArrayList headers, soundHeaders;
    for (const auto &line : m_files[std::size_t(file)].lines)
        if (isHeaderLine(line.text))
            soundHeaders << line.text;
    const bool electrometersKnown = m_headersWhole;
    bool inHeader = false;
    int next = DamagedFile::changed;    // the header's line that is due, if it is untouched until here
    int current = DamagedFile::changed; // the header that holds
    QHash<QByteArray, QString> flags;   // null: not known
    for (const DamagedFile::Line &line : damaged.lines) {
        const bool isSound = line.origin != DamagedFile::changed;
        if (isHeaderLine(line.text))
            headers << line.text;
        if (opensHeader(line.text)) {
            inHeader = true;
            next = isSound ? line.origin + 1 : DamagedFile::changed;
            current = DamagedFile::changed;
            flags.clear();
        } else if (inHeader) {
            next = isSound && line.origin == next ? next + 1 : DamagedFile::changed;
            if (line.text.startsWith('#'))
                continue;
            inHeader = false;
            if (next != DamagedFile::changed)
                current = headerOf[std::size_t(line.origin)];
        } else if (line.text.startsWith("# flag ")) {
            const int colon = line.text.indexOf(':');
            flags[line.text.mid(7, colon - 7).trimmed()] =
                isSound ? QString::fromUtf8(line.text.mid(colon + 1).trimmed()) : QString();
        } else if (!isSound || isHeaderLine(line.text) || current != headerOf[std::size_t(line.origin)]) {
            noteChanged(file, line.text);
        } else {
            Row row{file, beginOf(line.text), {}, true, electrometersKnown};
            m_times.insert(row.time);
            if (partsOf(damaged.name) & Flags)
                for (const QByteArray &id : line.text.mid(line.text.lastIndexOf('\t') + 1).trimmed().split('!')) {
                    if (id.isEmpty())
                        continue;
                    row.flags << flags.value(id);
                    row.flagsKnown &= !row.flags.last().isNull();
                }
            m_rows.push_back(row);
        }
    }
    m_headersWhole &= headers == soundHeaders;
}

/// Any reader may take it for a row of any of its times.
void SoundRows::noteChanged(int file, QByteArray line)
{
    line.replace("\r", ""); // wherever it stands, it counts for nothing
    for (const char separator : {'\t', ','})
        for (const QByteArray &field : line.split(separator).mid(0, 2)) {
            const qint64 time = timeOf(field);
            m_times.insert(time);
            for (int part = Head; part <= Flags; part *= 2)
                if (part & partsOf(m_files[std::size_t(file)].name))
                    m_changed[part].insert(time);
        }
}

const Record *SoundRows::soundRecord(int file, qint64 time) const
{
    const auto &records = m_sound[std::size_t(file)].reader->datastore()->records();
    for (const auto &record : records)
        if (ticksOf(record->beginTime) == time)
            return record.get();
    return nullptr;
}

QString SoundRows::faultOf(const Row &row, const FileReader &reader) const
{
    const SoundFile &sound = m_sound[std::size_t(row.file)];
    const QString &name = m_files[std::size_t(row.file)].name;
    const Record *const expected = soundRecord(row.file, row.time);
    if (!expected)
        return "the sound folder lacks it";
    const int electrometers = Currents | Voltages | Variables;
    const int parts = partsOf(name);
    if ((parts & electrometers) && !row.electrometersKnown && !m_found.contains(row.time))
        return {};
    const Record *const found = m_found.value(row.time);
    if (!found)
        return "there is no record";
    const auto isDue = [&](Part part) {
        const auto changed = m_changed.find(part);
        return (parts & part) && (row.electrometersKnown || !(part == Head || (parts & electrometers))) &&
               (changed == m_changed.end() || !changed->second.contains(row.time));
    };
    if (isDue(Head) &&
        (expected->endTime != found->endTime || expected->beginUtcOffset != found->beginUtcOffset ||
         expected->endUtcOffset != found->endUtcOffset ||
         sound.reader->metadata()->opmodeName(expected->opmode) != reader.metadata()->opmodeName(found->opmode)))
        return "another head";
    if (isDue(Currents) && !(areSame(expected->currents, found->currents) &&
                             areSame(expected->currentVariances, found->currentVariances) &&
                             areSame(expected->rawCurrents, found->rawCurrents)))
        return "other currents";
    if (isDue(Voltages) && !areSame(expected->voltages, found->voltages))
        return "other voltages";
    if (isDue(Variables))
        for (const auto &variable : sound.reader->metadata()->variables) {
            const auto other = reader.metadata()->variable(variable->name);
            if (!other || !isSame(expected->variables[std::size_t(variable->valueIndex)],
                                  found->variables[std::size_t(other->valueIndex)]))
                return "another " + variable->name;
        }
    if (isDue(Spectra))
        for (const auto &spectrum : expected->spectra)
            if (std::none_of(found->spectra.begin(), found->spectra.end(),
                             [&](const auto &other) { return areSame(*spectrum, *other); }))
                return "another spectrum " + spectrum->info->name;
    if (isDue(Flags) && row.flagsKnown)
        for (const QString &text : row.flags)
            if (std::none_of(found->flags.begin(), found->flags.end(),
                             [&](const auto &flag) { return flag->text == text; }))
                return "the flag is missing: " + text;
    return {};
}

} // namespace Faults
