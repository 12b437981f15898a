#include "util/alternatestack.h"

#include <csignal>
#include <sys/mman.h>
#include <unistd.h>

namespace {
constexpr std::size_t stackSize = 128 * 1024; // a stack walk needs far more than SIGSTKSZ
} // namespace

AlternateStack::AlternateStack()
{
    // A page without access below it: an overflow of this stack too must not write into somebody's memory.
    const auto guard = std::size_t(sysconf(_SC_PAGESIZE));
    void *memory = mmap(nullptr, stackSize + guard, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    mprotect(memory, guard, PROT_NONE);
    stack_t stack{};
    stack.ss_sp = static_cast<char *>(memory) + guard;
    stack.ss_size = stackSize;
    stack_t previous{};
    if (sigaltstack(&stack, &previous) != 0) {
        munmap(memory, stackSize + guard);
        return;
    }
    m_memory = memory;
    m_size = stackSize + guard;
    m_previousMemory = previous.ss_sp;
    m_previousSize = previous.ss_size;
    m_previousFlags = previous.ss_flags;
}

AlternateStack::~AlternateStack()
{
    if (!m_memory)
        return;
    stack_t previous{};
    previous.ss_sp = m_previousMemory;
    previous.ss_size = m_previousSize;
    previous.ss_flags = m_previousFlags & SS_DISABLE;
    sigaltstack(&previous, nullptr);
    munmap(m_memory, m_size);
}
