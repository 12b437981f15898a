// What the views of the browser cost over 500 000 records, beside the plain ways and Qwt. Each comparison runs both
// ways by turns in this process and counts medians of processor time in milliseconds and of their ratio.
//
//   timeseries_bench                                all but the feed
//   timeseries_bench --benchmark_filter=liveFeed    a minute of 200 records a second

#include <benchmark/benchmark.h>

#include <QApplication>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
