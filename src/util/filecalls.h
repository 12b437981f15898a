#pragma once

#include <cstddef>

#include <sys/types.h>

/// The calls of the system by which files are read and written. Each behaves as the POSIX call of its name, with
/// its result and errno, and is repeated where a signal interrupts it. A test puts an object in their place that lets a
/// call fail. Any thread may call them.
class FileCalls {
public:
    virtual ~FileCalls() = default;

    virtual int open(const char *path, int flags, mode_t mode = 0);
    virtual ssize_t read(int descriptor, char *bytes, std::size_t size);
    virtual ssize_t pread(int descriptor, char *bytes, std::size_t size, off_t offset);
    virtual ssize_t write(int descriptor, const char *bytes, std::size_t size);
    virtual int fchmod(int descriptor, mode_t mode);
    virtual int ftruncate(int descriptor, off_t size);
    virtual int fsync(int descriptor);
    /// The descriptor is gone even if it fails.
    virtual int close(int descriptor);
    virtual int rename(const char *from, const char *to);
    /// Fails with EEXIST where something stands at `to`.
    virtual int renameToFree(const char *from, const char *to);
    virtual int unlink(const char *path);
    /// Takes or gives a lock of the open file description on the whole file, by F_RDLCK, F_WRLCK or F_UNLCK.
    virtual int lock(int descriptor, short type, bool wait);

    /// The calls in use.
    static FileCalls &current();
    /// Null stands for the system's own. Not while another thread is writing; the object is not owned.
    static void setCurrent(FileCalls *calls);
};

/// Whether that error of fsync() tells that the file system has no such operation, rather than that bytes may be lost.
bool cannotSync(int error);

/// Writes all bytes, in several calls if need be. Returns how many were written; fewer than all with errno set.
std::size_t writeAsMany(FileCalls &calls, int descriptor, const char *bytes, std::size_t size);
/// The same. False with errno set if not all could be written.
bool writeAll(FileCalls &calls, int descriptor, const char *bytes, std::size_t size);
/// Cuts a text of that size or more. Where others have cut it further since its size was looked at, ftruncate() lets it
/// grow by zeros, which are taken away again. False with errno set if it can't be cut; ESTALE where others did.
bool cutText(FileCalls &calls, int descriptor, off_t size);
