#pragma once

#include "records/record.h"

#include <deque>
#include <mutex>
#include <vector>

namespace SpectMath {

/// Jobs that no worker has begun, in the order in which they were added, and the one that each worker is to begin with.
/// Any thread.
class InversionJobs {
public:
    using Job = Spectrometer::FullRecordPointer;

    explicit InversionJobs(int workers) : m_first(std::size_t(workers)) {}

    /// The worker begins with this job, which is no longer one of those that wait.
    void assign(int worker, Job job);
    void add(std::vector<Job> &&jobs);
    /// The job that was assigned to the worker, or the oldest; null when none waits.
    Job take(int worker);
    int size() const;
    /// Drops provisional jobs up to the first that isn't, and returns how many.
    int dropProvisional();
    /// Drops all that wait, and returns how many.
    int clear();
    /// Drops assigned ones too.
    void abandon();

private:
    mutable std::mutex m_mutex; ///< guards all that follows
    std::deque<Job> m_waiting;
    std::vector<Job> m_first;
};

} // namespace SpectMath
