#pragma once

#include "axis/timescale.h"
#include "columns/scatterplotsettings.h"
#include "gui/common/uiinfo.h"
#include "store/datastore.h"

#include <memory>

/// A store as a year of measurements leaves it: records side by side in time, in three modes by turns, each with
/// electrometers, variables and a spectrum of both descriptions.
class BenchStore {
public:
    static constexpr int modes = 3;
    static constexpr int electrometers = 12;
    static constexpr int variables = 12;
    static constexpr int bins = 40;
    static constexpr std::int64_t recordTicks = 10 * ticksPerSecond;

    explicit BenchStore(int count);
    /// The one of 500 000 records that most benchmarks share.
    static BenchStore &shared();

    Datastore &store() { return m_store; }
    const std::shared_ptr<UiInfo> &uiInfo() const { return m_uiInfo; }
    const SpectMath::SpectrumInfoPointer &info(int i) const { return m_infos[i]; }
    int count() const { return m_store.size(); }
    static RecordTime start() { return recordTimeFromTicks(17'000 * ticksPerDay); }
    RecordTime end() const { return start() + Ticks(m_count * recordTicks); }
    /// All records over so many columns.
    TimeScale wholeRange(int width) const { return TimeScale(start(), m_count * recordTicks / width, 0); }

    /// Adds the next record and its spectra as an instrument does, one signal each.
    void addLive();

    static double variable(int record, int slot);
    static double concentration(int record, int info, int bin);

private:
    std::shared_ptr<Record> makeRecordAt(int i) const;
    SpectMath::SpectrumPointerList makeSpectra(int i) const;

    int m_count = 0;
    QList<SpectMath::SpectrumInfoPointer> m_infos;
    std::shared_ptr<UiInfo> m_uiInfo = std::make_shared<UiInfo>();
    Datastore m_store;
};

/// Settings of the kinds that the benchmarks draw.
ScatterPlotSettings variablePlot(int slot);
ScatterPlotSettings electrometerPlot(int number);
ScatterPlotSettings concentrationPlot(const BenchStore &data);
ScatterPlotSettings parameterPlot(const BenchStore &data);
