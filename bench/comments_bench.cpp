#include "datafiles/writing/commentwriting.h"
#include "gui/browser/plots/notemarks.h"
#include "gui/common/commentmap.h"
#include "gui/common/commentview.h"
#include "support/measuring.h"

#include <QApplication>
#include <QDockWidget>
#include <QFile>
#include <QImage>
#include <QMainWindow>
#include <QPainter>
#include <QStandardItemModel>
#include <QTemporaryDir>

/// Comments beside few others and beside many. Each day has as many of them, so that the files are alike.

namespace {

constexpr int few = 10, many = 100'000, commentsOfDay = 10;
constexpr std::int64_t firstDay = 17'000;

std::shared_ptr<Record> recordOf(int comment)
{
    auto record = std::make_shared<Record>();
    const std::int64_t seconds = (firstDay + comment / commentsOfDay) * 86'400 + comment % commentsOfDay * 8'000;
    record->beginTime = recordTimeFromTicks(seconds * ticksPerSecond);
    record->endTime = recordTimeFromTicks((seconds + 600) * ticksPerSecond);
    record->dpVariantId = record->opmode = 0;
    return record;
}

QString textOf(int comment)
{
    return QStringLiteral("comment %1 on a cloud that passed").arg(comment);
}

/// A folder with that number of comments in files, and their map.
struct Comments {
    explicit Comments(int count)
    {
        QFile file;
        for (int i = 0; i < count; ++i) {
            const CommentPlace place(folder.path(), QStringLiteral("block"), *recordOf(i), QStringLiteral("ions"));
            if (i % commentsOfDay == 0) {
                file.close();
                file.setFileName(place.path);
                file.open(QIODevice::WriteOnly);
                file.write("#Record comments\n");
            }
            file.write(place.key + textOf(i).toUtf8() + '\n');
        }
        file.close();
        DpVariant variant;
        variant.name = QStringLiteral("block");
        map.setFolder(folder.path());
        map.setVariants({variant});
        map.setOpmodeNames({{0, QStringLiteral("ions")}});
    }
    void load() { map.loadComments(earliestRecordTime, latestRecordTime); }

    QTemporaryDir folder;
    CommentMap map;
};

/// The list of a map in a window that isn't shown.
struct HiddenList {
    explicit HiddenList(CommentMap *map)
    {
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
        view->setCommentMap(map);
    }
    QMainWindow window;
    QDockWidget *dock = new QDockWidget(&window);
    CommentView *view = new CommentView(dock);
};

/// A comment is set on a record in the middle that had none, by turns beside many others and beside few.
void setOne(benchmark::State &state)
{
    Comments crowd(many), pair(few);
    HiddenList crowdList(&crowd.map), pairList(&pair.map);
    crowd.load();
    pair.load();
    int round = 0;
    const auto set = [&round](Comments &comments, int count) {
        const auto record = recordOf(count / 2);
        record->endTime += Ticks((1 + round % 2) * ticksPerSecond); // two new ones, then their removal
        comments.map.setComment(record, round % 4 < 2 ? textOf(round) : QString());
    };
    std::vector<double> beside[2], byClock[2];
    for (auto _ : state) {
        for (int i : {0, 1}) {
            const auto work = [&] { i == 0 ? set(pair, few) : set(crowd, many); };
            double processor = 0;
            byClock[i].push_back(timeOf([&] { processor = timeOf(work); }, CLOCK_MONOTONIC));
            beside[i].push_back(processor);
        }
        ++round;
    }
    state.counters["few_us"] = median(beside[0]) * 1e3;
    state.counters["many_us"] = median(beside[1]) * 1e3;
    state.counters["many/few"] = median(beside[1]) / median(beside[0]);
    state.counters["many/few_by_clock"] = median(byClock[1]) / median(byClock[0]);
}
BENCHMARK(setOne)->Iterations(2000)->Unit(benchmark::kMicrosecond);

/// All files of the folder, and the list of all of them when it is first seen.
void loadAndShowAll(benchmark::State &state)
{
    Comments comments(many);
    std::vector<double> loading, listing;
    for (auto _ : state) {
        loading.push_back(timeOf([&] { comments.load(); }));
        listing.push_back(timeOf([&] { comments.map.itemModel(); }));
    }
    state.counters["load_ms"] = median(loading);
    state.counters["list_ms"] = median(listing);
}
BENCHMARK(loadAndShowAll)->Iterations(5)->Unit(benchmark::kMillisecond);

/// The marks of a strip over all comments, beside a walk over each of them.
void drawMarks(benchmark::State &state)
{
    Comments comments(many);
    comments.load();
    QImage strip(1600, 16, QImage::Format_RGB32);
    const TimeScale scale(recordOf(0)->beginTime, many / commentsOfDay * ticksPerDay / strip.width(), 0);
    compare(
        state,
        [&] {
            QPainter painter(&strip);
            Tsb::NoteMarks::draw(painter, strip.height(), comments.map, scale, 0, strip.width());
        },
        [&] {
            QPainter painter(&strip);
            for (const CommentKey &key : comments.map.keys())
                painter.fillRect(scale.pixelAt(key.begin), strip.height() - 6, 6, 6, Qt::black);
        });
}
BENCHMARK(drawMarks)->Iterations(100)->Unit(benchmark::kMillisecond);

} // namespace
