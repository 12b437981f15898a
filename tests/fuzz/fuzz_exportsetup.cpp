#include "fuzzfile.h"

#include "dataexport/exporttable.h"
#include "spectra/spectrum.h"

#include <algorithm>
#include <cmath>

using namespace DataExport;

namespace {

SpectMath::SpectrumInfoPointer testInfo(const QString &hash, SpectMath::DistributionScale scale)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = info->hash = hash;
    info->scale = scale;
    RealVector &points = scale == SpectMath::DistributionScale::mobility ? info->mobilities : info->radii;
    points.resize(10);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = 0.4 * std::pow(1.7, double(i));
    info->finish();
    return info;
}

ExportData testData()
{
    ExportData data;
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    metadata->opmodes = {Opmode(0, "ions")};
    metadata->electrometerNames = {"1+", "2+"};
    data.metadata = metadata;
    data.infos = {testInfo("a", SpectMath::DistributionScale::mobility),
                  testInfo("b", SpectMath::DistributionScale::radius)};
    return data;
}

Record testRecord(const ExportData &data)
{
    Record record;
    record.opmode = 0;
    record.currents = RealVector(2, 1.5);
    for (const auto &info : data.infos) {
        auto spectrum = SpectMath::makeSpectrum();
        spectrum->info = info;
        spectrum->status = 0;
        spectrum->concentrations = RealVector(info->radii.size(), 1000.0);
        record.spectra.push_back(spectrum);
    }
    return record;
}

std::ptrdiff_t separatorsIn(const char *begin, std::size_t size)
{
    return std::count(begin, begin + size, '\x1f');
}

void silence(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

/// The bytes are an export setup.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(silence);
    static const ExportData exported = testData();
    static const Record record = testRecord(exported);
    ExportSetup setup;
    try {
        setup = loadExportSetup(fuzzFile(data, size));
    } catch (const SetupError &error) {
        require(!error.message().isEmpty(), "an error has words");
        return 0;
    }
    require(!setup.general.separator.isEmpty(), "fields are kept apart");
    // A separator and times that can't be mistaken for each other.
    setup.general.separator = QChar(0x1f);
    setup.general.timeFormat = GeneralSettings().timeFormat;
    const ExportTable table(setup, exported);
    const QByteArray head = table.head();
    const auto columns = separatorsIn(head.constData(), std::size_t(head.size()));
    require(columns <= std::ptrdiff_t(2 + mostColumns), "a table isn't wider than it may be");
    DelimitedLine line = table.emptyLine();
    table.addLine(record, line);
    require(separatorsIn(line.data(), line.size()) == columns, "a line has a field for each title");
    for (const QString &error : setup.errors + table.errors())
        require(!error.isEmpty(), "an error line has words");
    return 0;
}
