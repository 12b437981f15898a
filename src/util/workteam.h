#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Threads that help the caller with work that falls into independent items. They wait between the calls, so that a
/// call costs little more than its work. One caller at a time.
class WorkTeam {
public:
    /// The caller and `workers - 1` threads; fewer where the system gives no more.
    explicit WorkTeam(int workers);
    ~WorkTeam();
    WorkTeam(const WorkTeam &) = delete;
    WorkTeam &operator=(const WorkTeam &) = delete;

    int size() const { return int(m_threads.size()) + 1; }

    /// Calls work(i) for all i from 0 to count - 1, on all workers, and returns when all of it is done: no thread works
    /// after that. Where an item throws, items that weren't begun are left out, and the first exception is thrown here.
    void run(std::size_t count, const std::function<void(std::size_t)> &work);

private:
    void help();
    void doItems();

    std::vector<std::thread> m_threads;
    std::atomic<std::size_t> m_next{0}; ///< the next item to begin

    std::mutex m_mutex; ///< guards all that follows
    std::condition_variable m_hasWork;
    std::condition_variable m_isDone;
    const std::function<void(std::size_t)> *m_work = nullptr;
    std::size_t m_count = 0;
    unsigned m_round = 0;      ///< of calls of run()
    std::size_t m_working = 0; ///< threads that haven't finished this round
    std::exception_ptr m_exception;
    bool m_isEnding = false;
};
