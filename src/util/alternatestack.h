#pragma once

#include <cstddef>

/// A stack of its own for the signal handlers of the calling thread, for as long as the object lives: a crash by overflow of
/// the thread's stack can then still be reported. Made at the top of every thread that we start and of main; destroyed on
/// the same thread. The stack set before is set again afterwards.
class AlternateStack {
public:
    AlternateStack();
    ~AlternateStack();
    AlternateStack(const AlternateStack &) = delete;
    AlternateStack &operator=(const AlternateStack &) = delete;

private:
    void *m_memory = nullptr; ///< null when no memory could be had: the thread then runs without
    std::size_t m_size = 0;
    void *m_previousMemory = nullptr;
    std::size_t m_previousSize = 0;
    int m_previousFlags = 0;
};
