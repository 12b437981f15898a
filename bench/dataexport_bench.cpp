#include "dataexport/dataexporter.h"
#include "spectra/spectrum.h"
#include "support/measuring.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

/// A table of many records: of two spectra of 40 points the total and ten decade fractions, all with uncertainties.
/// Ours beside numpy and pandas, which make the same table of matrices that they have in memory:
///
///     dataexport_bench [RECORDS]

namespace {

using namespace DataExport;

constexpr std::size_t points = 40;

SpectMath::SpectrumInfoPointer makeInfo(const char *name)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = info->hash = QLatin1String(name);
    info->scale = SpectMath::DistributionScale::radius;
    info->concentrationUnit = (1e6 / Unit::metre.pow(3)).named(QStringLiteral("1/cm^3"));
    info->radii.resize(points);
    for (std::size_t i = 0; i < points; ++i)
        info->radii[i] = 0.5 * std::pow(10, 2.0 * double(i) / (points - 1)); // 1 to 100 nm of diameter
    info->finish();
    return info;
}

std::shared_ptr<SpectMath::Spectrum> makeSpectrum(const SpectMath::SpectrumInfoPointer &info, std::mt19937_64 &random)
{
    auto spectrum = SpectMath::makeSpectrum();
    spectrum->info = info;
    spectrum->status = 0;
    spectrum->concentrations.resize(points);
    spectrum->covariances = BandMatrix(points, points, 0, 0);
    for (std::size_t i = 0; i < points; ++i) {
        const double value = std::exp(double(random() >> 11) / 9007199254740992.0 * 12);
        spectrum->concentrations[i] = value;
        spectrum->covariances(i, i) = 0.01 * value * value;
    }
    return spectrum;
}

ExportData makeData()
{
    ExportData data;
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    metadata->opmodes = {Opmode(0, QStringLiteral("particles"))};
    data.metadata = metadata;
    data.infos = {makeInfo("particles neg"), makeInfo("particles pos")};
    return data;
}

std::vector<std::shared_ptr<Record>> makeRecords(const ExportData &data, int count)
{
    std::mt19937_64 random(1);
    std::vector<std::shared_ptr<Record>> records;
    for (int i = 0; i < count; ++i) {
        const auto record = makeRecord();
        record->opmode = 0;
        record->beginTime = recordTimeFromTicks((1557792000LL + 10LL * i) * ticksPerSecond);
        record->endTime = record->beginTime + std::chrono::seconds(10);
        for (const auto &info : data.infos)
            record->spectra.push_back(makeSpectrum(info, random));
        records.push_back(record);
    }
    return records;
}

ExportSetup makeSetup(const QString &file)
{
    ConcentrationField field;
    field.spectra = QStringList{QStringLiteral("particles neg"), QStringLiteral("particles pos")};
    field.decades.isEnabled = true;
    field.decades.perDecade = 5;
    ExportSetup setup;
    setup.general.outputFile = file;
    setup.fields.emplace_back(field);
    return setup;
}

/// Seconds by the clock.
double seconds(const std::function<void()> &work)
{
    return timeOf(work, CLOCK_MONOTONIC) * 1e-3;
}

double peerSeconds(int records, const QString &file)
{
    QProcess peer;
    peer.start(QStringLiteral("/usr/bin/python3"),
               {QStringLiteral(EXPORT_TABLE_SCRIPT), QString::number(records), file});
    if (peer.waitForFinished(-1) && peer.exitCode() == 0)
        return peer.readAllStandardOutput().trimmed().toDouble();
    std::printf("%s\n", peer.readAllStandardError().trimmed().split('\n').last().constData());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const int count = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 500'000;
    const QTemporaryDir folder;
    const ExportData data = makeData();
    const auto records = makeRecords(data, count);
    const ExportSetup setup = makeSetup(folder.filePath(QStringLiteral("ours.txt")));
    std::vector<double> ours, theirs, ratios;
    double most = 0;
    for (int round = 0; round < 3; ++round) {
        ours.push_back(seconds([&] {
            const double before = bytesInUse();
            ExportTable table(setup, data);
            DataExporter exporter(setup, table, data.metadata, ExistingFile::Replaced);
            for (const auto &record : records)
                exporter.addRecord(*record);
            most = std::max(most, bytesInUse() - before);
            if (exporter.finish().rows != count)
                std::abort();
        }));
        theirs.push_back(peerSeconds(count, folder.filePath(QStringLiteral("theirs.txt"))));
        ratios.push_back(theirs.back() / ours.back());
    }
    std::printf("%d records, %.0f MB\n", count, double(QFile(setup.general.outputFile).size()) * 1e-6);
    std::printf("ours    %7.2f s, %.1f MB above the records\n", median(ours), most * 1e-6);
    if (median(theirs) > 0)
        std::printf("pandas  %7.2f s\nratio   %7.2f (median of %zu)\n", median(theirs), median(ratios), ratios.size());
    return 0;
}
