#pragma once

#include <cstddef>

/// A stack of its own for the signal handlers of the calling thread, for as long as the object lives: a crash by overflow of
/// the thread's stack can then still be reported. Made at the top of main and of every thread of ours; destroyed on
/// the same thread. The stack set before is set again afterwards.
class AlternateStack {
public:
    AlternateStack();
    ~AlternateStack();
    AlternateStack(const AlternateStack &) = delete;
    AlternateStack &operator=(const AlternateStack &) = delete;

private:
    void *m_memory = nullptr; ///< null if there was no memory for it: the thread then runs without one
    std::size_t m_size = 0;
    void *m_previousMemory = nullptr;
    std::size_t m_previousSize = 0;
    int m_previousFlags = 0;
};
