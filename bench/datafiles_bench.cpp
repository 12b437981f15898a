// How fast day files are read, and what the records take.
//
//   datafiles_bench                 fields alone: ours and double-conversion
//   datafiles_bench --read [alone]  a file of 100 MB and more into a store, beside pandas.read_csv (bench/read_csv.py)
//   datafiles_bench --read-old      the same of an old-style, comma-separated file of 200 numbers a row
//   datafiles_bench --threads [N]   a folder of days, by FileReader file by file and by the task with 1 to N threads
//   datafiles_bench --memory [N [T]]    resident size with N (500 000) records read from files by T threads

#include "datafiles/parsing/fieldcursor.h"
#include "datafiles/parsing/numberparser.h"
#include "datafiles/reading/filereadertask.h"
#include "log/logger.h"
#include "support/measuring.h"
#include "util/timeformat.h"

#include <double-conversion/string-to-double.h>

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <random>

#include <malloc.h>

namespace {

/// Printed numbers as day files hold them: six digits, magnitudes of currents, variances, voltages and concentrations.
class NumberTexts {
public:
    NumberTexts()
    {
        std::mt19937 random(1);
        std::normal_distribution<double> magnitude(0.5, 1.6);
        for (int i = 0; i < 65536; ++i) {
            const double value = std::pow(10.0, magnitude(random)) * (i % 3 ? 1.0 : -1.0);
            m_texts.append(QByteArray::number(value, 'g', 6));
        }
    }
    const QByteArray &next() { return m_texts[int((m_state = m_state * 1664525u + 1013904223u) >> 16)]; }

private:
    QVector<QByteArray> m_texts;
    std::uint32_t m_state = 1;
};

QByteArray list(const char *prefix, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += (i ? ", " : "") + QByteArray(prefix) + QByteArray::number(i);
    return text;
}

QByteArray recordsHeader(int electrometers, int variables)
{
    const QByteArray n = QByteArray::number(electrometers);
    QByteArray columns("begin_time\tend_time\topmode");
    for (const char *kind : {"cur_", "curvar_", "rawcur_", "volt_"})
        for (int i = 0; i < electrometers; ++i)
            columns += '\t' + QByteArray(kind) + QByteArray::number(i);
    for (int i = 0; i < variables; ++i)
        columns += "\tp" + QByteArray::number(i);
    return "# Quilvane records\n# opmodes: [ions]\n# total electrometers: " + n +
           "\n# electrometer groups: {pos: [0, " + QByteArray::number(electrometers - 1) +
           "]}\n# electrometer names: [" + list("e", electrometers) + "]\n# parameters: [" + list("p", variables) +
           "]\n# \n" + columns + "\tflags\n";
}

QByteArray spectraHeader(int points)
{
    QByteArray text("# Quilvane spectra\n# spectra:\n");
    for (const char *name : {"ions neg", "ions pos"}) {
        text += "# - {name: " + QByteArray(name) + ", scale: mobility, xunit: cm^2/s/V, yunit: 1/cm^3, xpoints: [";
        for (int i = 0; i < points; ++i)
            text += (i ? ", " : "") + QByteArray::number(3.2 * std::pow(0.82, i));
        text += "]}\n";
    }
    return text + "# \nbegin_time\tend_time\topmode\tx\n";
}

QByteArray oldHeader()
{
    QByteArray points;
    for (int i = 0; i < 21; ++i)
        points += (i ? "," : "") + QByteArray::number(3.2 * std::pow(0.82, i));
    return "#All measured results\n#Operating modes: ions, particles\n#Electrometer currents: 42 (pos 0 41)\n#Raw "
           "electrometer "
           "currents: 42 (pos 0 41)\n#Diagnostics: " +
           list("p", 32) + "\n#Result spectrum: \"ions pos\" density num (1/cm^3), mob (cm^2/s/V) " + points +
           "\nbegintime,endtime,opmode,values\n";
}

QByteArray rowHead(int second)
{
    const RecordTime begin = recordTimeFromTicks((1568246400 + qint64(second)) * ticksPerSecond);
    QByteArray text;
    appendTimeText(text, begin);
    text += '\t';
    appendTimeText(text, begin + Ticks(ticksPerSecond));
    return text + "\tions";
}

void writeFile(const QString &path, const QByteArray &header, int first, int rows, int numbers, bool flags)
{
    static NumberTexts texts;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("can't write %s", qPrintable(path));
    file.write(header);
    QByteArray text;
    for (int i = 0; i < rows; ++i) {
        text += rowHead(first + i);
        for (int k = 0; k < numbers; ++k)
            text += '\t' + texts.next();
        text += flags ? "\t\n" : "\n";
        if (text.size() > 1 << 20 || i + 1 == rows) {
            file.write(text);
            text.clear();
        }
    }
}

/// "VmRSS:" and the like of this process, in bytes.
qint64 statusBytes(const char *key)
{
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(std::strlen(key))).trimmed().split(' ').first().toLongLong() * 1024;
    return 0;
}

