#pragma once

#include <QFile>

/// A file with an advisory lock of its own descriptor: it guards against other processes and other objects of this
/// class in this process alike, and is not lost when another descriptor of the same file is closed.
class LockedFile : public QFile {
    Q_OBJECT
public:
    enum LockMode { NoLock, ReadLock, WriteLock };

    explicit LockedFile(const QString &name);
    ~LockedFile() override; ///< unlocks

    void close() override; ///< unlocks

    /// True if the lock is held afterwards. Without `block` it fails at once if others hold a lock, and an
    /// earlier lock of this object stays; errno tells why. The file must be open, for writing with a WriteLock, for
    /// reading with a ReadLock.
    bool lock(LockMode mode, bool block = true);
    bool unlock(); ///< flushes first
    bool isLocked() const { return m_mode != NoLock; }

    /// Sets the modification time of the open file to the present.
    bool touch();

private:
    LockMode m_mode = NoLock;
};
