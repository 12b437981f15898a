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
inline std::atomic<long> made{0};              ///< allocations in all, with those that failed
inline std::atomic<long> held{0};              ///< blocks of the heap that weren't given back yet
inline thread_local bool isMarked = false;
inline void (*whenFailed)() = nullptr; ///< is called for each that fails, if it isn't null; may not allocate

/// From now on.
inline void letFail(bool ofMarked, int nth, int count)
{
    isMarkedShort = ofMarked;
    left = nth;
    failures = count;
}

inline bool fails()
{
    ++made;
    if (failures <= 0 || isMarked != isMarkedShort || --left > 0)
        return false;
    if (failures-- <= 0)
        return false;
    if (whenFailed)
        whenFailed();
    errno = ENOMEM;
    return true;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isPossible = false;
#else
constexpr bool isPossible = true;
#endif

} // namespace ShortMemory

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
namespace ShortMemory {
inline void *counted(void *block)
{
    if (block)
        ++held;
    return block;
}
} // namespace ShortMemory

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *memory);

void *malloc(std::size_t size)
{
    return ShortMemory::fails() ? nullptr : ShortMemory::counted(__libc_malloc(size));
}
void *calloc(std::size_t count, std::size_t size)
{
    return ShortMemory::fails() ? nullptr : ShortMemory::counted(__libc_calloc(count, size));
}
void *realloc(void *memory, std::size_t size)
{
    if (ShortMemory::fails())
        return nullptr;
    void *const grown = __libc_realloc(memory, size);
    if (memory && (grown || size == 0))
        --ShortMemory::held;
    return ShortMemory::counted(grown);
}
void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return ShortMemory::fails() ? nullptr : ShortMemory::counted(__libc_memalign(alignment, size));
}
int posix_memalign(void **memory, std::size_t alignment, std::size_t size)
{
    *memory = aligned_alloc(alignment, size);
    return *memory ? 0 : ENOMEM;
}
void free(void *memory)
{
    if (memory)
        --ShortMemory::held;
    __libc_free(memory);
}
void *mmap(void *address, std::size_t size, int protection, int flags, int descriptor, off_t offset) noexcept
{
    static const auto real = reinterpret_cast<decltype(&mmap)>(dlsym(RTLD_NEXT, "mmap"));
    return ShortMemory::fails() ? MAP_FAILED : real(address, size, protection, flags, descriptor, offset);
}
}
#endif
