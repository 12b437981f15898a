#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "support/gestures.h"
#include "support/plotstore.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHash>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace {

QHash<const Tsb::View *, int> fits;

template<class T>
struct Counted : T {
    void fitScale() override
    {
        ++fits[this];
        T::fitScale();
    }
    static Tsb::View *make() { return new Counted; }
};

std::vector<Tsb::ViewKind> countedKinds()
{
    const QString opmode = QStringLiteral("opmode"), scatter = QStringLiteral("scatterplot"),
                  spectrogram = QStringLiteral("spectrogram");
    return {{opmode, &Tsb::OpmodeView::staticMetaObject, &Counted<Tsb::OpmodeView>::make},
            {scatter, &Tsb::ScatterPlotView::staticMetaObject, &Counted<Tsb::ScatterPlotView>::make},
            {spectrogram, &Tsb::SpectrogramView::staticMetaObject, &Counted<Tsb::SpectrogramView>::make}};
}

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

TEST_F(BrowserPlotsTest, TheMenuHasEveryKind)
{
    const char *const texts[] = {"Spectrogram", "Fraction concentration", "Electrometer current",
                                 "Variable",    "Inversion parameter",    "Operating mode"};
    ASSERT_EQ(browser.addPlotActions().size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(browser.addPlotActions()[i]->text(), QLatin1String(texts[i]));
        browser.addPlotActions()[i]->trigger();
    }
    ASSERT_EQ(browser.views().size(), 6);
    EXPECT_NE(view<Tsb::SpectrogramView>(0), nullptr);
    const int types[] = {ScatterPlotSettings::Concentration, ScatterPlotSettings::Electrometer,
                         ScatterPlotSettings::Variable, ScatterPlotSettings::Parameter};
    for (int i = 0; i < 4; ++i) {
        ASSERT_NE(view<Tsb::ScatterPlotView>(i + 1), nullptr);
        EXPECT_EQ(view<Tsb::ScatterPlotView>(i + 1)->plotSettings().type, types[i]);
    }
    EXPECT_NE(view<Tsb::OpmodeView>(5), nullptr);
}

TEST_F(BrowserPlotsTest, KeysMoveTheViewWithTheFocusAndChangeItsHeight)
{
    browser.addDiagnosticPlot("temperature");
    browser.addOpmodePlot();
    settle();
    const auto order = [this] {
        QString types;
        for (const QVariant &one : browser.setup().toList())
            types += one.toMap()["type"].toString() + ' ';
        return types.toStdString();
    };
    Tsb::View *const scatter = browser.views()[0];
    auto *const plot = scatter->findChild<Tsb::Plot *>();
    browser.activateWindow();
    plot->setFocus();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(plot, key, Qt::ControlModifier | Qt::ShiftModifier);
        settle();
    };
    const std::string above = order(), below = "opmode scatterplot ";
    for (const auto &[key, wanted] : {std::pair(Qt::Key_Down, below), std::pair(Qt::Key_Down, below),
                                      std::pair(Qt::Key_Up, above), std::pair(Qt::Key_Up, above)}) {
        press(key);
        EXPECT_EQ(order(), wanted) << int(key);
        EXPECT_EQ(QApplication::focusWidget(), plot);
    }
    const int height = scatter->height();
    press(Qt::Key_PageDown);
    EXPECT_GT(scatter->height(), height);
    for (int i = 0; i < 20; ++i)
        press(Qt::Key_PageUp);
    EXPECT_LT(scatter->height(), height);
    EXPECT_GE(scatter->height(), scatter->minimumSizeHint().height());
}

