#include "datafiles/writing/plainfileoutput.h"
#include "support/measuring.h"
#include "util/timeformat.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>

/// Rows of 200 numbers, one flush a row: the plain way (QString::number, join, write, flush), and the writer of
/// day files. The rows of both ways are compared byte by byte first.

namespace {

constexpr int electrometers = 40;
constexpr int variables = 40; // 4 · 40 + 40 = 200 numbers
constexpr int distinctRecords = 64;

std::vector<Spectrometer::FullRecord> makeRecords()
{
    std::mt19937_64 random(1);
    const auto number = [&] {
        const double u = double(random() >> 11) / 9007199254740992.0;
        return (u - 0.2) * std::pow(10.0, int(random() % 9) - 3);
    };
    std::vector<Spectrometer::FullRecord> records(distinctRecords);
    for (auto &record : records) {
        record.dpVariantId = record.opmode = 0;
        record.beginTime = recordTimeFromTicks((1557792000LL + &record - records.data()) * ticksPerSecond);
        record.endTime = record.beginTime + std::chrono::seconds(1);
        record.beginUtcOffset = record.endUtcOffset = 7200;
        for (RealVector *values : {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages})
            values->resize(electrometers);
        record.variables.resize(variables);
        for (RealVector *values :
             {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages, &record.variables})
            for (double &value : *values)
                value = number();
    }
    return records;
}

const std::vector<Spectrometer::FullRecord> &records()
{
    static const auto made = makeRecords();
    return made;
}

Spectrometer::PlainFileOutput::Settings settingsFor(const QString &folder)
{
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    metadata->totalElectrometers = electrometers;
    metadata->opmodes = {Opmode(0, QStringLiteral("ions"))};
    for (int i = 0; i < variables; ++i) {
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        variable->name = QStringLiteral("v%1").arg(i);
        variable->index = variable->valueIndex = i;
        metadata->variables << variable;
    }
    metadata->variableCount = variables;
    Spectrometer::PlainFileOutput::Settings settings;
    settings.folder = folder;
    settings.fileNamePattern = QStringLiteral("%Y%m%d");
    settings.timeFormat = QStringLiteral("%Y-%m-%d %H:%M:%s");
    settings.variants[0].name = QStringLiteral("bench");
    settings.metadata = metadata;
    return settings;
}

QString ourFile(const QTemporaryDir &folder)
{
    return folder.filePath(QStringLiteral("20190514-bench.records"));
}

void writePlainRow(QFile &file, const Spectrometer::FullRecord &record)
{
    QStringList fields;
    for (RecordTime time : {record.beginTime, record.endTime})
        fields << timeToString(localTime(time, record.beginUtcOffset), QStringLiteral("%Y-%m-%d %H:%M:%s")) +
                      utcOffsetToString(record.beginUtcOffset);
    fields << QStringLiteral("ions");
    for (const RealVector *values :
         {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages, &record.variables})
        for (double value : *values)
            fields << QString::number(value, 'g', 6);
    fields << QString();
    file.write((fields.join(QLatin1Char('\t')) + QLatin1Char('\n')).toUtf8());
    file.flush();
}

void plainWay(benchmark::State &state)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("plain")));
    file.open(QIODevice::WriteOnly);
    std::size_t i = 0;
    for (auto _ : state)
        writePlainRow(file, records()[i++ % distinctRecords]);
    state.SetItemsProcessed(state.iterations());
}

void ourWay(benchmark::State &state)
{
    QTemporaryDir folder;
    Spectrometer::PlainFileOutput output(settingsFor(folder.path()));
    std::size_t i = 0;
    for (auto _ : state)
        output.writeRecordRow(records()[i++ % distinctRecords]);
    state.SetItemsProcessed(state.iterations());
}

/// Both ways in turn, so that what slows the machine slows both.
void plainOverOurs(benchmark::State &state)
{
    QTemporaryDir folder;
    Spectrometer::PlainFileOutput output(settingsFor(folder.path()));
    QFile plain(folder.filePath(QStringLiteral("plain")));
    plain.open(QIODevice::WriteOnly);
    output.writeRecordRow(records().front());
    const auto timeOfAll = [](auto &&writeOne) {
        const double begin = microseconds(CLOCK_MONOTONIC);
        for (const auto &record : records())
            writeOne(record);
        return microseconds(CLOCK_MONOTONIC) - begin;
    };
    std::vector<double> ratios;
    for (auto _ : state) {
        const double plainTime = timeOfAll([&](const auto &record) { writePlainRow(plain, record); });
        ratios.push_back(plainTime / timeOfAll([&](const auto &record) { output.writeRecordRow(record); }));
    }
    state.counters["ratio"] = median(ratios);
}

void requireSameBytes()
{
    QTemporaryDir folder;
    Spectrometer::PlainFileOutput output(settingsFor(folder.path()));
    QFile plain(folder.filePath(QStringLiteral("plain")));
    plain.open(QIODevice::ReadWrite);
    for (const auto &record : records()) {
        output.writeRecordRow(record);
        writePlainRow(plain, record);
    }
    plain.seek(0);
    QFile ours(ourFile(folder));
    ours.open(QIODevice::ReadOnly);
    const QByteArray rows = plain.readAll();
    if (rows.isEmpty() || ours.readAll().right(rows.size()) != rows) {
        std::cerr << "The rows of both ways differ.\n";
        std::exit(1);
    }
}

} // namespace

BENCHMARK(plainWay);
BENCHMARK(ourWay);
BENCHMARK(plainOverOurs);

int main(int argc, char **argv)
{
    Log::RootLogger::instance().setFilter([](const Log::Entry &entry) { return entry.level <= Log::Error; });
    requireSameBytes();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
