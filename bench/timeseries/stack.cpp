// Six views together.
//
//   timeseries_bench --benchmark_filter=-liveFeed   all but the feed
//   timeseries_bench --benchmark_filter=liveFeed    a minute of 200 records a second

#include "gui/browser/drawing/colormap.h"
#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/plots/scatterplot.h"
#include "gui/browser/plots/spectrogramplot.h"
#include "support/measuring.h"
#include "timeseries/bareplot.h"
#include "timeseries/browserwindow.h"
#include "timeseries/peers.h"

#include <cmath>
#include <cstring>
#include <numeric>

namespace {

constexpr int width = 1600;
constexpr int stripHeight = 24;
constexpr int spectrogramHeight = 240;
constexpr int scatterHeight = 120;
constexpr int stackHeight = stripHeight + 2 * spectrogramHeight + 3 * scatterHeight;

const ValueScale variableScale{true, 10, 25.0 / scatterHeight, 0};
const ValueScale currentScale{true, 0, 220.0 / scatterHeight, 0};
const ValueScale decades{true, 1, 4.0 / scatterHeight, 0};

/// The plots of the six views without a window, painted one below the other.
class Stack {
public:
    explicit Stack(BenchStore &data)
    {
        auto strip = std::make_unique<BarePlot<Tsb::OpmodePlot>>(data, width, stripHeight);
        strip->setUiInfo(data.uiInfo());
        m_plots.push_back(std::move(strip));
        for (int i = 0; i < 2; ++i) {
            auto plot = std::make_unique<BarePlot<Tsb::SpectrogramPlot>>(data, width, spectrogramHeight);
            plot->setSpectrum(data.info(i), false);
            plot->setColormap(Colormap::make(0));
            plot->setFillGaps(true);
            m_plots.push_back(std::move(plot));
        }
        addScatter(data, variablePlot(0), variableScale);
        addScatter(data, concentrationPlot(data), decades);
        addScatter(data, electrometerPlot(0), currentScale);
        m_picture = QImage(width, stackHeight, QImage::Format_ARGB32_Premultiplied);
    }
    void setTimeScale(const TimeScale &scale)
    {
        for (const auto &plot : m_plots)
            plot->setTimeScale(scale);
    }
    void paint()
    {
        QPainter painter(&m_picture);
        for (const auto &plot : m_plots) {
            plot->paintContents(painter);
            painter.translate(0, plot->height());
        }
    }

private:
    void addScatter(BenchStore &data, const ScatterPlotSettings &settings, const ValueScale &scale)
    {
        auto plot = std::make_unique<BarePlot<Tsb::ScatterPlot>>(data, width, scatterHeight);
        plot->setUiInfo(data.uiInfo());
        plot->setScale(scale);
        plot->setSettings(settings);
        m_plots.push_back(std::move(plot));
    }