TEST_F(BrowserPlotsTest, AScaleThatNobodyTouchedGrowsWithACurveThatIsFollowed)
{
    browser.addDiagnosticPlot("temperature");
    browser.allFitScale();
    const auto *const scale = view<Tsb::ScatterPlotView>(0)->scaleWidget();
    const auto greatestAfter = [&](double value) {
        auto full = testRecord(2900, 2910 + value, 0);
        full->variables = RealVector(1, value);
        store.upsertFullRecord(full);
        QTest::qWait(700);
        return view<Tsb::ScatterPlotView>(0)->scaleWidget()->maximum();
    };
    const double least = scale->minimum(), greatest = scale->maximum();
    EXPECT_EQ(greatestAfter(5), greatest);
    browser.setGrowing(true);
    EXPECT_GT(greatestAfter(6), 6);
    EXPECT_GT(greatestAfter(7), 7) << "and again";
    EXPECT_EQ(scale->minimum(), least);
    browser.setSetup(browser.setup()); // as when the data are read again
    EXPECT_GT(greatestAfter(8), 8) << "and when it has come back";
    view<Tsb::ScatterPlotView>(0)->scaleWidget()->setMinMax(0, 2, true); // as the user does
    EXPECT_EQ(greatestAfter(9), 2);
}

TEST_F(BrowserPlotsTest, ColorsThatNobodySetGrowWithSpectraThatAreFollowed)
{
    auto *const first = new Tsb::SpectrogramView;
    browser.addView(first);
    first->setVisibleSpectra({infos[0]->hash});
    browser.allFitScale();
    const auto upperAfter = [&](double value) {
        for (int i = 0; i < 100; ++i)
            addSpectrumRecord(store, 100 + i * 10.0, 110 + i * 10.0, testSpectrum(infos[0], value));
        QTest::qWait(700);
        return view<Tsb::SpectrogramView>(0)->colorUpper();
    };
    const double upper = first->colorUpper();
    EXPECT_EQ(upperAfter(1e7), upper);
    browser.setGrowing(true);
    EXPECT_GE(upperAfter(1e8), 8);
    browser.setSetup(browser.setup());
    EXPECT_GE(upperAfter(1e9), 9) << "also when they have come back";
    view<Tsb::SpectrogramView>(0)->setColorLimits(1, 2);
    EXPECT_EQ(upperAfter(1e10), 2);
}

TEST_F(BrowserPlotsTest, RequestsOpenTheRightPlot)
{
    Q_EMIT uiInfo->requestElectrometerScatterplot(3);
    Q_EMIT uiInfo->requestVariableScatterplot(QStringLiteral("temperature"));
    Q_EMIT uiInfo->requestFlagPlot(QStringLiteral("{type: warning, message: Too humid}"));
    ASSERT_EQ(browser.views().size(), 3);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(0)->plotSettings().type, ScatterPlotSettings::Electrometer);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(0)->plotSettings().electrometerNumber, 3);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().type, ScatterPlotSettings::Variable);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().parameterName, QStringLiteral("temperature"));
    EXPECT_EQ(view<Tsb::OpmodeView>(2)->settings().toMap(),
              (QVariantMap{{"type", "flag"}, {"flag", "{type: warning, message: Too humid}"}}));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(view<Tsb::ScatterPlotView>(i)->settings().toMap()[QStringLiteral("propertiesVisible")].toBool());
}

TEST_F(BrowserPlotsTest, RequestsNeverMakeMoreThanTwoHundredViews)
{
    for (int i = 0; i < 199; ++i)
        browser.addView(new Tsb::OpmodeView);
    Q_EMIT uiInfo->requestElectrometerScatterplot(0);
    EXPECT_EQ(browser.views().size(), 200);
    Q_EMIT uiInfo->requestElectrometerScatterplot(1);
    Q_EMIT uiInfo->requestVariableScatterplot(QStringLiteral("temperature"));
    Q_EMIT uiInfo->requestFlagPlot(QStringLiteral("Too humid"));
    EXPECT_EQ(browser.views().size(), 200);
    browser.closeView(browser.views().first());
    Q_EMIT uiInfo->requestVariableScatterplot(QStringLiteral("temperature"));
    EXPECT_EQ(browser.views().size(), 200);
}

