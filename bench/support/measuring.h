#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

#include <ctime>

/// The clock's time. CLOCK_PROCESS_CPUTIME_ID is that of this process's processors, which other work on the machine
/// disturbs less than CLOCK_MONOTONIC.
double microseconds(clockid_t clock);
double median(std::vector<double> values);
/// The value below which that share of all lies; 1 is the greatest. 0 for none.
double percentile(std::vector<double> values, double share);

/// Milliseconds by a clock, by default those of this process's processors.
double timeOf(const std::function<void()> &work, clockid_t clock = CLOCK_PROCESS_CPUTIME_ID);
/// Counts the medians of the times of two ways, in milliseconds, and of other / ours.
void countTimes(benchmark::State &state, const std::vector<double> &ours, const std::vector<double> &other);
/// Runs two ways by turns and counts their processor times.
void compare(benchmark::State &state, const std::function<void()> &ours, const std::function<void()> &other);

/// Bytes that the process has from the allocator.
double bytesInUse();