    std::vector<std::unique_ptr<Tsb::Plot>> m_plots;
    QImage m_picture;
};

Stack &stack()
{
    static Stack six(BenchStore::shared());
    return six;
}

// ---- a zoom step

std::vector<std::unique_ptr<Peer>> makePeers(BenchStore &data)
{
    const auto arrayOf = [&](auto valueOf) {
        QVector<double> values;
        for (const auto &record : data.store().records())
            values.append(valueOf(*record));
        return values;
    };
    const auto total = [](int info) {
        return [info](const Record &record) {
            const auto &c = record.spectra[std::size_t(info)]->concentrations;
            return std::log10(std::accumulate(c.begin(), c.end(), 0.0) / 20);
        };
    };
    std::vector<std::unique_ptr<Peer>> peers;
    peers.push_back(std::make_unique<PeerStrip>(data, width, stripHeight));
    for (int i = 0; i < 2; ++i)
        peers.push_back(std::make_unique<PeerSpectrogram>(
            data.count(), BenchStore::bins,
            [i](int record, int bin) { return BenchStore::concentration(record, i, bin); }, width, spectrogramHeight));
    const auto scatter = [&](const std::vector<QVector<double>> &series, double least, double greatest) {
        peers.push_back(std::make_unique<PeerScatter>(width, scatterHeight, series, least, greatest));
    };
    scatter({arrayOf([](const Record &record) { return record.variables[0]; })}, 10, 35);
    scatter({arrayOf(total(0)), arrayOf(total(1))}, 1, 5);
    scatter({arrayOf([](const Record &record) { return record.rawCurrents[0]; }),
             arrayOf([](const Record &record) { return record.currents[0]; })},
            0, 220);
    return peers;
}

/// The whole range, then a step in, by turns.
TimeScale zoomed(const BenchStore &data, int turn)
{
    TimeScale scale = data.wholeRange(width);
    if (turn % 2 != 0)
        scale.ticksPerPixel = std::int64_t(double(scale.ticksPerPixel) * 0.9);
    return scale;
}

/// Zoom steps of all six beside Qwt's, or, for argument 1, beside Qwt's without the strip.
void zoomBesideQwt(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    static const auto peers = makePeers(data);
    const bool withoutStrip = state.range(0) != 0;
    int ourTurn = 0, peerTurn = 0;
    compare(
        state,
        [&] {
            stack().setTimeScale(zoomed(data, ++ourTurn));
            stack().paint();
        },
        [&] {
            const double seen = ++peerTurn % 2 == 0 ? 1 : 0.9;
            for (std::size_t i = withoutStrip ? 1 : 0; i < peers.size(); ++i) {
                peers[i]->setRecords(0, data.count() * seen);
                peers[i]->draw();
            }
        });
}
BENCHMARK(zoomBesideQwt)->Arg(0)->Arg(1)->Iterations(20)->Unit(benchmark::kMillisecond);

/// A zoom step of the window, with axis, scales and colour bars, beside that of the plots alone.
void zoomOfTheWindow(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    BrowserWindow window(data);
    window.addSixViews();
    int windowTurn = 0, plotTurn = 0;
    compare(
        state,
        [&] {
            window.browser().timeView()->setTimeScale(zoomed(data, ++windowTurn));
            settle();
        },
        [&] {
            stack().setTimeScale(zoomed(data, ++plotTurn));
            stack().paint();
        });
}
BENCHMARK(zoomOfTheWindow)->Iterations(30)->Unit(benchmark::kMillisecond);

// ---- a pan by one pixel

/// Six images of the same sizes, moved by one column and shown.
class MovedImages {
public:
    MovedImages() : m_picture(width, stackHeight, QImage::Format_ARGB32_Premultiplied)
    {
        for (const int height :
             {stripHeight, spectrogramHeight, spectrogramHeight, scatterHeight, scatterHeight, scatterHeight}) {
            m_images.emplace_back(width, height, QImage::Format_ARGB32_Premultiplied);
            m_images.back().fill(Qt::white);
        }
    }
    void moveAndShow(bool right)
    {
        QPainter painter(&m_picture);
        int top = 0;
        for (QImage &image : m_images) {
            uchar *const bits = image.bits();
            for (int y = 0; y < image.height(); ++y) {
                uchar *const line = bits + std::ptrdiff_t(y) * image.bytesPerLine();
                std::memmove(line + (right ? 4 : 0), line + (right ? 0 : 4), std::size_t(width - 1) * 4);
            }
            painter.drawImage(0, top, image);
            top += image.height();
        }
    }

private:
    std::vector<QImage> m_images;
    QImage m_picture;
};

void panBesideMovingImages(benchmark::State &state)
{
    BenchStore &data = BenchStore::shared();
    MovedImages moved;
    int ourTurn = 0, otherTurn = 0;
    compare(
        state,
        [&] {
            TimeScale scale = data.wholeRange(width);
            scale.originPixel = -(++ourTurn % 2);
            stack().setTimeScale(scale);
            stack().paint();
        },
        [&] { moved.moveAndShow(++otherTurn % 2 == 0); });
}
BENCHMARK(panBesideMovingImages)->Iterations(400)->Unit(benchmark::kMillisecond);

// ---- the first picture

double medianOfZooms(const std::function<void(int turn)> &zoom)
{
    std::vector<double> times;
    for (int turn = 1; turn < 12; ++turn)
        times.push_back(timeOf([&] { zoom(turn); }, CLOCK_MONOTONIC));
    return median(times);
}

/// The default stack of a folder that was just read, up to its first picture, beside full redraws: of six views by
/// themselves, and of its own five in their window. By the clock.
void firstPicture(benchmark::State &state)
{
    std::vector<double> first, firstByProcessor, sixViews, ownWindow;
    for (auto _ : state) {
        BenchStore data(500'000);
        BrowserWindow window(data);
        const double begin = microseconds(CLOCK_PROCESS_CPUTIME_ID);
        first.push_back(timeOf(
            [&] {
                window.showData();
                window.browser().addDefaultStack();
                settle();
            },
            CLOCK_MONOTONIC));
        firstByProcessor.push_back((microseconds(CLOCK_PROCESS_CPUTIME_ID) - begin) * 1e-3);
        ownWindow.push_back(medianOfZooms([&](int turn) {
            window.browser().timeView()->setTimeScale(zoomed(data, turn));
            settle();
        }));
        sixViews.push_back(medianOfZooms([](int turn) {
            stack().setTimeScale(zoomed(BenchStore::shared(), turn));
            stack().paint();
        }));
    }
    state.counters["ours_processor_ms"] = median(firstByProcessor);
    state.counters["own_window_ms"] = median(ownWindow);
    state.counters["ours/own_window"] = median(first) / median(ownWindow);
    countTimes(state, first, sixViews);
}
BENCHMARK(firstPicture)->Iterations(5)->Unit(benchmark::kMillisecond);

// ---- memory

/// Bytes that six open views add for each point and series shown, images left out.
void memoryOfSixViews(benchmark::State &state)
{
    for (auto _ : state) {
        BenchStore data(500'000); // nothing has asked it for its times yet
        BrowserWindow window(data);
        const double before = bytesInUse();
        window.addSixViews();
        for (int turn = 1; turn < 4; ++turn) { // some is kept from the second drawing on
            window.browser().timeView()->setTimeScale(zoomed(data, turn));
            settle();
        }
        double images = 0;
        for (const Tsb::Plot *plot : window.plots())
            images += double(plot->image().sizeInBytes());
        // A strip, two spectra, a variable, two concentrations, raw and processed currents.
        const double points = 8.0 * data.count();
        state.counters["bytes_a_point"] = (bytesInUse() - before - images) / points;
        state.counters["total_MB"] = (bytesInUse() - before) * 1e-6;
        state.counters["images_MB"] = images * 1e-6;
    }
}
BENCHMARK(memoryOfSixViews)->Iterations(1);

} // namespace
