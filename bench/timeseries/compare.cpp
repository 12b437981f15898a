#include "timeseries/compare.h"

#include <algorithm>
#include <ctime>

double processorMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) * 1e-6;
}

double percentile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, std::size_t(double(values.size()) * share))];
}

double median(std::vector<double> values)
{
    return percentile(std::move(values), 0.5);
}

void compare(benchmark::State &state, const std::function<void()> &ours, const std::function<void()> &other)
{
    const auto timeOf = [](const std::function<void()> &work) {
        const double begin = processorMilliseconds();
        work();
        return processorMilliseconds() - begin;
    };
    for (int i = 0; i < 3; ++i) {
        ours();
        other();
    }
    std::vector<double> oursTimes, otherTimes, ratios;
    for (auto _ : state) {
        oursTimes.push_back(timeOf(ours));
        otherTimes.push_back(timeOf(other));
        ratios.push_back(otherTimes.back() / oursTimes.back());
    }
    state.counters["ours_ms"] = median(oursTimes);
    state.counters["other_ms"] = median(otherTimes);
    state.counters["other/ours"] = median(ratios);
}
