#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "records/recordflagparser.h"
#include "support/gestures.h"
#include "support/plotstore.h"
#include "support/seeds.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

const QString flagText = QStringLiteral("flag 7: valve open");

/// A browser with views of all kinds over a limited store, which drops its oldest records, fed in bursts: records come
/// in, get other values and flags, get other spectra, and go.
class LiveDataTest : public Seeded<> {
protected:
    LiveDataTest()
    {
        uiInfo->setData(metadata, infos);
        uiInfo->publish();
        store.setMaxRecords(1500);
        browser.resize(900, 900);
        browser.setDatastore(&store);
        browser.show();
        settle();
    }

    double noise() { return std::uniform_real_distribution<double>(0, 1)(random); }

    Spectrometer::FullRecordPointer values(const Spectrometer::FullRecordPointer &full)
    {
        full->variables = RealVector(1, noise());
        full->currents = full->rawCurrents = full->currentVariances = RealVector(2, noise());
        full->currents[1] = std::numeric_limits<double>::quiet_NaN();
        full->regular = noise() < 0.7;
        full->provisional = noise() < 0.1;
        if (noise() < 0.2)
            full->flags.push_back(Spectrometer::makeRecordFlag(flagText));
        return full;
    }
    void comeIn()
    {
        store.addFullRecord(values(testRecord(next, next + length, count++ % 2)));
        invert(store.records().back());
        next += length + (noise() < 0.1 ? 7 * length : noise() < 0.3 ? 2 : 0);
    }
    void changeValues(const std::shared_ptr<Record> &record)
    {
        auto full = std::make_shared<Spectrometer::FullRecord>();
        static_cast<Spectrometer::RecordHead &>(*full) = *record;
        store.updateFullRecord(values(full));
    }
    void invert(const std::shared_ptr<Record> &record)
    {
        const int status = noise() < 0.05 ? 1 : 0;
        auto spectrum = testSpectrum(infos[record->opmode], std::pow(10, 1 + 3 * noise()), status);
        spectrum->concentrations[2] = noise() < 0.1 ? 0 : 500 * noise();
        spectrum->currentRmsError = noise();
        store.addSpectra(resultFor(*record, {spectrum}));
    }
    void burst(int size)
    {
        for (int i = 0; i < size; ++i) {
            comeIn();
            const auto any = [this] { return store.at(int(random() % unsigned(store.size()))); };
            if (i % 4 == 0)
                changeValues(any());
            if (i % 5 == 0)
                invert(any());
        }
    }

    void open(bool fillGaps)
    {
        QVariantList setup;
        const auto add = [&setup](const char *type, const QVariantMap &settings) {
            setup << QVariantMap{{"type", QLatin1String(type)}, {"settings", settings}};
        };
        const QStringList ids{infos[0]->hash, infos[1]->hash};
        add("opmode", {{"type", "opmode"}});
        add("opmode", {{"type", "flag"}, {"flag", flagText}});
        for (const char *type : {"electrometer", "parameter", "fraction", "spectrumparameter"})
            add("scatterplot", {{"type", QLatin1String(type)},
                                {"visibleSpectra", ids},
                                {"scaleMin", type == std::string("fraction") ? 1.0 : 0.1},
                                {"scaleMax", type == std::string("fraction") ? 5.0 : 0.9}});
        add("spectrogram",
            {{"spectra", ids}, {"height", 200}, {"autoFillGaps", fillGaps}, {"colorLower", 1.0}, {"colorUpper", 4.0}});
        browser.setSetup(setup);
        settle();
    }
    /// The pictures as they stand, and as a browser draws them that never saw another state.
    std::vector<std::pair<QImage, QImage>> pictures()
    {
        for (Tsb::Plot *plot : browser.findChildren<Tsb::Plot *>())
            plot->update(); // as at the timer's next beat
        settle();
        Tsb::TimeSeriesBrowser fresh(uiInfo);
        fresh.resize(browser.size());
        fresh.setDatastore(&store);
        fresh.timeView()->setTimeScale(browser.timeScale());
        fresh.setSetup(browser.setup());
        fresh.show();
        settle();
        const auto plots = browser.findChildren<Tsb::Plot *>(), others = fresh.findChildren<Tsb::Plot *>();
        EXPECT_EQ(plots.size(), 8);
        EXPECT_EQ(others.size(), 8);
        std::vector<std::pair<QImage, QImage>> images;
        for (int i = 0; i < std::min(plots.size(), others.size()); ++i) {
            plots[i]->grab();
            others[i]->grab();
            images.emplace_back(plots[i]->image().copy(), others[i]->image().copy());
            EXPECT_FALSE(isPlain(images.back().first)) << i;
        }
        return images;
    }
    static bool isPlain(const QImage &image)
    {
        QImage plain(image.size(), image.format());
        plain.fill(image.pixelColor(0, 0));
        return image == plain;
    }

    static constexpr int length = 10; ///< of a record, in seconds
    double next = 0;
    int count = 0;
    QList<SpectMath::SpectrumInfoPointer> infos{testInfo("ions neg", testGrid(6)),
                                                testInfo("particles neg", testGrid(6))};
    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "particles"}, {"e0", "e1"}, {"temperature"});
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    Datastore store;
    Tsb::TimeSeriesBrowser browser{uiInfo};
};

INSTANTIATE_TEST_SUITE_P(Seeds, LiveDataTest, ::testing::ValuesIn(seeds(20)));

TEST_P(LiveDataTest, ThousandsOfRecordsInBurstsEqualAFullRedraw)
{
    burst(100);
    open(false);
    for (const std::int64_t secondsPerPixel : {4, 13, 40}) {
        browser.timeView()->setTimeScale(
            {testStart + Ticks(std::int64_t(next) * ticksPerSecond), secondsPerPixel * ticksPerSecond, 700});
        for (int round = 0; round < 25; ++round) {
            burst(100);
            if (round % 8 == 5)
                browser.setSetup(browser.setup()); // new views take over what the former kept
            // Along with the data, by whole columns.
            TimeScale scale = browser.timeScale();
            const RecordTime end = testStart + Ticks(std::int64_t(next) * ticksPerSecond);
            scale.originPixel += 700 - scale.pixelAt(end) + std::int64_t(random() % 60);
            browser.timeView()->setTimeScale(scale);
            if (round % 3 != 0)
                settle();
        }
        EXPECT_EQ(store.size(), 1500) << "the oldest went";
        int index = 0;
        for (const auto &images : pictures())
            EXPECT_TRUE(images.first == images.second) << "plot " << index++ << " at " << secondsPerPixel;
    }
}

TEST_P(LiveDataTest, GapsAreFilledUpToRecordsThatComeInLater)
{
    burst(1400);
    open(true);
    browser.timeView()->setTimeScale({testStart + Ticks(std::int64_t(next) * ticksPerSecond), 4 * ticksPerSecond, 500});
    settle();
    browser.grab();
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 3; ++i) {
            comeIn();
            changeValues(store.at(store.size() - 1 - int(random() % 60)));
            invert(store.at(store.size() - 1 - int(random() % 60)));
        }
        settle();
        browser.grab();
    }
    QTest::qWait(300); // a moment later than the records themselves
    int index = 0;
    for (const auto &images : pictures())
        EXPECT_TRUE(images.first == images.second) << "plot " << index++;
}

} // namespace
