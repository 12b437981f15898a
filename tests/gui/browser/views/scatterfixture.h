#pragma once

#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/views/scatterplotview.h"
#include "support/plotstore.h"

#include <gtest/gtest.h>

#include <cmath>

/// A scatter plot view over a store of two modes and two spectra, shown for real.
class Scatter : public ::testing::Test {
protected:
    void SetUp() override
    {
        metadata->electrometerGroups = {{"pos", {0, 2}}, {"neg", {2, 3}}};
        metadata->variables[0]->unit = "l/min";
        metadata->variables[0]->valueIndex = 1;
        uiInfo->setData(metadata, infos);
        uiInfo->publish();
        store.setLimitRecords(false);
        view.setUiInfo(uiInfo);
        view.setDatastore(&store);
        view.setTimeScale(TimeScale(testStart, ticksPerSecond, 0));
        view.setFixedHeight(160);
        view.resize(500, 160);
        view.show();
    }

    std::shared_ptr<Record> add(double begin, double value, int opmode = 0, double duration = 1)
    {
        auto full = testRecord(begin, begin + duration, opmode);
        for (RealVector *vector : {&full->variables, &full->currents, &full->rawCurrents, &full->currentVariances})
            *vector = RealVector(3, value);
        full->rawCurrents[1] = value + 1;
        full->currentVariances[1] = 4.0;
        store.addFullRecord(full);
        return store.at(store.lowerBoundIndex(full->beginTime));
    }

    void addSpectra(const std::shared_ptr<Record> &record, double concentration, double rms, int status = 0)
    {
        SpectMath::SpectrumPointerList spectra;
        for (const auto &info : infos) {
            spectra.push_back(testSpectrum(info, concentration, status));
            spectra.back()->currentRmsError = rms;
        }
        store.addSpectra(resultFor(*record, spectra));
    }

    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "particles"}, {"e0", "e1", "e2"}, {"flow"});
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    QList<UiInfo::InfoPointer> infos{testInfo("ions pos", testGrid(4, 1, std::sqrt(10))),
                                     testInfo("ions neg", testGrid(4, 1, std::sqrt(10)))};
    Datastore store;
    Tsb::ScatterPlotView view;
};
