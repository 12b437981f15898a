#pragma once

#include "gui/common/dataexport/exportsource.h"
#include "support/instrument.h"

/// Open data of two modes, a spectrum each, two electrometers and two variables: a record a second, the modes by turns.
struct ExportedData {
    static constexpr int records = 12;

    ExportedData()
    {
        ui->setData(testMetadata({"ions", "particles"}, {"1-", "2-"}, {"temperature", "pressure"}), {ions, particles});
        ui->publish();
        source.uiInfo = ui;
        source.store = std::make_shared<Datastore>();
        source.store->setLimitRecords(false);
        source.folder = "/data";
        source.visibleSpan = [this] { return inSight; };
        for (int i = 0; i < records; ++i)
            add(i, i % 2);
    }

    void add(int second, int opmode)
    {
        auto record = std::make_shared<Record>();
        record->beginTime = timeOf(second);
        record->endTime = timeOf(second + 1);
        record->opmode = opmode;
        record->currents = RealVector(2, second);
        record->variables = RealVector(2, 20 + second);
        record->spectra.push_back(testSpectrum(opmode == 0 ? ions : particles, 100));
        source.store->insertRecord(source.store->lowerBound(record->beginTime), record);
    }
    static RecordTime timeOf(int second) { return recordTimeFromTicks(ticksPerDay + second * ticksPerSecond); }
    static SpectMath::SpectrumInfoPointer describe(const QString &mode)
    {
        auto info = std::make_shared<SpectMath::SpectrumInfo>(
            *testInfo(mode + " neg", testGrid(10), SpectMath::DistributionScale::radius, "demo"));
        info->opmode = mode;
        return info;
    }

    SpectMath::SpectrumInfoPointer ions = describe("ions"), particles = describe("particles");
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    ExportSource::Span inSight{timeOf(0), timeOf(records)};
    ExportSource source;
};
