#include "util/filecalls.h"

#include <atomic>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::atomic<FileCalls *> replacedCalls{nullptr};

template<typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

int FileCalls::open(const char *path, int flags, mode_t mode)
{
    return uninterrupted([=] { return ::open(path, flags | O_CLOEXEC, mode); });
}

ssize_t FileCalls::read(int descriptor, char *bytes, std::size_t size)
{
    return uninterrupted([=] { return ::read(descriptor, bytes, size); });
}

ssize_t FileCalls::pread(int descriptor, char *bytes, std::size_t size, off_t offset)
{
    return uninterrupted([=] { return ::pread(descriptor, bytes, size, offset); });
}

ssize_t FileCalls::write(int descriptor, const char *bytes, std::size_t size)
{
    return uninterrupted([=] { return ::write(descriptor, bytes, size); });
}

int FileCalls::fchmod(int descriptor, mode_t mode)
{
    return uninterrupted([=] { return ::fchmod(descriptor, mode); });
}

int FileCalls::ftruncate(int descriptor, off_t size)
{
    return uninterrupted([=] { return ::ftruncate(descriptor, size); });
}

int FileCalls::fsync(int descriptor)
{
    return uninterrupted([=] { return ::fsync(descriptor); });
}

int FileCalls::close(int descriptor)
{
    // Never repeated: the descriptor is free already, and may be another thread's by then.
    return ::close(descriptor) == 0 || errno == EINTR ? 0 : -1;
}

int FileCalls::rename(const char *from, const char *to)
{
    return uninterrupted([=] { return ::rename(from, to); });
}

int FileCalls::renameToFree(const char *from, const char *to)
{
    const int result = uninterrupted([=] { return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE); });
    if (result == 0 || (errno != EINVAL && errno != ENOSYS))
        return result;
    // Some file systems have no such call. Between the look and the move another program may come in.
    struct stat status {};
    if (::lstat(to, &status) == 0) {
        errno = EEXIST;
        return -1;
    }
    return errno == ENOENT ? uninterrupted([=] { return ::rename(from, to); }) : -1;
}

int FileCalls::unlink(const char *path)
{
    return uninterrupted([=] { return ::unlink(path); });
}

int FileCalls::lock(int descriptor, short type, bool wait)
{
    struct flock whole = {};
    whole.l_type = type;
    whole.l_whence = SEEK_SET;
    return uninterrupted([&] { return ::fcntl(descriptor, wait ? F_OFD_SETLKW : F_OFD_SETLK, &whole); });
}

FileCalls &FileCalls::current()
{
    static FileCalls systemCalls;
    FileCalls *calls = replacedCalls;
    return calls ? *calls : systemCalls;
}

void FileCalls::setCurrent(FileCalls *calls)
{
    replacedCalls = calls;
}

bool cannotSync(int error)
{
    return error == EINVAL || error == ENOTSUP || error == ENOSYS;
}

std::size_t writeAsMany(FileCalls &calls, int descriptor, const char *bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = calls.write(descriptor, bytes + done, size - done);
        if (written == 0)
            errno = EIO; // nothing was written and no reason given: asking again might never end
        if (written <= 0)
            break;
        done += std::size_t(written);
    }
    return done;
}

bool writeAll(FileCalls &calls, int descriptor, const char *bytes, std::size_t size)
{
    return writeAsMany(calls, descriptor, bytes, size) == size;
}

bool cutText(FileCalls &calls, int descriptor, off_t size)
{
    if (calls.ftruncate(descriptor, size) != 0)
        return false;
    off_t end = size;
    char last = '\0';
    while (end > 0 && ::pread(descriptor, &last, 1, end - 1) == 1 && last == '\0')
        --end;
    if (end == size)
        return true;
    if (calls.ftruncate(descriptor, end) == 0)
        errno = ESTALE;
    return false;
}
