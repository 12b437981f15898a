#include "gui/common/diagnosticstatusdockwidget.h"
#include "records/recordflag.h"
#include "store/datastore.h"
#include "support/measuring.h"

#include <QApplication>
#include <QMainWindow>
#include <QTextBrowser>
#include <QTextDocument>

namespace {

constexpr int recordCount = 500'000, flagged = 100'000;

/// Of records every fifth carries a flag, of which there are `kinds`.
std::unique_ptr<Datastore> makeStore(int kinds)
{
    std::vector<std::shared_ptr<Spectrometer::RecordFlag>> flags;
    for (int i = 0; i < kinds; ++i) {
        flags.push_back(std::make_shared<Spectrometer::RecordFlag>());
        flags.back()->message = QStringLiteral("flag %1").arg(i);
        flags.back()->type = i % 3;
    }
    std::vector<std::shared_ptr<Record>> records;
    for (int i = 0; i < recordCount; ++i) {
        records.push_back(makeRecord());
        records.back()->beginTime = recordTimeFromTicks((i + 1) * ticksPerSecond);
        records.back()->endTime = recordTimeFromTicks((i + 2) * ticksPerSecond);
        if (i % (recordCount / flagged) == 0)
            records.back()->flags = {flags[std::size_t(i / 5 % kinds)]};
    }
    auto store = std::make_unique<Datastore>();
    store->setLimitRecords(false);
    store->mergeRecords(std::move(records));
    return store;
}

/// From the store to the finished picture, and how often it was drawn.
void statusOfARead(benchmark::State &state)
{
    const auto store = makeStore(int(state.range(0)));
    std::vector<double> times;
    int drawn = 0;
    for (auto _ : state) {
        QMainWindow window;
        auto *dock = new DiagnosticStatusDockWidget(std::make_shared<UiInfo>(), &window);
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
        window.show();
        QApplication::processEvents();
        const auto *document = dock->findChild<QTextBrowser *>()->document();
        QObject::connect(document, &QTextDocument::contentsChanged, dock, [&drawn] { ++drawn; });
        times.push_back(timeOf([&] {
            dock->addRecords(*store);
            QApplication::processEvents();
            QApplication::processEvents();
        }));
    }
    state.counters["ms"] = median(times);
    state.counters["drawn"] = double(drawn) / double(state.iterations());
}
BENCHMARK(statusOfARead)->Arg(20)->Arg(flagged)->ArgName("kinds")->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace
