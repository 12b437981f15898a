// One plot at a time.

#include "columns/scattervalues.h"
#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/plots/scatterplot.h"
#include "support/measuring.h"
#include "timeseries/bareplot.h"
#include "timeseries/peers.h"

namespace {

constexpr int width = 1600;
constexpr int scatterHeight = 120;
constexpr int stripHeight = 24;
const ValueScale variableScale{true, 10, 25.0 / scatterHeight, 0};
const ValueScale decades{true, 1, 4.0 / scatterHeight, 0};

using BareScatter = BarePlot<Tsb::ScatterPlot>;
using BareStrip = BarePlot<Tsb::OpmodePlot>;

std::unique_ptr<BareScatter> scatterPlot(BenchStore &data, const ScatterPlotSettings &settings)
{
    auto plot = std::make_unique<BareScatter>(data, width, scatterHeight);
    plot->setUiInfo(data.uiInfo());
    plot->setScale(settings.type == ScatterPlotSettings::Concentration ? decades : variableScale);
    plot->setSettings(settings);
    return plot;
}

std::unique_ptr<BareStrip> strip(BenchStore &data)
{
    auto plot = std::make_unique<BareStrip>(data, width, stripHeight);
    plot->setUiInfo(data.uiInfo());
    return plot;
}

void scatterBesideQwt(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    const auto plot = scatterPlot(data, variablePlot(0));
    QVector<double> values;
    for (int i = 0; i < data.count(); ++i)
        values.append(BenchStore::variable(i, 0));
    PeerScatter peer(width, scatterHeight, {values}, 10, 35);
    compare(
        state, [&] { plot->redraw(); }, [&] { peer.draw(); });
}
BENCHMARK(scatterBesideQwt)->Iterations(60)->Unit(benchmark::kMillisecond);

/// Eight points a record by the painter, in the order of the records.
void drawPointsOfRecords(BareScatter &plot, const Datastore &store, const std::vector<QColor> &colors, QImage &image)
{
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    for (const auto &record : store.records()) {
        const double x = plot.timeScale().positionOf(record->midTime);
        const double y = image.height() - plot.scale().pixel(record->variables[0]);
        QPointF points[8];
        int n = 0;
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (dx != 0 || dy != 0)
                    points[n++] = QPointF(x + dx, y + dy);
        painter.setPen(QPen(QBrush(colors[std::size_t(record->opmode)]), 0));
        painter.drawPoints(points, 8);
    }
}

void scatterBesideDrawPoints(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    const auto plot = scatterPlot(data, variablePlot(0));
    QImage image(width, scatterHeight, QImage::Format_ARGB32_Premultiplied);
    compare(
        state, [&] { plot->redraw(); },
        [&] { drawPointsOfRecords(*plot, data.store(), data.uiInfo()->opmodeColors(), image); });
    if (image != plot->target())
        state.SkipWithError("the pictures differ");
}
BENCHMARK(scatterBesideDrawPoints)->Iterations(20)->Unit(benchmark::kMillisecond);

void stripBesideScatter(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    const auto plot = scatterPlot(data, variablePlot(0));
    const auto modes = strip(data);
    compare(
        state, [&] { modes->redraw(); }, [&] { plot->redraw(); });
}
BENCHMARK(stripBesideScatter)->Iterations(60)->Unit(benchmark::kMillisecond);

/// Every bar by the painter, in the order of the records.
void drawEachBar(const TimeScale &scale, const Datastore &store, const std::vector<QColor> &colors, QImage &image)
{
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto &record : store.records()) {
        const QColor &color = colors[std::size_t(record->opmode)];
        const double x0 = scale.positionOf(record->beginTime), x1 = scale.positionOf(record->endTime);
        painter.setPen(QPen(QBrush(color), 0, Qt::SolidLine, Qt::SquareCap));
        painter.setBrush(Tsb::paleTint(color));
        painter.drawRect(QRectF((x0 + x1 - std::max(x1 - x0 - 1, 0.0)) / 2, 1.5, std::max(x1 - x0 - 1, 0.0),
                                image.height() - 3));
    }
}

void stripBesideEachBar(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    const auto modes = strip(data);
    QImage image = modes->target();
    compare(
        state, [&] { modes->redraw(); },
        [&] { drawEachBar(modes->timeScale(), data.store(), data.uiInfo()->opmodeColors(), image); });
}
BENCHMARK(stripBesideEachBar)->Iterations(5)->Unit(benchmark::kMillisecond);

// ---- what a change of settings costs, from nothing

using Work = std::function<void(BareScatter &)>;

