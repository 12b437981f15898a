#include "support/measuring.h"

#include <malloc.h>

#include <algorithm>

double microseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) * 1e-3;
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

double timeOf(const std::function<void()> &work, clockid_t clock)
{
    const double begin = microseconds(clock);
    work();
    return (microseconds(clock) - begin) * 1e-3;
}

void countTimes(benchmark::State &state, const std::vector<double> &ours, const std::vector<double> &other)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i)
        ratios.push_back(other[i] / ours[i]);
    state.counters["ours_ms"] = median(ours);
    state.counters["other_ms"] = median(other);
    state.counters["other/ours"] = median(ratios);
}

void compare(benchmark::State &state, const std::function<void()> &ours, const std::function<void()> &other)
{
    for (int i = 0; i < 3; ++i) {
        ours();
        other();
    }
    std::vector<double> oursTimes, otherTimes;
    for (auto _ : state) {
        oursTimes.push_back(timeOf(ours));
        otherTimes.push_back(timeOf(other));
    }
    countTimes(state, oursTimes, otherTimes);
}

double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}
