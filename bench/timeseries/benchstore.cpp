#include "timeseries/benchstore.h"

#include "support/fillstore.h"

#include <cmath>

namespace {

QString variableName(int slot)
{
    return QStringLiteral("variable %1").arg(slot);
}

SpectMath::SpectrumInfoPointer makeInfo(const QString &name, const QString &mode)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = name;
    info->opmode = mode;
    info->scale = SpectMath::DistributionScale::radius;
    info->radii.resize(BenchStore::bins);
    for (int k = 0; k < BenchStore::bins; ++k)
        info->radii[std::size_t(k)] = std::pow(10.0, k * 0.05);
    info->finish();
    return info;
}

/// Numbers that look random and are the same each time, 0 to 1.
double noise(int i, int salt)
{
    std::uint32_t h = std::uint32_t(i) * 2654435761u + std::uint32_t(salt) * 40503u;
    h = (h ^ (h >> 15)) * 2246822519u;
    return double((h ^ (h >> 13)) & 0xffff) / 65535;
}

} // namespace

double BenchStore::variable(int record, int slot)
{
    return 20 + 5 * std::sin(record * 8e-5 + slot) + 4 * noise(record, slot);
}

double BenchStore::concentration(int record, int info, int bin)
{
    return std::pow(10.0, 2 + std::sin(record * 1e-4 + bin * 0.1 + info) + 0.3 * std::sin(record * 0.37 + bin * 1.3));
}

BenchStore::BenchStore(int count)
{
    auto metadata = std::make_shared<Spectrometer::RecordMetadata>();
    metadata->opmodes = {Opmode(0, "offset"), Opmode(1, "ions"), Opmode(2, "particles")};
    metadata->totalElectrometers = electrometers;
    for (int i = 0; i < electrometers; ++i)
        metadata->electrometerNames.append(QStringLiteral("e%1").arg(i));
    metadata->variableCount = variables;
    for (int i = 0; i < variables; ++i) {
        auto variable = std::make_shared<Spectrometer::SystemVariable>();
        variable->name = variableName(i);
        variable->index = variable->valueIndex = i;
        metadata->variables.append(variable);
    }
    m_infos = {makeInfo("ions pos", "ions"), makeInfo("particles pos", "particles")};
    m_uiInfo->setData(metadata, m_infos);
    m_uiInfo->publish();

    m_store.setLimitRecords(false);
    fillAsRead(m_store, count, [this](int i) {
        const auto record = makeRecordAt(i);
        record->spectra = makeSpectra(i);
        return record;
    });
    m_count = count;
}

BenchStore &BenchStore::shared()
{
    static BenchStore filled(500'000);
    return filled;
}

std::shared_ptr<Record> BenchStore::makeRecordAt(int i) const
{
    auto record = makeRecord();
    record->beginTime = start() + Ticks(i * recordTicks);
    record->endTime = record->beginTime + Ticks(recordTicks);
    record->midTime = record->beginTime + Ticks(recordTicks / 2);
    record->opmode = i % modes;
    record->provisional = i % 50 == 49;
    record->variables.resize(variables);
    for (int k = 0; k < variables; ++k)
        record->variables[std::size_t(k)] = variable(i, k);
    for (RealVector *vector : {&record->currents, &record->rawCurrents, &record->currentVariances, &record->voltages}) {
        vector->resize(electrometers);
        for (int k = 0; k < electrometers; ++k)
            (*vector)[std::size_t(k)] = 100 + 80 * std::sin(i * 5e-5 + k) + 20 * noise(i, k);
    }
    return record;
}

SpectMath::SpectrumPointerList BenchStore::makeSpectra(int i) const
{
    SpectMath::SpectrumPointerList spectra;
    for (int which = 0; which < m_infos.size(); ++which) {
        auto spectrum = SpectMath::makeSpectrum();
        spectrum->info = m_infos[which];
        spectrum->status = 0;
        spectrum->currentRmsError = 1 + noise(i, which);
        spectrum->concentrations.resize(bins);
        for (int k = 0; k < bins; ++k)
            spectrum->concentrations[std::size_t(k)] = concentration(i, which, k);
        spectra.push_back(spectrum);
    }
    return spectra;
}

void BenchStore::addLive()
{
    const auto record = makeRecordAt(m_count);
    auto result = std::make_shared<SpectMath::SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*result) = *record;
    result->spectra = makeSpectra(m_count);
    ++m_count;
    m_store.addFullRecord(std::make_shared<Spectrometer::FullRecord>(*record));
    m_store.addSpectra(result);
}

ScatterPlotSettings variablePlot(int slot)
{
    ScatterPlotSettings settings;
    settings.type = ScatterPlotSettings::Variable;
    settings.parameterName = variableName(slot);
    return settings;
}

ScatterPlotSettings electrometerPlot(int number)
{
    ScatterPlotSettings settings;
    settings.type = ScatterPlotSettings::Electrometer;
    settings.electrometerNumber = number;
    return settings;
}

ScatterPlotSettings concentrationPlot(const BenchStore &data)
{
    ScatterPlotSettings settings;
    settings.type = ScatterPlotSettings::Concentration;
    settings.visibleSpectra = {data.info(0)->hash, data.info(1)->hash};
    return settings;
}

ScatterPlotSettings parameterPlot(const BenchStore &data)
{
    ScatterPlotSettings settings = concentrationPlot(data);
    settings.type = ScatterPlotSettings::Parameter;
    return settings;
}