TEST_F(BrowserPlotsTest, TheDefaultStackIsFittedAndGoesRound)
{
    browser.addDefaultStack();
    settle();
    ASSERT_EQ(browser.views().size(), 5);
    EXPECT_NE(view<Tsb::OpmodeView>(0), nullptr);
    EXPECT_EQ(view<Tsb::ScatterPlotView>(1)->plotSettings().visibleSpectra, QSet<QString>{infos[0]->hash});
    EXPECT_EQ(view<Tsb::ScatterPlotView>(2)->plotSettings().type, ScatterPlotSettings::Variable);
    for (int i = 0; i < 2; ++i) {
        auto *const spectrogram = view<Tsb::SpectrogramView>(3 + i);
        ASSERT_NE(spectrogram, nullptr);
        EXPECT_EQ(spectrogram->visibleSpectra(), QSet<QString>{infos[i]->hash});
        EXPECT_NEAR(spectrogram->colorLower(), std::log10(50.0), 0.05);
        EXPECT_NEAR(spectrogram->colorUpper(), std::log10(150.0), 0.05);
    }
    const auto contents = [](const QFrame *frame) {
        return qMakePair(frame->mapToGlobal(frame->contentsRect().topLeft()).x(),
                         frame->mapToGlobal(frame->contentsRect().topRight()).x());
    };
    const auto plots = browser.findChildren<Tsb::Plot *>();
    EXPECT_EQ(plots.size(), 5);
    for (const Tsb::Plot *plot : plots)
        EXPECT_EQ(contents(plot), contents(browser.timeView())) << plot->metaObject()->className();

    const QVariant setup = browser.setup();
    browser.setSetup(setup);
    settle();
    EXPECT_EQ(browser.setup(), setup);
}

/// A fit reads all the data in sight: with a full store, more than once is what the first picture waits for.
TEST_F(BrowserPlotsTest, EachNewViewIsFittedOnce)
{
    Tsb::TimeSeriesBrowser counted(uiInfo, nullptr, countedKinds());
    counted.resize(900, 700);
    counted.setDatastore(&store);
    counted.show();
    counted.fitTimescale(store.at(0)->beginTime, store.at(store.size() - 1)->endTime);
    settle();
    fits.clear();
    counted.addDefaultStack();
    settle();
    for (QAction *action : counted.addPlotActions())
        action->trigger();
    Q_EMIT uiInfo->requestVariableScatterplot(QStringLiteral("temperature"));
    settle();
    const auto views = counted.views();
    ASSERT_EQ(views.size(), 5 + 6 + 1);
    for (const Tsb::View *one : views) {
        if (qobject_cast<const Tsb::OpmodeView *>(one))
            continue; // nothing to fit
        EXPECT_EQ(fits.value(one), 1) << one->metaObject()->className();
    }
}

/// Counts how often plots are painted.
class PaintCount : public QObject {
public:
    QHash<const QObject *, int> counts;

    PaintCount() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<Tsb::Plot *>(watched))
            ++counts[watched];
        return false;
    }
};

TEST_F(BrowserPlotsTest, TheDefaultStackIsPaintedOnce)
{
    PaintCount painted;
    browser.addDefaultStack();
    settle();
    ASSERT_EQ(painted.counts.size(), 5);
    for (const int count : painted.counts)
        EXPECT_EQ(count, 1);
}

TEST_F(BrowserPlotsTest, TabReachesEveryButtonBoxAndList)
{
    for (QAction *action : browser.addPlotActions())
        action->trigger();
    for (Tsb::View *one : browser.views()) {
        if (auto *scatter = dynamic_cast<Tsb::ScatterPlotView *>(one))
            scatter->setPropertiesVisible(true);
    }
    settle();
    QSet<QWidget *> wanted, reached;
    for (QWidget *widget : browser.findChildren<QWidget *>()) {
        const bool control = qobject_cast<QAbstractButton *>(widget) || qobject_cast<QComboBox *>(widget) ||
                             qobject_cast<QAbstractSpinBox *>(widget) || qobject_cast<Tsb::Plot *>(widget);
        if (control && widget->isVisible() && widget->isEnabled())
            wanted.insert(widget);
    }
    EXPECT_GT(wanted.size(), 25);
    browser.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&browser));
    for (int i = 0; i < 3 * wanted.size(); ++i) {
        QWidget *const focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : &browser, Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (QWidget *widget : wanted - reached)
        ADD_FAILURE() << widget->metaObject()->className() << " in " << widget->parent()->metaObject()->className();
}

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