std::shared_ptr<FileReader> makeReader()
{
    return std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
}

/// One file, by that many threads; 0: by a FileReader without a task.
double readSeconds(const QString &path, int threads)
{
    QElapsedTimer clock;
    clock.start();
    const auto reader = makeReader();
    if (threads == 0) {
        reader->readFile(path);
        reader->finishRecords();
    } else {
        const QFileInfo file(path);
        FileReaderSettings settings{{file.fileName()}, file.path()};
        settings.threads = threads;
        FileReaderTask(reader, settings).run();
    }
    const double seconds = double(clock.nsecsElapsed()) * 1e-9;
    benchmark::DoNotOptimize(reader->datastore()->size());
    return seconds;
}

/// The same file with commas between its fields.
void writeOldFile(const QString &path)
{
    writeFile(path, {}, 0, 75000, 200, false);
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        qFatal("can't open %s", qPrintable(path));
    const QByteArray rows = file.readAll().replace('\t', ',');
    file.seek(0);
    file.write(oldHeader() + rows);
}

int runRead(bool withPeer, bool isOld)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(isOld ? "2019-09-12.log" : "20190912-block.records");
    if (isOld)
        writeOldFile(path);
    else
        writeFile(path, recordsHeader(42, 32), 0, 75000, 200, true);
    const double megabytes = double(QFile(path).size()) * 1e-6;
    std::printf("%.0f MB, 75000 rows of 3 texts and 200 numbers\n", megabytes);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    constexpr int threadCounts[] = {0, 2};
    std::vector<double> ours[2], theirs, ratios[2];
    for (const int threads : threadCounts)
        readSeconds(path, threads);
    for (int round = 0; round < 5; ++round) {
        QProcess peer;
        if (withPeer)
            peer.start("/usr/bin/python3", {QStringLiteral(READ_CSV_SCRIPT), path, "2", isOld ? "," : "\t"});
        const bool ended = withPeer && peer.waitForFinished(-1) && peer.exitCode() == 0;
        const QList<QByteArray> lines = peer.readAllStandardOutput().trimmed().split('\n');
        if (ended)
            theirs.push_back(lines.last().split(' ').first().toDouble()); // warmed up by the first
        else if (withPeer)
            std::printf("read_csv failed: %s\n", peer.readAllStandardError().constData());
        readSeconds(path, 0); // the first one behind the peer finds the system tidying up its memory
        for (std::size_t way : {0, 1}) {
            ours[way].push_back(readSeconds(path, threadCounts[way]));
            if (ended)
                ratios[way].push_back(theirs.back() / ours[way].back());
        }
    }
    for (std::size_t way : {0, 1}) {
        std::printf("%s  %6.0f ms  %5.1f ns a number  %.0f MB/s\n", way == 0 ? "one thread " : "two threads",
                    median(ours[way]) * 1e3, median(ours[way]) * 1e9 / 15e6, megabytes / median(ours[way]));
        if (!ratios[way].empty())
            std::printf("             %6.2f times read_csv (median of %zu)\n", median(ratios[way]), ratios[way].size());
    }
    if (!theirs.empty())
        std::printf("read_csv     %6.0f ms\n", median(theirs) * 1e3);
    return 0;
}

/// Days of records and of their spectra; the names of the files.
QStringList writeFolder(const QTemporaryDir &folder, int records, int perFile)
{
    QStringList files;
    for (int first = 0; first < records; first += perFile) {
        const QString stem = QString::number(20190912 + files.size());
        const int rows = std::min(perFile, records - first);
        writeFile(folder.filePath(stem + "-block.records"), recordsHeader(42, 12), first, rows, 180, true);
        writeFile(folder.filePath(stem + "-block-ions.spectra"), spectraHeader(40), first, rows, 160, false);
        files << stem + "-block.records" << stem + "-block-ions.spectra";
    }
    return files;
}

/// Seconds by the clock, and of processors.
struct Cost {
    double wall;
    double processors;
};

/// `threads` 0: no task, but a FileReader file by file.
Cost readFolder(const QTemporaryDir &folder, const QStringList &files, int threads)
{
    malloc_trim(0); // each read finds fresh memory, as in a program that has just started
    const double wall = microseconds(CLOCK_MONOTONIC), processors = microseconds(CLOCK_PROCESS_CPUTIME_ID);
    const auto reader = makeReader();
    if (threads == 0) {
        for (const QString &file : files)
            reader->readFile(folder.filePath(file));
        reader->finishRecords();
        reader->datastore()->updateIndexes();
    } else {
        FileReaderSettings settings{files, folder.path()};
        settings.threads = threads;
        FileReaderTask(reader, settings).run();
    }
    benchmark::DoNotOptimize(reader->datastore()->size());
    return {(microseconds(CLOCK_MONOTONIC) - wall) * 1e-6,
            (microseconds(CLOCK_PROCESS_CPUTIME_ID) - processors) * 1e-6};
}

