// Two processes append to the same day file, while a third writes into it without locks, or takes it away, and a fourth
// reads it; or two comment the same day.

#include "faults/lane.h"

#include "datafiles/reading/commentfile.h"
#include "datafiles/reading/filereadertask.h"
#include "datafiles/writing/commentwriting.h"
#include "datafiles/writing/plainfileoutput.h"
#include "log/logger.h"
#include "support/files.h"
#include "support/instrument.h"
#include "util/filereplacement.h"
#include "util/timeformat.h"
#include "util/timeparse.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Faults;

constexpr int channels = 8;
constexpr int writers = 2;
constexpr qint64 firstSecond = 1568246400;
constexpr int usWritten = 150'000; ///< that each trial takes
const QString fileName = QStringLiteral("20190912-block.records");

/// Row `number` of a writer; the two never write the same. All of its values follow from its time.
Record rowOf(int writer, int number)
{
    const qint64 second = qint64(number) * writers + writer;
    Record record;
    record.beginTime = recordTimeFromTicks((firstSecond + second) * ticksPerSecond);
    record.endTime = record.beginTime + Ticks(ticksPerSecond);
    record.opmode = 0;
    record.dpVariantId = 0;
    for (auto *values : {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages}) {
        values->resize(channels);
        std::fill(values->begin(), values->end(), double(second % 86400));
    }
    return record;
}

Spectrometer::PlainFileOutput::Settings settingsOf(const QString &folder)
{
    Spectrometer::PlainFileOutput::Settings settings;
    settings.folder = folder;
    settings.fileNamePattern = "%Y%m%d";
    settings.timeFormat = "%Y-%m-%d %H:%M:%s";
    settings.variants[0].name = "block";
    QStringList names;
    for (int i = 0; i < channels; ++i)
        names << QString("e%1").arg(i);
    const auto metadata = testMetadata({"ions"}, names);
    metadata->electrometerGroups["all"] = {0, channels};
    settings.metadata = metadata;
    return settings;
}

/// The file in which a writer notes what was said written, a line for each row.
int notesOf(int writer, const QString &folder)
{
    return ::open(qPrintable(folder + QString("/../written-%1").arg(writer)), O_CREAT | O_WRONLY | O_APPEND, 0600);
}

qint64 microseconds()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void note(int notes, const QByteArray &text)
{
    if (::write(notes, text.constData(), std::size_t(text.size())) != text.size())
        ::_exit(1);
}

QByteArray noteOf(const Record &row)
{
    return QByteArray::number(qint64(ticksOf(row.beginTime))) + '\n';
}

QByteArray lineOf(const Record &row)
{
    QByteArray line = timeToString(row.beginTime).toUtf8() + '\t' + timeToString(row.endTime).toUtf8() + "\tions";
    for (int i = 0; i < 4 * channels; ++i)
        line += '\t' + QByteArray::number(row.currents[0]);
    return line + "\t\n";
}

/// Writes one row after the other, opening the file anew for some at a time. Ends when it is killed.
[[noreturn]] void writeRows(int writer, const QString &folder, unsigned seed, int rowsOfOpening)
{
    std::minstd_rand random(seed);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    const int notes = notesOf(writer, folder);
    for (int number = 0;;) {
        Spectrometer::PlainFileOutput output(settingsOf(folder));
        for (int i = 0; i < rowsOfOpening; ++i) {
            const Record row = rowOf(writer, number);
            if (output.writeRecordRow(row) != Spectrometer::PlainFileOutput::RowResult::Written) {
                ::usleep(random() % 300);
                break;
            }
            note(notes, noteOf(row));
            ++number;
        }
        output.closeFiles();
        ::usleep(random() % 200);
    }
}

/// A stranger: lines and headers of its own, without any lock, one of four in two pieces.
[[noreturn]] void writeStrangely(const QString &path, unsigned seed)
{
    std::minstd_rand random(seed);
    for (;;) {
        const int file = ::open(qPrintable(path), O_WRONLY | O_APPEND);
        QByteArray line = "stranger " + QByteArray(int(random() % 300), 's') + '\n';
        if (random() % 10 == 0)
            line = "# Quilvane records\n# total electrometers: 3\n# electrometer groups: {a: [0, 2]}\n"
                   "# electrometer names: [a, b, c]\nbegin_time\tflags\n";
        const int first = random() % 4 == 0 ? int(random()) % line.size() : line.size();
        for (const QByteArray &piece : {line.left(first), line.mid(first)})
            if (file >= 0 && ::write(file, piece.constData(), std::size_t(piece.size())) < 0)
                ::_exit(1);
        ::close(file);
        ::usleep(random() % 4000);
    }
}

