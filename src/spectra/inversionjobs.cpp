#include "spectra/inversionjobs.h"

#include <algorithm>

namespace SpectMath {

void InversionJobs::assign(int worker, Job job)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_first[std::size_t(worker)] = std::move(job);
}

void InversionJobs::add(std::vector<Job> &&jobs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_waiting.insert(m_waiting.end(), std::make_move_iterator(jobs.begin()), std::make_move_iterator(jobs.end()));
}

InversionJobs::Job InversionJobs::take(int worker)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Job job = std::move(m_first[std::size_t(worker)]);
    if (!job && !m_waiting.empty()) {
        job = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    return job;
}

int InversionJobs::size() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return int(m_waiting.size());
}

int InversionJobs::dropProvisional()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto end = std::find_if(m_waiting.begin(), m_waiting.end(), [](const Job &job) { return !job->provisional; });
    const int count = int(end - m_waiting.begin());
    m_waiting.erase(m_waiting.begin(), end);
    return count;
}

int InversionJobs::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int count = int(m_waiting.size());
    m_waiting.clear();
    return count;
}

void InversionJobs::abandon()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_waiting.clear();
    std::fill(m_first.begin(), m_first.end(), nullptr);
}

} // namespace SpectMath
