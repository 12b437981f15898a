// Two processes append to the same day file, a third writes into it without locks, and a fourth reads it meanwhile.

#include "faults/lane.h"

#include "datafiles/reading/filereadertask.h"
#include "datafiles/writing/plainfileoutput.h"
#include "log/logger.h"
#include "support/files.h"
#include "support/instrument.h"
#include "util/timeformat.h"
#include "util/timeparse.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <csignal>
#include <mutex>

#include <fcntl.h>
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

void note(int notes, const Record &row)
{
    const QByteArray text = QByteArray::number(qint64(ticksOf(row.beginTime))) + '\n';
    if (::write(notes, text.constData(), std::size_t(text.size())) != text.size())
        ::_exit(1);
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
            note(notes, row);
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
        QByteArray line = timeToString(row.beginTime).toUtf8() + '\t' + timeToString(row.endTime).toUtf8() + "\tions";
        for (int i = 0; i < 4 * channels; ++i)
            line += '\t' + QByteArray::number(row.currents[0]);
        line += "\t\n";
        const ssize_t half = ::write(file, line.constData(), std::size_t(line.size() / 2));
        ::usleep(200);
        if (file >= 0 && ::write(file, line.constData() + half, std::size_t(line.size() - half)) > 0)
            note(notes, row);
        ::close(file);
        ::usleep(100);
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

/// The lines of the file, and how often each row that was said written stands there.
void checkRows(Trial &trial, const QString &folder)
{
    QHash<qint64, int> found;
    for (const QByteArray &line : contentOf(folder + '/' + fileName).split('\n')) {
        if (!line.startsWith("2019-"))
            continue;
        std::int64_t offset = 0;
        RecordTime time{};
        const QByteArray begin = line.left(line.indexOf('\t'));
        parseTime(begin.constData(), begin.size(), &time, &offset);
        if (line.count('\t') == 3 + 4 * channels)
            ++found[ticksOf(time)];
    }
    for (int writer = 0; writer < writers; ++writer)
        for (const QByteArray &note : contentOf(trial.path(QString("written-%1").arg(writer))).split('\n'))
            if (!note.isEmpty()) {
                trial.count("rows written");
                trial.require(found.value(note.toLongLong()) == 1,
                              QString("The row of %1 stands there %2 times")
                                  .arg(timeToString(recordTimeFromTicks(note.toLongLong())))
                                  .arg(found.value(note.toLongLong())));
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

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    return runLane("twowriters", {{"two", 1000, [](Trial &trial) { write(trial, false); }},
                                  {"two and a stranger", 1000, [](Trial &trial) { write(trial, true); }}});
}
