// Restoring a layout of twenty views over 500 000 records, from the setup to the finished picture, beside a redraw of
// the same views at another zoom, by turns. For a first argument of 1 no view stands before, as when data are opened:
// the columns of values are made, too. For a second of 1 the time is that of the clock, else that of the processors.

#include "columns/setupkeys.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/frame/framedocks.h"
#include "gui/frame/mainwindowbase.h"
#include "gui/frame/windowlayout.h"
#include "support/gestures.h"
#include "support/measuring.h"
#include "timeseries/benchstore.h"
#include "windowsetup/setupkeys.h"

#include <QLayout>

namespace SetupKeys = Tsb::SetupKeys;

namespace {

constexpr QSize windowSize(2000, 2900); // all twenty views are seen
constexpr int viewCount = 20, rounds = 15;

class Window : public MainWindowBase {
public:
    explicit Window(BenchStore &data) : m_data(data)
    {
        setAboutInfo({}, {});
        setupActions();
        setupContextActions();
        setupDocks();
        setupToolbar();
        setupMenus();
        uiInfo()->setData(data.uiInfo()->metadata(), data.uiInfo()->spectrumInfos());
        uiInfo()->publish();
        resize(windowSize);
        show();
        setDatastore({std::shared_ptr<void>(), &data.store()});
        browser()->setSetup(twentyViews());
        fitTimescale();
        settle();
        browser()->allFitScale();
        settle();
        layout().store(m_setup);
        const auto views = browser()->views();
        if (views.size() != viewCount || views.last()->visibleRegion().isEmpty())
            qFatal("not all of the views are seen");
    }
    void restore()
    {
        layout().restore(m_setup, WindowSetup::OfOpenedData);
        fitTimescale();
        browser()->fitUntoldScales();
        settle();
    }
    void closeViews()
    {
        clearWindowSetup();
        settle();
    }
    /// At another zoom, with all that the views show beside their plots.
    void redraw(int turn)
    {
        for (QWidget *widget : browser()->findChildren<QWidget *>())
            widget->update();
        TimeScale scale = browser()->timeScale();
        scale.ticksPerPixel = std::int64_t(double(scale.ticksPerPixel) * (turn % 2 == 0 ? 0.9 : 1 / 0.9));
        browser()->timeView()->setTimeScale(scale);
        settle();
    }

private:
    WindowLayout layout() { return WindowLayout(*this, *browser(), *uiInfo(), *docks()->log()); }

    /// A mode strip, three spectrograms, and scatter plots of variables, concentrations and electrometers.
    QVariant twentyViews() const
    {
        const auto entry = [](const char *type, QVariantMap settings, int height) {
            settings.insert(SetupKeys::height, height);
            return QVariantMap{{SetupKeys::type, type}, {SetupKeys::settings, settings}};
        };
        const QStringList spectra{m_data.info(0)->hash, m_data.info(1)->hash};
        QVariantList list{entry(SetupKeys::opmodeView, {{SetupKeys::type, "opmode"}}, 0)};
        for (int i = 0; i < 3; ++i)
            list << entry(SetupKeys::spectrogramView, {{SetupKeys::spectra, QStringList{spectra[i % 2]}}}, 200);
        for (int i = 0; list.size() < viewCount; ++i) {
            const QVariantMap kinds[] = {
                {{SetupKeys::type, "parameter"},
                 {SetupKeys::parameterName, QStringLiteral("variable %1").arg(i % BenchStore::variables)}},
                {{SetupKeys::type, "fraction"}, {SetupKeys::visibleSpectra, spectra}},
                {{SetupKeys::type, "electrometer"}, {SetupKeys::electrometerNumber, i % BenchStore::electrometers}}};
            list << entry(SetupKeys::scatterPlotView, kinds[i % 3], 90);
        }
        return list;
    }

    BenchStore &m_data;
    QVariantMap m_setup;
};

void restoreBesideRedraw(benchmark::State &state)
{
    Window window(BenchStore::shared());
    const clockid_t clock = state.range(1) != 0 ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID;
    std::vector<double> restoring, redrawing;
    for (auto _ : state) {
        for (int i = 0; i < rounds; ++i) {
            if (state.range(0) != 0)
                window.closeViews();
            restoring.push_back(timeOf([&window] { window.restore(); }, clock));
            redrawing.push_back(timeOf([&window, i] { window.redraw(i); }, clock));
        }
    }
    countTimes(state, restoring, redrawing);
    state.counters["allowed"] = 1.5 * median(redrawing) + 10;
}
BENCHMARK(restoreBesideRedraw)->ArgsProduct({{0, 1}, {0, 1}})->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