int runThreads(int most)
{
    const QTemporaryDir folder;
    const QStringList files = writeFolder(folder, 100000, 8640);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    readFolder(folder, files, most);
    std::vector<std::vector<Cost>> costs(std::size_t(most) + 1);
    std::vector<int> order(costs.size());
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(1);
    for (int round = 0; round < 9; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const int threads : order)
            costs[std::size_t(threads)].push_back(readFolder(folder, files, threads));
    }
    const auto valuesOf = [&](std::size_t threads, const std::function<double(const Cost &, const Cost &)> &value,
                              std::size_t other) {
        std::vector<double> values;
        for (std::size_t round = 0; round < costs[threads].size(); ++round)
            values.push_back(value(costs[threads][round], costs[other][round]));
        return values;
    };
    const auto wall = [](const Cost &cost, const Cost &) { return cost.wall * 1e3; };
    std::printf("threads  by the clock, best  of processors  times as fast as 1  processor time to FileReader's\n");
    for (std::size_t threads = 0; threads < costs.size(); ++threads)
        std::printf("%7zu  %9.0f ms %5.0f  %10.0f ms  %18.2f  %28.3f\n", threads, median(valuesOf(threads, wall, 0)),
                    percentile(valuesOf(threads, wall, 0), 0),
                    median(valuesOf(
                        threads, [](const Cost &c, const Cost &) { return c.processors * 1e3; }, 0)),
                    median(valuesOf(
                        threads, [](const Cost &c, const Cost &one) { return one.wall / c.wall; }, 1)),
                    median(valuesOf(
                        threads, [](const Cost &c, const Cost &plain) { return c.processors / plain.processors; }, 0)));
    return 0;
}

int runMemory(int records, int threads)
{
    const QTemporaryDir folder;
    const QStringList files = writeFolder(folder, records, 86400);
    const qint64 before = statusBytes("VmRSS:");
    const auto reader = makeReader();
    FileReaderSettings settings{files, folder.path()};
    settings.threads = threads;
    FileReaderTask task(reader, settings);
    task.run();
    reader->finishRecords();
    const qint64 after = statusBytes("VmRSS:");
    const double payload = 2720.0 * reader->datastore()->size();
    std::printf(
        "%d records in %.1f s; resident %.0f MB, %.0f MB of it before; %.3f times the payload (%.3f with all)\n",
        reader->datastore()->size(), task.seconds(), double(after) * 1e-6, double(before) * 1e-6,
        double(after - before) / payload, double(after) / payload);
    std::printf("highest while reading: %.0f MB\n", double(statusBytes("VmHWM:")) * 1e-6);
    return 0;
}

/// One megabyte of rows, split already.
struct Fields {
    Fields()
    {
        NumberTexts texts;
        for (int i = 0; i < 100000; ++i)
            line += texts.next() + '\t';
        splitter.split(viewOf(line), '\t', std::size_t(100001));
    }
    QByteArray line;
    FieldSplitter splitter;
};

void doubleConversion(benchmark::State &state)
{
    const Fields fields;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    using double_conversion::StringToDoubleConverter;
    const StringToDoubleConverter converter(StringToDoubleConverter::ALLOW_CASE_INSENSIBILITY, nan, nan, "inf", "nan");
    for (auto _ : state) {
        for (std::size_t i = 0; i < 100000; ++i) {
            int used = 0;
            const TextView field = fields.splitter[i];
            benchmark::DoNotOptimize(converter.StringToDouble(field.data(), int(field.size()), &used));
        }
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(doubleConversion)->Repetitions(5)->ReportAggregatesOnly();

void ownParser(benchmark::State &state)
{
    const Fields fields;
    std::vector<double> values(100000);
    for (auto _ : state) {
        FieldCursor cursor(fields.splitter, 0);
        cursor.numbers(values.data(), values.size());
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(ownParser)->Repetitions(5)->ReportAggregatesOnly();

void splitting(benchmark::State &state)
{
    Fields fields;
    for (auto _ : state) {
        fields.splitter.split(viewOf(fields.line), '\t', 100001);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(splitting);

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--read") == 0)
        return runRead(argc < 3 || std::strcmp(argv[2], "alone") != 0, false);
    if (argc > 1 && std::strcmp(argv[1], "--read-old") == 0)
        return runRead(argc < 3 || std::strcmp(argv[2], "alone") != 0, true);
    if (argc > 1 && std::strcmp(argv[1], "--memory") == 0)
        return runMemory(argc > 2 ? QByteArray(argv[2]).toInt() : 500000, argc > 3 ? QByteArray(argv[3]).toInt() : 0);
    if (argc > 1 && std::strcmp(argv[1], "--threads") == 0)
        return runThreads(argc > 2 ? QByteArray(argv[2]).toInt() : 2);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