/// The planted fault: rows in two pieces, without a lock.
[[noreturn]] void writeTornRows(int writer, const QString &folder)
{
    const int notes = notesOf(writer, folder);
    const QString path = folder + '/' + fileName;
    for (int number = 0;; ++number) {
        const int file = ::open(qPrintable(path), O_WRONLY | O_APPEND);
        const Record row = rowOf(writer, number);
        const QByteArray line = lineOf(row);
        const ssize_t half = ::write(file, line.constData(), std::size_t(line.size() / 2));
        ::usleep(200);
        if (file >= 0 && ::write(file, line.constData() + half, std::size_t(line.size() - half)) > 0)
            note(notes, noteOf(row));
        ::close(file);
        ::usleep(100);
    }
}

// ---- a file that is taken away

/// Writes rows as writeRows(), and notes of each opening those that weren't told lost, with the moments before and
/// behind the closing.
[[noreturn]] void writeWatchfully(int writer, const QString &folder, unsigned seed, int rowsOfOpening)
{
    std::minstd_rand random(seed);
    const int notes = notesOf(writer, folder);
    for (int number = 0;;) {
        Spectrometer::PlainFileOutput output(settingsOf(folder));
        QByteArrayList written;
        qint64 lost = 0;
        const auto dropTold = [&] {
            if (output.counts().lost != std::exchange(lost, output.counts().lost))
                written.clear();
        };
        for (int i = 0; i < rowsOfOpening; ++i, ++number) {
            const Record row = rowOf(writer, number);
            const bool isWritten = output.writeRecordRow(row) == Spectrometer::PlainFileOutput::RowResult::Written;
            dropTold();
            if (isWritten)
                written << noteOf(row).trimmed();
            ::usleep(random() % 300);
        }
        const qint64 before = microseconds();
        output.closeFiles();
        dropTold();
        const QByteArray times = ' ' + QByteArray::number(before) + ' ' + QByteArray::number(microseconds()) + '\n';
        for (const QByteArray &row : written)
            note(notes, row + times);
        ::usleep(random() % 200);
    }
}

/// The planted fault: a writer that never looks whether the file that it has open is still the one of that name.
[[noreturn]] void writeBlindly(int writer, const QString &folder)
{
    const int notes = notesOf(writer, folder);
    for (int number = 0;;) {
        const int file = ::open(qPrintable(folder + '/' + fileName), O_CREAT | O_WRONLY | O_APPEND, 0600);
        QByteArrayList written;
        for (int i = 0; i < 20; ++i, ++number) {
            const QByteArray line = lineOf(rowOf(writer, number));
            if (file >= 0 && ::write(file, line.constData(), std::size_t(line.size())) == line.size())
                written << noteOf(rowOf(writer, number)).trimmed();
            ::usleep(300);
        }
        const QByteArray time = ' ' + QByteArray::number(microseconds());
        ::close(file);
        for (const QByteArray &row : written)
            note(notes, row + time + time + '\n');
    }
}

/// A stranger that removes the file, puts a copy into its place, as editors do, or cuts it. It keeps what stood there,
/// and notes when it begins and ends, and whether it cuts.
[[noreturn]] void takeAway(const QString &path, const QString &folder, unsigned seed)
{
    std::minstd_rand random(seed);
    const int notes = ::open(qPrintable(folder + "/deeds"), O_CREAT | O_WRONLY | O_APPEND, 0600);
    for (int deed = 0;; ++deed) {
        ::usleep(1000 + random() % 6000);
        const int what = int(random() % 3);
        const QString kept = folder + QString("/kept-%1").arg(deed), copy = folder + "/copy";
        const QByteArray words = QByteArray::number(deed) + (what == 0 ? " 1 " : " 0 ");
        note(notes, words + QByteArray::number(microseconds()) + '\n');
        if (what == 0) {
            QFile::copy(path, kept);
            struct stat status {};
            if (::stat(qPrintable(path), &status) == 0 &&
                ::truncate(qPrintable(path), off_t(random() % (unsigned(status.st_size) + 1))) != 0)
                ::_exit(1);
        } else if (::link(qPrintable(path), qPrintable(kept)) == 0) {
            if (what == 1)
                ::unlink(qPrintable(path));
            else if (QFile::copy(path, copy))
                ::rename(qPrintable(copy), qPrintable(path));
        }
        note(notes, words + QByteArray::number(microseconds()) + '\n');
    }
}

