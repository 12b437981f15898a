// A library to be preloaded (LD_PRELOAD) into a program that writes files. Its calls on paths below one folder are
// numbered from 1 on; one of them, or all from one on, can be made to fail, and all can be recorded. Other paths are
// left alone. The environment tells what to do:
//
//   FAULTS_BELOW   the folder, without links
//   FAULTS_AT      the number of the call
//   FAULTS_WAY     a number of errno; "short": a write takes half of its bytes; "swallow": a write that isn't done is
//                  said to be; "before" and "behind": the process is killed there;
//                  "within N": behind N thousandths of the bytes of a write, which are one at least
//   FAULTS_EVER    set: the later calls fail as well, those alone that need room where there is no more room
//   FAULTS_RECORD  the file that gets each call: a line NAME OK INODE SIZE OFFSET PATH PATH with tabs in between, and,
//                  behind that of a write, its bytes and a line feed. OK is 1, or 0 for a call that failed by itself or
//                  was let fail.
//   FAULTS_COUNT   a file of 16 bytes that gets the number of calls that were begun, and of those that ended

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr int shortWrite = -1;
constexpr int swallowedWrite = -2;
constexpr int killedBefore = -4;
constexpr int killedBehind = -5;
constexpr int killedWithin = -6;

[[noreturn]] void end()
{
    ::kill(::getpid(), SIGKILL);
    for (;;)
        ::pause();
}

