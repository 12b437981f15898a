#include "util/workteam.h"

#include "util/alternatestack.h"

#include <new>
#include <system_error>

WorkTeam::WorkTeam(int workers)
{
    try {
        while (size() < workers)
            m_threads.emplace_back([this] { help(); });
    } catch (const std::system_error &) { // no more threads: those that there are do it
    } catch (const std::bad_alloc &) {
    }
}

WorkTeam::~WorkTeam()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_hasWork.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void WorkTeam::run(std::size_t count, const std::function<void(std::size_t)> &work)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_work = &work;
        m_count = count;
        m_next = 0;
        m_exception = nullptr;
        m_working = m_threads.size();
        ++m_round;
    }
    m_hasWork.notify_all();
    doItems();
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isDone.wait(lock, [this] { return m_working == 0; });
    if (m_exception)
        std::rethrow_exception(m_exception);
}

void WorkTeam::doItems()
{
    for (std::size_t i = m_next++; i < m_count; i = m_next++) {
        try {
            (*m_work)(i);
        } catch (...) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_exception)
                m_exception = std::current_exception();
            m_next = m_count;
        }
    }
}

void WorkTeam::help()
{
    const AlternateStack signalStack;
    unsigned round = 0;
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_hasWork.wait(lock, [&] { return m_isEnding || m_round != round; });
        if (m_isEnding)
            return;
        round = m_round;
        lock.unlock();
        doItems();
        lock.lock();
        if (--m_working == 0)
            m_isDone.notify_one();
    }
}
