#include "browserplots.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"

#include <QTest>

namespace {

QVariant entry(const char *kind, const QVariant &settings)
{
    return QVariantMap{{"type", QLatin1String(kind)}, {"settings", settings}};
}

/// Setups of one kind of view that nobody sane writes: of each view one key, or all there is, is odd.
struct HostileSetups : BrowserPlotsTest, testing::WithParamInterface<QStringList> {
    HostileSetups()
    {
        const QByteArray kind = GetParam()[0].toLatin1();
        const QVariantList odd =
            QVariantList() << QVariant() << qQNaN() << qInf() << -qInf() << 0 << -1 << 1e300 << -1e300 << qulonglong(-1)
                           << true << QString(100'000, 'x') << QString(5000, '\n') << "<b>&amp;%1"
                           << QVariant(QVariantList{1, qQNaN()}) << QVariantMap{{"x", 1}} << QByteArray("\xff\x00", 2);
        for (const QVariant &value : odd) {
            oddKeys << QString();
            setup << entry(kind, value);
            for (const QString &key : GetParam().mid(2)) {
                QVariantMap settings{{"type", GetParam()[1]},
                                     {"flag", "a flag"},
                                     {"smoothingEnabled", true},
                                     {"totalConcentration", false},
                                     {"spectra", QStringList{infos[0]->hash}},
                                     {"visibleSpectra", QStringList{infos[0]->hash}}};
                if (key.startsWith(QLatin1String("mobility")))
                    settings["fractionScale"] = "mobility";
                settings[key] = value;
                oddKeys << key;
                setup << entry(kind, settings);
            }
        }
        browser.setSetup(setup);
    }

    QVariantList setup;
    QStringList oddKeys; ///< of each view
};
INSTANTIATE_TEST_SUITE_P(
    Kinds, HostileSetups,
    testing::Values(QStringList{"opmode", "opmode", "type"}, QStringList{"opmode", "flag", "type", "flag"},
                    QStringList{"scatterplot", "electrometer", "type", "height", "propertiesVisible", "datalabels",
                                "electrometerNumber", "showRawCurrents"},
                    QStringList{"scatterplot", "parameter", "scaleMin", "scaleMax", "parameterName"},
                    QStringList{"scatterplot", "fraction", "scaleMin", "fractionScale", "concentrationType",
                                "totalConcentration", "visibleSpectra", "diameterSmallerLimit", "diameterLargerLimit",
                                "mobilitySmallerLimit", "mobilityLargerLimit"},
                    QStringList{"scatterplot", "spectrumparameter", "visibleSpectra", "spectrumParameter"},
                    QStringList{"spectrogram", "", "height", "spectra", "colorLower", "colorUpper", "smoothingCoef",
                                "smoothingEnabled", "colormap", "whiteBackground", "autoFillGaps"}));

TEST_P(HostileSetups, AreDrawnWithinBoundsAndStable)
{
    browser.allFitScale();
    settle();
    browser.grab();
    const QVariantList kept = browser.setup().toList();
    ASSERT_EQ(kept.size(), setup.size());
    for (Tsb::View *one : browser.views()) {
        EXPECT_GE(one->height(), 16);
        EXPECT_LE(one->height(), 4096);
        if (const auto *scatter = dynamic_cast<Tsb::ScatterPlotView *>(one)) {
            EXPECT_TRUE(std::isfinite(scatter->scaleWidget()->minimum() + scatter->scaleWidget()->maximum()));
        }
        if (const auto *spectrogram = dynamic_cast<Tsb::SpectrogramView *>(one)) {
            EXPECT_FALSE(spectrogram->colorUpper() - spectrogram->colorLower() > 20);
            EXPECT_GE(Colormap::indexOfName(spectrogram->colormapName().toStdString()), 0);
        }
    }
    browser.setSetup(kept);
    const QVariantList again = browser.setup().toList();
    for (int i = 0; i < kept.size(); ++i)
        EXPECT_EQ(again.value(i), kept[i]) << qPrintable(oddKeys[i]);
}

TEST_P(HostileSetups, LoseOnlyTheOddValue)
{
    const QVariantList all = browser.setup().toList();
    for (int i = 0; i < setup.size(); ++i) {
        if (QStringList{QString(), "type", "flag"}.contains(oddKeys[i])) // the view may be of another kind then
            continue;
        const QVariantMap given = setup[i].toMap()["settings"].toMap(), kept = all[i].toMap()["settings"].toMap();
        for (auto value = given.begin(); value != given.end(); ++value) {
            if (value.key() != oddKeys[i] && kept.contains(value.key())) {
                EXPECT_EQ(kept[value.key()], *value) << qPrintable(value.key()) << " beside " << qPrintable(oddKeys[i]);
            }
        }
    }
}

TEST_F(BrowserPlotsTest, SetupsKeepWhatTheDataDoNotHave)
{
    const QVariantList given{
        entry("opmode", QVariantMap{{"type", "flag"}, {"flag", "nobody raises it"}}),
        entry("scatterplot", QVariantMap{{"type", "parameter"}, {"parameterName", "no variable"}}),
        entry("scatterplot", QVariantMap{{"type", "electrometer"}, {"electrometerNumber", 4711}}),
        entry("scatterplot", QVariantMap{{"type", "fraction"}, {"visibleSpectra", QStringList{"no id"}}}),
        entry("spectrogram", QVariantMap{{"spectra", QStringList{"no id"}}})};
    browser.setSetup(given);
    settle();
    browser.grab();
    uiInfo->publish(); // every list of choices is made anew
    settle();
    const QVariantList written = browser.setup().toList();
    ASSERT_EQ(written.size(), given.size());
    for (int i = 0; i < given.size(); ++i) {
        const QVariantMap settings = given[i].toMap()["settings"].toMap();
        for (auto value = settings.begin(); value != settings.end(); ++value)
            EXPECT_EQ(written[i].toMap()["settings"].toMap()[value.key()], value.value()) << i;
    }
}

TEST_F(BrowserPlotsTest, ANameThatTakesSecondsToLayOutIsNone)
{
    const QString endless(1'000'000, 'x');
    browser.setSetup(
        QVariantList{entry("scatterplot", QVariantMap{{"type", "parameter"}, {"parameterName", endless}})});
    EXPECT_NE(view<Tsb::ScatterPlotView>(0)->plotSettings().parameterName, endless);
}

TEST_F(BrowserPlotsTest, AbsurdTimesDrawSomethingBounded)
{
    const RecordTime late = recordTimeFromTicks(253'402'300'799 * ticksPerSecond); // the end of the year 9999
    const RecordTime times[] = {RecordTime(),
                                recordTimeFromTicks(1),
                                earliestRecordTime,
                                late,
                                latestRecordTime - Ticks(5),
                                latestRecordTime,
                                testStart,
                                testStart,
                                testStart - Ticks(ticksPerDay),
                                recordTimeFromTicks(-5 * ticksPerDay)};
    for (const RecordTime begin : times) {
        for (const RecordTime end : times) {
            auto full = testRecord(0, 0, int(store.size() % 2));
            full->beginTime = begin;
            full->endTime = end;
            addWithSpectrum(full);
        }
    }
    browser.addDefaultStack();
    for (Tsb::View *one : browser.views())
        if (auto *scatter = dynamic_cast<Tsb::ScatterPlotView *>(one))
            scatter->setDatalabelsEnabled(true);
    settle();
    for (const RecordTime origin : times) {
        for (const std::int64_t ticks :
             {TimeScale::leastTicksPerPixel, ticksPerSecond, TimeScale::greatestTicksPerPixel}) {
            browser.timeView()->setTimeScale({origin, ticks, 300});
            browser.allFitScale();
            browser.grab();
        }
    }
    for (int i = 0; i < store.size(); i += 7) {
        browser.selectRecord(store.at(i));
        browser.grab();
    }
    for (Tsb::Plot *plot : browser.findChildren<Tsb::Plot *>()) {
        for (const int x : {3, 300, 600}) {
            QTest::mouseClick(plot, Qt::LeftButton, {}, {x, 10});
            QTest::keyClick(plot, Qt::Key_PageUp);
        }
    }
    browser.fitTimescale(store.at(0)->beginTime, store.at(store.size() - 1)->endTime);
    settle();
    browser.grab();
    EXPECT_TRUE(browser.timeScale().isRepresentable(browser.width()));
}

/// All records of one begin: what a clock leaves that stood still, or was never set.
TEST_F(BrowserPlotsTest, AStoreOfOneMomentIsDrawn)
{
    QObject::connect(&browser, &Tsb::TimeSeriesBrowser::recordChosen, &browser, &Tsb::TimeSeriesBrowser::selectRecord);
    browser.addDefaultStack();
    const RecordTime late = recordTimeFromTicks(253'402'300'799 * ticksPerSecond);
    for (const RecordTime begin : {testStart, recordTimeFromTicks(1), late, earliestRecordTime}) {
        for (const std::int64_t span : {std::int64_t(0), 10 * ticksPerSecond, -10 * ticksPerSecond}) {
            Datastore moment;
            browser.setDatastore(&moment);
            for (int i = 0; i < 400; ++i) {
                auto full = testRecord(0, 0, i % 2);
                full->beginTime = begin;
                full->endTime = recordTimeFromTicks(saturatedAdd(ticksOf(begin), span));
                full->variables = RealVector(1, i);
                const auto record = makeRecord(*full);
                record->spectra = store.at(i % 2)->spectra;
                moment.insertRecord(moment.lowerBound(begin), record);
                moment.enterSpectrum(record, record->spectra.front());
            }
            browser.fitTimescale(moment.at(0)->beginTime, moment.at(moment.size() - 1)->endTime);
            browser.redrawPlots();
            browser.grab();
            browser.allFitScale();
            for (const std::int64_t ticks : {TimeScale::leastTicksPerPixel, TimeScale::greatestTicksPerPixel}) {
                browser.timeView()->setTimeScale({begin, ticks, 300});
                browser.grab();
            }
            for (Tsb::Plot *plot : browser.findChildren<Tsb::Plot *>()) {
                browser.selectRecord(nullptr);
                QTest::mouseClick(plot, Qt::LeftButton, {}, {300, 10});
                EXPECT_TRUE(browser.currentRecord()) << ticksOf(begin) << ' ' << span;
                for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Up})
                    QTest::keyClick(plot, key);
                EXPECT_TRUE(browser.currentRecord());
            }
            EXPECT_TRUE(browser.timeScale().isRepresentable(browser.width()));
            browser.selectRecord(nullptr);
            browser.setDatastore(&store);
        }
    }
}

} // namespace