template<typename Function>
Function *systems(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

ssize_t writeReally(int descriptor, const void *bytes, std::size_t size)
{
    static auto *const call = systems<ssize_t(int, const void *, std::size_t)>("write");
    return call(descriptor, bytes, size);
}

int openReally(const char *path, int flags, mode_t mode)
{
    static auto *const call = systems<int(const char *, int, ...)>("open");
    return call(path, flags, mode);
}

std::string variable(const char *name)
{
    const char *text = std::getenv(name);
    return text ? text : "";
}

struct Plan {
    std::string below = variable("FAULTS_BELOW");
    long at = std::atol(variable("FAULTS_AT").c_str());
    int way = 0;
    bool ever = std::getenv("FAULTS_EVER") != nullptr;
    int record = -1;
    long thousandths = 0; ///< of a write's bytes
    struct Counts {
        std::atomic<long> begun{0}, ended{0};
    };
    Counts *counts = nullptr; ///< shared with the process that asked for them

    Plan()
    {
        const std::string text = variable("FAULTS_WAY");
        way = text == "short"                     ? shortWrite
              : text == "swallow"                 ? swallowedWrite
              : text == "before"                  ? killedBefore
              : text == "behind"                  ? killedBehind
              : text.compare(0, 6, "within") == 0 ? killedWithin
                                                  : std::atoi(text.c_str());
        if (way == killedWithin)
            thousandths = std::atol(text.c_str() + 6);
        shareCounts(variable("FAULTS_COUNT"));
        const std::string path = variable("FAULTS_RECORD");
        if (!path.empty())
            record = openReally(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    }
    void shareCounts(const std::string &path)
    {
        const int file = path.empty() ? -1 : openReally(path.c_str(), O_RDWR | O_CLOEXEC, 0);
        if (file < 0)
            return;
        void *page = ::mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (page != MAP_FAILED)
            counts = static_cast<Counts *>(page);
        static auto *const close = systems<int(int)>("close");
        close(file);
    }
    /// Whether a call of that name fails where the disk has no more room.
    static bool needsRoom(const std::string &name)
    {
        return name == "create" || name == "write" || name == "fsync" || name == "rename" || name == "link" ||
               name == "mkdir";
    }
    /// Zero, or how the call of that name and number goes wrong.
    int faultOf(const std::string &name, long number) const
    {
        const bool isHit =
            number == at || (ever && at > 0 && number > at && (needsRoom(name) || (way != ENOSPC && way != EDQUOT)));
        return isHit ? way : 0;
    }
};

const Plan &plan()
{
    static const Plan instance;
    return instance;
}

/// Absolute; links within it stay.
std::string absolutePath(int folder, const char *path)
{
    if (path[0] == '/')
        return path;
    std::array<char, PATH_MAX> text{};
    if (folder == AT_FDCWD)
        return ::getcwd(text.data(), text.size()) ? std::string(text.data()) + '/' + path : path;
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t size = ::readlink(link.c_str(), text.data(), text.size() - 1);
    return size > 0 ? std::string(text.data(), std::size_t(size)) + '/' + path : path;
}

std::string pathOf(int descriptor)
{
    const int error = errno;
    std::array<char, PATH_MAX> text{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), text.data(), text.size() - 1);
    errno = error;
    return size > 0 ? std::string(text.data(), std::size_t(size)) : std::string();
}

bool isBelow(const std::string &path)
{
    const std::string &folder = plan().below;
    return !folder.empty() && path.compare(0, folder.size(), folder) == 0 &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

/// One call on a path below the folder.
class Watched {
public:
    Watched(const char *name, std::string path, std::string target = {})
        : m_name(name), m_path(std::move(path)), m_target(std::move(target)),
          m_isWatched(isBelow(m_path) || isBelow(m_target)), m_fault(m_isWatched ? plan().faultOf(m_name, ++count) : 0)
    {
        if (m_isWatched && plan().counts)
            ++plan().counts->begun;
        if (m_fault == killedBefore)
            end();
    }
    Watched(const Watched &) = delete;
    Watched &operator=(const Watched &) = delete;
    ~Watched()
    {
        if (m_isWatched && plan().counts)
            ++plan().counts->ended;
        if (m_fault == killedBehind || m_fault == killedWithin)
            end();
    }

    /// Zero, or how the call goes wrong.
    int fault() const { return m_fault; }

    /// Does the call, or lets it fail, and records it.
    template<typename Call>
    auto run(Call call, int descriptor = -1, off_t offset = 0)
    {
        if (m_fault <= 0)
            return done(call(), descriptor, nullptr, offset);
        errno = m_fault;
        return done(decltype(call())(-1), descriptor, nullptr, offset);
    }

    template<typename Result>
    Result done(Result result, int descriptor = -1, const void *bytes = nullptr, off_t offset = 0)
    {
        if (!m_isWatched || plan().record < 0)
            return result;
        const int error = errno;
        struct stat status {};
        const bool isKnown =
            (descriptor >= 0 && ::fstat(descriptor, &status) == 0) || ::lstat(m_path.c_str(), &status) == 0;
        const std::string line = m_name + '\t' + (result >= 0 ? '1' : '0') + '\t' +
                                 std::to_string(isKnown ? status.st_ino : 0) + '\t' + std::to_string(long(result)) +
                                 '\t' + std::to_string(long(offset)) + '\t' + m_path + '\t' + m_target + '\n';
        static std::mutex mutex;
        const std::lock_guard<std::mutex> lock(mutex);
        writeReally(plan().record, line.data(), line.size());
        if (bytes && result >= 0) {
            writeReally(plan().record, bytes, std::size_t(result));
            writeReally(plan().record, "\n", 1);
        }
        errno = error;
        return result;
    }

private:
    static std::atomic<long> count;

    const std::string m_name;
    const std::string m_path, m_target;
    const bool m_isWatched;
    const int m_fault;
};

std::atomic<long> Watched::count{0};

template<typename Open>
int watchedOpen(int folder, const char *path, int flags, Open open)
{
    const std::string absolute = absolutePath(folder, path);
    if (!isBelow(absolute))
        return open();
    struct stat status {};
    const bool isNamed = (flags & O_TMPFILE) != O_TMPFILE;
    const bool creates = !isNamed || ((flags & O_CREAT) != 0 && ::stat(absolute.c_str(), &status) != 0);
    Watched call(creates                  ? "create"
                 : (flags & O_TRUNC) != 0 ? "openempty"
                                          : "open",
                 absolute, isNamed ? "" : "nameless");
    if (call.fault() > 0) {
        errno = call.fault();
        return call.done(-1);
    }
    const int descriptor = open();
    return call.done(descriptor, descriptor);
}

mode_t modeOf(int flags, va_list arguments)
{
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return creates ? mode_t(va_arg(arguments, int)) : 0;
}

} // namespace

// The names and arguments of these functions are the C library's. Sizes have 64 bits under either name.
static_assert(sizeof(off_t) == sizeof(off64_t));

// NOLINTBEGIN
extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return watchedOpen(AT_FDCWD, path, flags, [=] { return openReally(path, flags, mode); });
}

int open64(const char *path, int flags, ...) __attribute__((alias("open")));

int openat(int folder, const char *path, int flags, ...)
{
    static auto *const call = systems<int(int, const char *, int, ...)>("openat");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return watchedOpen(folder, path, flags, [=] { return call(folder, path, flags, mode); });
}

int openat64(int folder, const char *path, int flags, ...) __attribute__((alias("openat")));

int __open_2(const char *path, int flags)
{
    return watchedOpen(AT_FDCWD, path, flags, [=] { return openReally(path, flags, 0); });
}

int __open64_2(const char *path, int flags) __attribute__((alias("__open_2")));

ssize_t read(int descriptor, void *bytes, size_t size)
{
    static auto *const call = systems<ssize_t(int, void *, size_t)>("read");
    Watched watched("read", pathOf(descriptor));
    return watched.run([=] { return call(descriptor, bytes, size); });
}

ssize_t pread(int descriptor, void *bytes, size_t size, off_t offset)
{
    static auto *const call = systems<ssize_t(int, void *, size_t, off_t)>("pread");
    Watched watched("read", pathOf(descriptor));
    return watched.run([=] { return call(descriptor, bytes, size, offset); });
}

ssize_t pread64(int descriptor, void *bytes, size_t size, off64_t offset) __attribute__((alias("pread")));

