#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <pthread.h>
#include <unistd.h>

// An allocator with one lock, to be preloaded. Once holdAllocator() was called, whoever allocates or frees waits for
// ever. Loaded where HELDMALLOC_LOADS is set, it never is done with that, and holds the loader's lock.

extern "C" {

void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
void *__libc_memalign(std::size_t, std::size_t);
void __libc_free(void *);

} // extern "C"

namespace {

pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;

[[gnu::constructor]] void load()
{
    while (std::getenv("HELDMALLOC_LOADS"))
        pause();
}

template<typename Call>
auto locked(Call call)
{
    struct Hold {
        Hold() { pthread_mutex_lock(&lock); }
        ~Hold() { pthread_mutex_unlock(&lock); }
    } const hold;
    return call();
}

} // namespace

extern "C" {

void holdAllocator()
{
    pthread_mutex_lock(&lock);
}

void *malloc(std::size_t size)
{
    return locked([=] { return __libc_malloc(size); });
}

void *calloc(std::size_t count, std::size_t size)
{
    return locked([=] { return __libc_calloc(count, size); });
}

void *realloc(void *memory, std::size_t size)
{
    return locked([=] { return __libc_realloc(memory, size); });
}

void *memalign(std::size_t alignment, std::size_t size)
{
    return locked([=] { return __libc_memalign(alignment, size); });
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void **memory, std::size_t alignment, std::size_t size)
{
    *memory = memalign(alignment, size);
    return *memory ? 0 : ENOMEM;
}

void free(void *memory)
{
    locked([=] { __libc_free(memory); });
}

} // extern "C"