// ---- comments

CommentPlace commentPlace(const QString &folder, const Record &row)
{
    return CommentPlace(folder, "block", row, "ions");
}

/// Comments one record after the other, and notes those that were said written. The planted fault: the file is read and
/// replaced without a lock.
[[noreturn]] void writeComments(int writer, const QString &folder, bool isPlanted)
{
    const int notes = notesOf(writer, folder);
    for (int number = 0;; ++number) {
        const Record row = rowOf(writer, number);
        const CommentPlace place = commentPlace(folder, row);
        const QByteArray old = isPlanted && QFile::exists(place.path) ? contentOf(place.path) : "#Record comments\n";
        const QString reason =
            isPlanted ? replaceFile(place.path, old + place.key + "text\n") : writeComment(place, "text");
        if (reason.isNull())
            note(notes, noteOf(row));
    }
}

template<typename Work>
pid_t inProcess(Work work)
{
    const pid_t child = ::fork();
    if (child == 0)
        work();
    return child;
}

std::shared_ptr<FileReader> readFile(const QString &folder)
{
    auto reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    FileReaderSettings settings;
    settings.files = QStringList{fileName};
    settings.folder = folder;
    settings.threads = 1;
    FileReaderTask(reader, settings).run();
    return reader;
}

/// Null if each record is one that a writer means, but for the one of a last line without a line feed.
QString faultOf(const FileReader &reader, bool lastMayBeTorn)
{
    const auto &records = reader.datastore()->records();
    int strange = 0;
    QString fault;
    for (const auto &record : records) {
        const qint64 second = ticksOf(record->beginTime) / ticksPerSecond - firstSecond;
        const Record meant = rowOf(int(second % writers), int(second / writers));
        const bool isMeant = record->beginTime == meant.beginTime && record->endTime == meant.endTime &&
                             std::equal(record->currents.begin(), record->currents.end(), meant.currents.begin()) &&
                             std::equal(record->voltages.begin(), record->voltages.end(), meant.voltages.begin());
        if (isMeant)
            continue;
        ++strange;
        fault = "No writer means the record of " + timeToString(record->beginTime);
    }
    return strange > (lastMayBeTorn ? 1 : 0) ? fault : QString();
}

void endAll(const std::vector<pid_t> &processes)
{
    for (const pid_t process : processes) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
}

/// How often each row stands in the file.
QHash<qint64, int> rowsIn(const QString &path)
{
    QHash<qint64, int> found;
    for (const QByteArray &line : contentOf(path).split('\n')) {
        if (!line.startsWith("2019-"))
            continue;
        std::int64_t offset = 0;
        RecordTime time{};
        const QByteArray begin = line.left(line.indexOf('\t'));
        parseTime(begin.constData(), begin.size(), &time, &offset);
        if (line.count('\t') == 3 + 4 * channels)
            ++found[ticksOf(time)];
    }
    return found;
}

QString nameOf(qint64 ticks)
{
    return timeToString(recordTimeFromTicks(ticks));
}

/// The numbers of each line that the writers noted, or the stranger.
QVector<QVector<qint64>> notesIn(const Trial &trial, const QStringList &names)
{
    QVector<QVector<qint64>> notes;
    for (const QString &name : names) {
        for (const QByteArray &line : contentOf(trial.path(name)).split('\n')) {
            QVector<qint64> numbers;
            for (const QByteArray &number : line.split(' '))
                numbers << number.toLongLong();
            if (!line.isEmpty())
                notes << numbers;
        }
    }
    return notes;
}

const QStringList writersNotes{"written-0", "written-1"};

/// Each row that was said written stands once in the file.
void checkRows(Trial &trial, const QString &folder)
{
    const QHash<qint64, int> found = rowsIn(folder + '/' + fileName);
    for (const QVector<qint64> &note : notesIn(trial, writersNotes)) {
        trial.count("rows written");
        const int times = found.value(note[0]);
        trial.require(times == 1, QString("The row of %1 stands there %2 times").arg(nameOf(note[0])).arg(times));
    }
}