/// Locks alone are watched, and of those no unlocking.
int fcntl(int descriptor, int command, ...)
{
    static auto *const call = systems<int(int, int, ...)>("fcntl");
    va_list arguments;
    va_start(arguments, command);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    const bool isLock = command == F_SETLK || command == F_SETLKW || command == F_OFD_SETLK || command == F_OFD_SETLKW;
    if (!isLock || static_cast<struct flock *>(argument)->l_type == F_UNLCK)
        return call(descriptor, command, argument);
    Watched watched("lock", pathOf(descriptor));
    return watched.run([=] { return call(descriptor, command, argument); });
}

int fcntl64(int descriptor, int command, ...) __attribute__((alias("fcntl")));

ssize_t write(int descriptor, const void *bytes, size_t size)
{
    Watched watched("write", pathOf(descriptor));
    const int fault = watched.fault();
    if (fault > 0) {
        errno = fault;
        return watched.done(ssize_t(-1), descriptor);
    }
    if (fault == swallowedWrite)
        return watched.done(ssize_t(size), descriptor, bytes, ::lseek(descriptor, 0, SEEK_CUR));
    const size_t part = fault == shortWrite     ? (size + 1) / 2
                        : fault == killedWithin ? size * size_t(plan().thousandths) / 1000 + 1
                                                : size;
    const ssize_t written = writeReally(descriptor, bytes, part < size ? part : size);
    const int error = errno;
    const off_t end = ::lseek(descriptor, 0, SEEK_CUR);
    errno = error;
    return watched.done(written, descriptor, bytes, end - off_t(written));
}

int fsync(int descriptor)
{
    static auto *const call = systems<int(int)>("fsync");
    Watched watched("fsync", pathOf(descriptor));
    return watched.run([=] { return call(descriptor); }, descriptor);
}

int fdatasync(int descriptor)
{
    static auto *const call = systems<int(int)>("fdatasync");
    Watched watched("fsync", pathOf(descriptor));
    return watched.run([=] { return call(descriptor); }, descriptor);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static auto *const call = systems<int(int, off_t)>("ftruncate");
    Watched watched("ftruncate", pathOf(descriptor));
    return watched.run([=] { return call(descriptor, size); }, descriptor, size);
}

int ftruncate64(int descriptor, off64_t size) noexcept __attribute__((alias("ftruncate")));

int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto *const call = systems<int(int, mode_t)>("fchmod");
    Watched watched("fchmod", pathOf(descriptor));
    return watched.run([=] { return call(descriptor, mode); });
}

int close(int descriptor)
{
    static auto *const call = systems<int(int)>("close");
    Watched watched("close", pathOf(descriptor));
    const int closed = call(descriptor); // the descriptor is gone in any case
    return watched.run([=] { return closed; });
}

int rename(const char *from, const char *to) noexcept
{
    static auto *const call = systems<int(const char *, const char *)>("rename");
    Watched watched("rename", absolutePath(AT_FDCWD, from), absolutePath(AT_FDCWD, to));
    return watched.run([=] { return call(from, to); });
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags) noexcept
{
    static auto *const call = systems<int(int, const char *, int, const char *, unsigned int)>("renameat2");
    Watched watched("rename", absolutePath(fromFolder, from), absolutePath(toFolder, to));
    return watched.run([=] { return call(fromFolder, from, toFolder, to, flags); });
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    static auto *const call = systems<int(int, const char *, int, const char *, int)>("linkat");
    Watched watched("link", absolutePath(toFolder, to), from);
    return watched.run([=] { return call(fromFolder, from, toFolder, to, flags); });
}

int link(const char *from, const char *to) noexcept
{
    static auto *const call = systems<int(const char *, const char *)>("link");
    Watched watched("link", absolutePath(AT_FDCWD, to), from);
    return watched.run([=] { return call(from, to); });
}

int unlink(const char *path) noexcept
{
    static auto *const call = systems<int(const char *)>("unlink");
    Watched watched("unlink", absolutePath(AT_FDCWD, path));
    return watched.run([=] { return call(path); });
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    static auto *const call = systems<int(int, const char *, int)>("unlinkat");
    Watched watched((flags & AT_REMOVEDIR) != 0 ? "rmdir" : "unlink", absolutePath(folder, path));
    return watched.run([=] { return call(folder, path, flags); });
}

int mkdir(const char *path, mode_t mode) noexcept
{
    static auto *const call = systems<int(const char *, mode_t)>("mkdir");
    Watched watched("mkdir", absolutePath(AT_FDCWD, path));
    return watched.run([=] { return call(path, mode); });
}

int rmdir(const char *path) noexcept
{
    static auto *const call = systems<int(const char *)>("rmdir");
    Watched watched("rmdir", absolutePath(AT_FDCWD, path));
    return watched.run([=] { return call(path); });
}

} // extern "C"
// NOLINTEND
