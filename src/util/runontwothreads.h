#pragma once

#include "util/alternatestack.h"

#include <cstddef>
#include <system_error>
#include <thread>

/// Calls work(begin, end) for the two halves of 0 .. size and returns when both are done. The second half runs on a
/// thread of its own if the size is worth one. This is for work that waits for memory most of the time. `work` must not
/// throw, and must not read results of the other half.
template<typename Work>
void runOnTwoThreads(std::size_t size, Work work)
{
    constexpr std::size_t worthAThread = 50'000; // some milliseconds of work; to start a thread takes less than 0.1
    std::thread other;
    if (size >= worthAThread && std::thread::hardware_concurrency() > 1) {
        try {
            other = std::thread([=] {
                const AlternateStack signalStack;
                work(size / 2, size);
            });
        } catch (const std::system_error &) { // no more threads: all of it here
        }
    }
    work(0, other.joinable() ? size / 2 : size);
    if (other.joinable())
        other.join();
}
