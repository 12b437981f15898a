#include <benchmark/benchmark.h>

#include <QApplication>

#include <string>
#include <vector>

/// Runs the benchmarks of a program that draws, without a display unless the environment asks for one.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // What takes minutes runs by itself: --follow [--seconds=N] alone has the window follow a folder.
    std::string filter = "--benchmark_filter=-^followFolder";
    std::vector<char *> arguments{argv[0], filter.data()};
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--follow")
            filter = "--benchmark_filter=^followFolder";
        else if (std::string(argv[i]).rfind("--seconds=", 0) == 0)
            qputenv("MORVANTIDE_FOLLOW_SECONDS", argv[i] + 10);
        else
            arguments.push_back(argv[i]); // a filter among them replaces ours
    }
    arguments[1] = filter.data();
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
