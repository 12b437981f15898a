#pragma once

#include <atomic>
#include <cerrno>
#include <cstddef>

#include <dlfcn.h>
#include <sys/mman.h>

/// Lets allocations fail in a test program, of which one source includes this. Not under a sanitizer, which has an
/// allocator of its own.
namespace ShortMemory {

inline std::atomic<bool> isMarkedShort{false}; ///< of threads that are marked, or else of all others
inline std::atomic<int> left{0};               ///< allocations up to the first that fails
inline std::atomic<int> failures{0};           ///< that follow each other from there
inline thread_local bool isMarked = false;

/// From now on.
inline void letFail(bool ofMarked, int nth, int count)
{
    isMarkedShort = ofMarked;
    left = nth;
    failures = count;
}

inline bool fails()
{
    if (failures <= 0 || isMarked != isMarkedShort || --left > 0)
        return false;
    errno = ENOMEM;
    return failures-- > 0;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isPossible = false;
#else
constexpr bool isPossible = true;
#endif

} // namespace ShortMemory

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);

void *malloc(std::size_t size)
{
    return ShortMemory::fails() ? nullptr : __libc_malloc(size);
}
void *calloc(std::size_t count, std::size_t size)
{
    return ShortMemory::fails() ? nullptr : __libc_calloc(count, size);
}
void *realloc(void *memory, std::size_t size)
{
    return ShortMemory::fails() ? nullptr : __libc_realloc(memory, size);
}
void *mmap(void *address, std::size_t size, int protection, int flags, int descriptor, off_t offset) noexcept
{
    static const auto real = reinterpret_cast<decltype(&mmap)>(dlsym(RTLD_NEXT, "mmap"));
    return ShortMemory::fails() ? MAP_FAILED : real(address, size, protection, flags, descriptor, offset);
}
}
#endif
