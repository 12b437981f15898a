#pragma once

#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "support/gestures.h"
#include "support/plotstore.h"
#include "support/stripview.h"

#include <gtest/gtest.h>

/// A browser with plain views over twenty records of two modes.
class BrowserTest : public ::testing::Test {
protected:
    BrowserTest()
    {
        for (int i = 0; i < 20; ++i)
            store.addFullRecord(testRecord(i * 10, i * 10 + 6, i % 2));
        const std::vector<Tsb::ViewKind> kinds{Tsb::viewKind<StripView>("spectrogram"),
                                               Tsb::viewKind<PlainView>("plain")};
        browser = std::make_unique<Tsb::TimeSeriesBrowser>(uiInfo, nullptr, kinds);
        browser->resize(900, 500);
        browser->setDatastore(&store);
        browser->show();
        settle();
        browser->timeView()->setTimeScale({testStart, ticksPerSecond, 0});
        QObject::connect(browser.get(), &Tsb::TimeSeriesBrowser::recordChosen, browser.get(),
                         &Tsb::TimeSeriesBrowser::selectRecord);
    }
    StripView *addStrip()
    {
        auto *const view = new StripView;
        browser->addView(view);
        settle();
        return view;
    }

    Datastore store;
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    std::unique_ptr<Tsb::TimeSeriesBrowser> browser;
};
