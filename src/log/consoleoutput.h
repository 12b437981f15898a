#pragma once

#include "log/logentry.h"

#include <chrono>
#include <mutex>

namespace Log {

/// Prints the count of a run of equal entries that is still untold. For the moment of a crash: nothing is allocated or
/// locked.
void writeCountAtCrash() noexcept;

/// Prints entries on standard output, each at once. Of a run of equal ones it prints the first, and later the number of
/// the others: before the next other entry, and after a second at the latest when somebody calls flush() or the run
/// goes on. Any thread.
class ConsoleOutput {
public:
    static constexpr std::chrono::milliseconds patience{1000};

    /// True if a count begins to wait: flush() is to be called when `patience` is over.
    bool put(const Entry &entry);
    /// Prints the count that waits, if there is one.
    void flush();

private:
    void printPending();

    std::mutex m_mutex;
    Entry m_last; ///< printed last, with the time of its last repeat
    bool m_hasLast = false;
    qint64 m_pending = 0; ///< repeats that aren't told yet
    std::chrono::steady_clock::time_point m_pendingSince;
};

} // namespace Log
