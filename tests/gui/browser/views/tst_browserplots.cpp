#include "browserplots.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/verticalscalewidget.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHash>
#include <QTest>

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

std::vector<Tsb::ViewKind> countedKinds()
{
    const QString opmode = QStringLiteral("opmode"), scatter = QStringLiteral("scatterplot"),
                  spectrogram = QStringLiteral("spectrogram");
    return {{opmode, &Tsb::OpmodeView::staticMetaObject, &Counted<Tsb::OpmodeView>::make},
            {scatter, &Tsb::ScatterPlotView::staticMetaObject, &Counted<Tsb::ScatterPlotView>::make},
            {spectrogram, &Tsb::SpectrogramView::staticMetaObject, &Counted<Tsb::SpectrogramView>::make}};
}

TEST_F(BrowserPlotsTest, TheMenuHasEveryKind)
{
    QStringList texts, types;
    for (QAction *action : browser.addPlotActions()) {
        texts << action->text();
        action->trigger();
    }
    for (const QVariant &one : browser.setup().toList())
        types << one.toMap()["type"].toString() + ' ' + one.toMap()["settings"].toMap()["type"].toString();
    EXPECT_EQ(texts, (QStringList{"Spectrogram", "Fraction concentration", "Electrometer current", "Variable",
                                  "Inversion parameter", "Operating mode"}));
    EXPECT_EQ(types, (QStringList{"spectrogram ", "scatterplot fraction", "scatterplot electrometer",
                                  "scatterplot parameter", "scatterplot spectrumparameter", "opmode opmode"}));
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

TEST_F(BrowserPlotsTest, LockedColorsOfASetupAreNotThoseOfTheViewsBeforeIt)
{
    const auto locked = [this](double lower) {
        return QVariantMap{{"type", "spectrogram"},
                           {"settings", QVariantMap{{"spectra", QStringList{infos[0]->hash}},
                                                    {"colorLower", lower},
                                                    {"colorUpper", lower + 1},
                                                    {"lockColors", true}}}};
    };
    const QVariantList setups[] = {QVariantList{locked(0)}, QVariantList{locked(2)},
                                   QVariantList{locked(3), locked(3)}};
    for (const QVariantList &setup : setups) {
        browser.setSetup(setup);
        ASSERT_EQ(browser.views().size(), setup.size());
        for (int i = 0; i < setup.size(); ++i) {
            const QVariantMap wanted = setup[i].toMap()["settings"].toMap();
            const QVariantMap shown = browser.views()[i]->settings().toMap();
            for (const char *key : {"colorLower", "colorUpper", "lockColors"})
                EXPECT_EQ(shown[key], wanted[key]) << i << key;
        }
    }
    settle();
    browser.views()[0]->fitScale();
    EXPECT_EQ(view<Tsb::SpectrogramView>(1)->colorLower(), view<Tsb::SpectrogramView>(0)->colorLower());
    EXPECT_NE(view<Tsb::SpectrogramView>(1)->colorLower(), 3) << "they are locked to each other";
}

TEST_F(BrowserPlotsTest, APictureTellsWhatIsOffItsScales)
{
    browser.addDiagnosticPlot("temperature");
    settle();
    auto *const scale = view<Tsb::ScatterPlotView>(0)->scaleWidget();
    const auto imageAt = [&](double greatest) {
        scale->setMinMax(-2, greatest, true);
        return PictureFile::imageOf(browser.drawing(), 1);
    };
    const QImage off = imageAt(0.5);
    EXPECT_TRUE(scale->toolTip().contains("off scale: ")) << scale->toolTip().toStdString();
    QTest::qWait(300); // the plot has counted by itself
    EXPECT_EQ(imageAt(0.5), off);
    const QImage within = imageAt(2);
    EXPECT_FALSE(scale->toolTip().contains("off scale"));
    QTest::qWait(300);
    EXPECT_EQ(imageAt(2), within);
}

TEST_F(BrowserPlotsTest, RequestsOpenTheRightPlotUpToTwoHundred)
{
    Q_EMIT uiInfo->requestElectrometerScatterplot(3);
    Q_EMIT uiInfo->requestVariableScatterplot("temperature");
    Q_EMIT uiInfo->requestFlagPlot("{type: warning, message: Too humid}");
    ASSERT_EQ(browser.views().size(), 3);
    const auto settings = [this](int index) { return browser.views()[index]->settings().toMap(); };
    EXPECT_EQ(settings(0)["type"], "electrometer");
    EXPECT_EQ(settings(0)["electrometerNumber"], 3);
    EXPECT_EQ(settings(1)["type"], "parameter");
    EXPECT_EQ(settings(1)["parameterName"], "temperature");
    EXPECT_EQ(settings(2), (QVariantMap{{"type", "flag"}, {"flag", "{type: warning, message: Too humid}"}}));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(settings(i)["propertiesVisible"].toBool());
    while (browser.views().size() < 200)
        browser.addView(new Tsb::OpmodeView);
    Q_EMIT uiInfo->requestElectrometerScatterplot(1);
    Q_EMIT uiInfo->requestVariableScatterplot("temperature");
    Q_EMIT uiInfo->requestFlagPlot("Too humid");
    EXPECT_EQ(browser.views().size(), 200);
    browser.closeView(browser.views().first());
    Q_EMIT uiInfo->requestVariableScatterplot("temperature");
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
        return QRect(frame->mapToGlobal(frame->contentsRect().topLeft()), QSize(frame->contentsRect().width(), 0));
    };
    const QRect axis = contents(browser.timeView());
    for (const Tsb::Plot *plot : browser.findChildren<Tsb::Plot *>()) {
        EXPECT_EQ(contents(plot).left(), axis.left()) << plot->metaObject()->className();
        EXPECT_EQ(contents(plot).right(), axis.right()) << plot->metaObject()->className();
    }
    const QVariant setup = browser.setup();
    browser.setSetup(setup);
    settle();
    EXPECT_EQ(browser.setup(), setup);
}

/// A fit reads all the data in sight: with a full store, more than once is what the first picture waits for.
TEST_F(BrowserPlotsTest, EachNewViewIsFittedOnceAndPaintedOnce)
{
    Tsb::TimeSeriesBrowser counted(uiInfo, nullptr, countedKinds());
    counted.resize(900, 700);
    counted.setDatastore(&store);
    counted.show();
    counted.fitTimescale(store.at(0)->beginTime, store.at(store.size() - 1)->endTime);
    settle();
    fits.clear();
    PaintCount painted;
    counted.addDefaultStack();
    settle();
    EXPECT_EQ(painted.counts.values(), (QList<int>{1, 1, 1, 1, 1}));
    for (QAction *action : counted.addPlotActions())
        action->trigger();
    Q_EMIT uiInfo->requestVariableScatterplot("temperature");
    settle();
    const auto views = counted.views();
    ASSERT_EQ(views.size(), 5 + 6 + 1);
    for (const Tsb::View *one : views) {
        const bool canFit = !qobject_cast<const Tsb::OpmodeView *>(one);
        EXPECT_TRUE(!canFit || fits.value(one) == 1) << one->metaObject()->className();
    }
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

} // namespace