/// Another variable each time, beside reading its values and, for a drawing, the modes that colour them.
void anotherVariable(benchmark::State &state, const Work &work, bool withModes)
{
    BenchStore &data = BenchStore::shared();
    const auto plot = scatterPlot(data, variablePlot(0));
    int slot = 0;
    compare(
        state,
        [&] {
            slot = (slot + 1) % BenchStore::variables;
            plot->setSettings(variablePlot(slot));
            work(*plot);
        },
        [&] {
            double sum = 0;
            for (const auto &record : data.store().records())
                sum += record->variables[std::size_t(slot)] + (withModes ? record->opmode : 0);
            benchmark::DoNotOptimize(sum);
        });
}

/// The total concentrations of both series, without keeping them.
double sumOfDotProducts(BenchStore &data)
{
    double sum = 0;
    for (int which = 0; which < 2; ++which) {
        const auto weights = Tsb::concentrationWeights(*data.info(which), concentrationPlot(data));
        for (const SpectrumRecord &entry : *data.store().series(data.info(which).get()))
            sum += SpectMath::concentrationOf(*entry.spectrum, weights);
    }
    return sum;
}

/// Another moment each time, beside the dot products.
void anotherMoment(benchmark::State &state, const Work &work)
{
    BenchStore &data = BenchStore::shared();
    ScatterPlotSettings settings = concentrationPlot(data);
    const auto plot = scatterPlot(data, settings);
    int turn = 0;
    compare(
        state,
        [&] {
            settings.concentrationType = ++turn % 2 == 0 ? SpectMath::ConcentrationType::surface
                                                         : SpectMath::ConcentrationType::radius; // not kept ready
            plot->setSettings(settings);
            work(*plot);
        },
        [&] { benchmark::DoNotOptimize(sumOfDotProducts(data)); });
}

void draw(BareScatter &plot)
{
    plot.redraw();
}

void fit(BareScatter &plot)
{
    auto range = plot.minMax();
    benchmark::DoNotOptimize(range);
}

void firstDrawOfVariable(benchmark::State &state)
{
    anotherVariable(state, draw, true);
}
BENCHMARK(firstDrawOfVariable)->Iterations(30)->Unit(benchmark::kMillisecond);

void firstDrawOfConcentrations(benchmark::State &state)
{
    anotherMoment(state, draw);
}
BENCHMARK(firstDrawOfConcentrations)->Iterations(30)->Unit(benchmark::kMillisecond);

void fitOfVariable(benchmark::State &state)
{
    anotherVariable(state, fit, false);
}
BENCHMARK(fitOfVariable)->Iterations(30)->Unit(benchmark::kMillisecond);

void fitOfConcentrations(benchmark::State &state)
{
    anotherMoment(state, fit);
}
BENCHMARK(fitOfConcentrations)->Iterations(30)->Unit(benchmark::kMillisecond);

// ---- what a plot keeps

/// Bytes that a plot's first draw adds, for each point it shows.
void bytesKept(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    data.store().recordSpans(); // belong to the store
    for (int i = 0; i < 2; ++i)
        data.store().seriesSpans(data.info(i).get());
    struct Kind {
        const char *name;
        ScatterPlotSettings settings;
        double points;
    };
    const double records = data.count();
    const std::vector<Kind> kinds = {{"variable", variablePlot(0), records},
                                     {"electrometer", electrometerPlot(0), 2 * records},
                                     {"concentration", concentrationPlot(data), 2 * records},
                                     {"parameter", parameterPlot(data), 2 * records}};
    for (auto _ : state) {
        for (const Kind &kind : kinds) {
            const auto plot = scatterPlot(data, kind.settings);
            const double before = bytesInUse();
            plot->redraw();
            state.counters[kind.name] = (bytesInUse() - before) / kind.points;
        }
    }
}
BENCHMARK(bytesKept)->Iterations(1);

// ---- the same view over twice the store

void columnsInADoubledStore(benchmark::State &state)
{
    static BenchStore half(250'000);
    BenchStore &data = BenchStore::shared();
    const int columns = int(state.range(0)); // at the right edge, which shows the middle of the smaller store
    const auto small = scatterPlot(half, variablePlot(0)), large = scatterPlot(data, variablePlot(0));
    const auto smallStrip = strip(half), largeStrip = strip(data);
    TimeScale scale = small->timeScale();
    scale.ticksPerPixel /= 2;
    for (Tsb::Plot *plot :
         std::initializer_list<Tsb::Plot *>{small.get(), large.get(), smallStrip.get(), largeStrip.get()})
        plot->setTimeScale(scale);
    const int rounds = columns < width ? 200 : 1; // a few columns are below what the clock tells apart
    compare(
        state,
        [&] {
            for (int i = 0; i < rounds; ++i) {
                large->redraw(width - columns);
                largeStrip->redraw(width - columns);
            }
        },
        [&] {
            for (int i = 0; i < rounds; ++i) {
                small->redraw(width - columns);
                smallStrip->redraw(width - columns);
            }
        });
}
BENCHMARK(columnsInADoubledStore)->Arg(1)->Arg(width)->Iterations(50)->Unit(benchmark::kMillisecond);

} // namespace
