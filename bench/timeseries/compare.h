#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

/// Milliseconds of processor time that this process took: other work on the machine disturbs it less than the clock.
double processorMilliseconds();
double median(std::vector<double> values);
double percentile(std::vector<double> values, double share);

/// Runs two ways by turns and counts the medians of their times, in milliseconds, and of other / ours.
void compare(benchmark::State &state, const std::function<void()> &ours, const std::function<void()> &other);
