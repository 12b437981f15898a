#pragma once

#include "gui/browser/views/timeseriesbrowser.h"
#include "support/gestures.h"
#include "support/plotstore.h"

#include <gtest/gtest.h>

#include <cmath>

/// A browser with all kinds of views over a store of two modes with a spectrum each, and one variable.
class BrowserPlotsTest : public ::testing::Test {
protected:
    BrowserPlotsTest()
    {
        store.setLimitRecords(false);
        uiInfo->setData(testMetadata({}, {}, {"temperature"}), infos);
        uiInfo->publish();
        for (int i = 0; i < 300; ++i)
            add(i * 10, i * 10 + 10);
        browser.resize(900, 700);
        browser.setDatastore(&store);
        browser.show();
        browser.fitTimescale(store.at(0)->beginTime, store.at(store.size() - 1)->endTime);
        settle();
    }
    void add(double begin, double end)
    {
        const int mode = int(begin / 10) % 2;
        auto full = testRecord(begin, end, mode);
        full->variables = RealVector(1, std::sin(begin / 200));
        addWithSpectrum(full);
    }
    void addWithSpectrum(const Spectrometer::FullRecordPointer &full)
    {
        const double begin = double(ticksOf(full->beginTime)) / 1e7 - double(ticksOf(testStart)) / 1e7; // no overflow
        store.addFullRecord(full);
        store.replaceSpectra(resultFor(*full, {testSpectrum(infos[full->opmode], 100.0 + 50 * std::sin(begin / 300))}));
    }
    template<class T>
    T *view(int index)
    {
        return dynamic_cast<T *>(browser.views().value(index));
    }

    QList<SpectMath::SpectrumInfoPointer> infos{testInfo("ions neg", testGrid(8)),
                                                testInfo("particles neg", testGrid(8))};
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    Datastore store;
    Tsb::TimeSeriesBrowser browser{uiInfo};
};
