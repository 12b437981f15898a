#pragma once

#include "util/filecalls.h"

#include <atomic>
#include <cerrno>

#include <fcntl.h>

/// While it lives, one of the calls by which files are written fails, the nth of all from one on, as a full or broken
/// disk lets it. A write takes at most 64 KB.
class FailingCalls : public FileCalls {
public:
    explicit FailingCalls(int nth, int error = EIO) : m_left(nth), m_error(error) { setCurrent(this); }
    ~FailingCalls() override { setCurrent(nullptr); }

    /// The name of the call that failed; null if there were fewer.
    const char *failed() const { return m_failed; }

    int open(const char *path, int flags, mode_t mode) override
    {
        return fails("open") ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t read(int descriptor, char *bytes, std::size_t size) override
    {
        return fails("read") ? -1 : FileCalls::read(descriptor, bytes, size);
    }
    ssize_t pread(int descriptor, char *bytes, std::size_t size, off_t offset) override
    {
        return fails("pread") ? -1 : FileCalls::pread(descriptor, bytes, size, offset);
    }
    ssize_t write(int descriptor, const char *bytes, std::size_t size) override
    {
        return fails("write") ? -1 : FileCalls::write(descriptor, bytes, size < 65536 ? size : 65536);
    }
    int fchmod(int descriptor, mode_t mode) override
    {
        return fails("fchmod") ? -1 : FileCalls::fchmod(descriptor, mode);
    }
    int ftruncate(int descriptor, off_t size) override
    {
        return fails("ftruncate") ? -1 : FileCalls::ftruncate(descriptor, size);
    }
    int fsync(int descriptor) override { return fails("fsync") ? -1 : FileCalls::fsync(descriptor); }
    int close(int descriptor) override
    {
        FileCalls::close(descriptor);
        return fails("close") ? -1 : 0;
    }
    int rename(const char *from, const char *to) override { return fails("rename") ? -1 : FileCalls::rename(from, to); }
    int renameToFree(const char *from, const char *to) override
    {
        return fails("renameToFree") ? -1 : FileCalls::renameToFree(from, to);
    }
    int lock(int descriptor, short type, bool wait) override
    {
        return type != F_UNLCK && fails("lock") ? -1 : FileCalls::lock(descriptor, type, wait);
    }
    int unlink(const char *path) override { return fails("unlink") ? -1 : FileCalls::unlink(path); }

private:
    bool fails(const char *name)
    {
        if (--m_left != 0)
            return false;
        m_failed = name;
        errno = m_error;
        return true;
    }

    std::atomic<int> m_left; // several threads bring files to the disk
    int m_error;
    std::atomic<const char *> m_failed{nullptr};
};
