#include "util/timeformat.h"
#include "util/timeparse.h"

#include <QDateTime>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

/// The times of rows, one a second, as text.
std::vector<QByteArray> rowTimes()
{
    std::vector<QByteArray> texts;
    for (int i = 0; i < 1000; ++i) {
        texts.emplace_back();
        appendTimeText(texts.back(), recordTimeFromTicks((1568290612LL + i) * ticksPerSecond + i * 1234));
    }
    return texts;
}

void parseByToolkit(benchmark::State &state)
{
    const std::vector<QByteArray> texts = rowTimes();
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
    std::size_t i = 0;
    for (auto _ : state) {
        const QString text = QString::fromLatin1(texts[i++ % texts.size()].left(23));
        benchmark::DoNotOptimize(QDateTime::fromString(text, format).toMSecsSinceEpoch());
    }
}
BENCHMARK(parseByToolkit);

void parseByColumns(benchmark::State &state)
{
    const std::vector<QByteArray> texts = rowTimes();
    std::size_t i = 0;
    for (auto _ : state) {
        const QByteArray &text = texts[i++ % texts.size()];
        RecordTime time;
        std::int64_t offset = 0;
        parseTime(text.constData(), text.size(), &time, &offset);
        benchmark::DoNotOptimize(time);
    }
}
BENCHMARK(parseByColumns);

void formatByCodes(benchmark::State &state)
{
    const QString format = QStringLiteral("%Y-%m-%d %H:%M:%s");
    std::int64_t second = 1568290612;
    for (auto _ : state)
        benchmark::DoNotOptimize(timeToString(recordTimeFromTicks(second++ * ticksPerSecond), format));
}
BENCHMARK(formatByCodes);

void formatIntoRow(benchmark::State &state)
{
    QByteArray row;
    row.reserve(100);
    std::int64_t second = 1568290612;
    for (auto _ : state) {
        row.resize(0);
        appendTimeText(row, recordTimeFromTicks(second++ * ticksPerSecond));
        benchmark::DoNotOptimize(row.data());
    }
}
BENCHMARK(formatIntoRow);

} // namespace

BENCHMARK_MAIN();