/// Each row that wasn't told lost stood in the file of that name when its writer closed it, or stands there now. While
/// the file was copied and cut, nobody can tell.
void checkKept(Trial &trial, const QString &folder)
{
    struct Deed {
        bool cuts = false;
        qint64 begin = 0;
        qint64 end = std::numeric_limits<qint64>::max();
        QHash<qint64, int> rows = {};
    };
    QMap<qint64, Deed> deeds;
    for (const QVector<qint64> &note : notesIn(trial, {"deeds"})) {
        if (deeds.contains(note[0]))
            deeds[note[0]].end = note[2];
        else
            deeds[note[0]] = {note[1] == 1, note[2]};
    }
    for (auto deed = deeds.begin(); deed != deeds.end(); ++deed)
        deed->rows = rowsIn(trial.path(QString("kept-%1").arg(deed.key())));
    const QHash<qint64, int> now = rowsIn(folder + '/' + fileName);
    trial.count("taken away or cut", deeds.size());
    for (const QVector<qint64> &note : notesIn(trial, writersNotes)) {
        trial.count("rows written");
        const auto mayBeCut = [&note](const Deed &deed) {
            return deed.cuts && deed.begin <= note[2] && deed.end >= note[1];
        };
        const auto stoodIn = [&note](const Deed &deed) { return deed.end >= note[1] && deed.rows.contains(note[0]); };
        trial.require(now.contains(note[0]) || std::any_of(deeds.cbegin(), deeds.cend(), stoodIn) ||
                          std::any_of(deeds.cbegin(), deeds.cend(), mayBeCut),
                      QString("The row of %1 was lost, and nobody was told").arg(nameOf(note[0])));
    }
}

void write(Trial &trial, bool withStranger)
{
    const QString folder = trial.path("data");
    const QString path = folder + '/' + fileName;
    QDir().mkpath(folder);
    const int rowsOfOpening = trial.pick(1, 20);
    std::vector<pid_t> processes;
    for (int writer = 0; writer < writers; ++writer)
        processes.push_back(inProcess([&] {
            if (trial.isPlanted && writer == 1)
                writeTornRows(writer, folder);
            writeRows(writer, folder, unsigned(trial.number * 10 + writer + 1), rowsOfOpening);
        }));
    if (withStranger)
        processes.push_back(inProcess([&] { writeStrangely(path, unsigned(trial.number + 7)); }));
    QElapsedTimer timer;
    timer.start();
    for (int reads = 0; timer.nsecsElapsed() < qint64(usWritten) * 1000; ++reads) {
        ::usleep(useconds_t(trial.pick(0, 20000)));
        if (QFile::exists(path)) {
            const QString fault = faultOf(*readFile(folder), true);
            trial.require(fault.isNull(), fault);
            trial.count("reads");
        }
    }
    endAll(processes);
    checkRows(trial, folder);
    const QString fault = faultOf(*readFile(folder), true);
    trial.require(fault.isNull(), fault);
}

void takeAwayFrom(Trial &trial)
{
    const QString folder = trial.path("data");
    QDir().mkpath(folder);
    const int rowsOfOpening = trial.pick(1, 20);
    const auto seed = unsigned(trial.number * 10);
    std::vector<pid_t> processes;
    for (int writer = 0; writer < writers; ++writer)
        processes.push_back(inProcess([&] {
            if (trial.isPlanted && writer == 1)
                writeBlindly(writer, folder);
            writeWatchfully(writer, folder, seed + unsigned(writer) + 1, rowsOfOpening);
        }));
    processes.push_back(inProcess([&] { takeAway(folder + '/' + fileName, trial.folder(), seed); }));
    ::usleep(usWritten);
    endAll(processes);
    checkKept(trial, folder);
}

/// Each comment that was said written stands in the file.
void comment(Trial &trial)
{
    const QString folder = trial.path("data");
    QDir().mkpath(folder);
    std::vector<pid_t> processes;
    for (int writer = 0; writer < writers; ++writer)
        processes.push_back(inProcess([&] { writeComments(writer, folder, trial.isPlanted); }));
    ::usleep(usWritten);
    endAll(processes);
    QSet<qint64> found;
    readCommentFile(commentPlace(folder, rowOf(0, 0)).path,
                    [&found](const CommentLine &line) { found.insert(ticksOf(line.begin)); });
    for (const QVector<qint64> &note : notesIn(trial, writersNotes)) {
        trial.count("comments");
        trial.require(found.contains(note[0]), QString("The comment of %1 was lost").arg(nameOf(note[0])));
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    return runLane("twowriters", {{"two", 1000, [](Trial &trial) { write(trial, false); }},
                                  {"two and a stranger", 1000, [](Trial &trial) { write(trial, true); }},
                                  {"two and one that takes away", 1000, takeAwayFrom},
                                  {"two that comment", 1000, comment}});
}
