#pragma once

#include <QFile>

/// A file with an advisory lock of its own descriptor: it guards against other processes and other objects of this class
/// in this process alike, and is not lost when another descriptor of the same file is closed.
class LockedFile : public QFile {
    Q_OBJECT
public:
    enum LockMode { NoLock, ReadLock, WriteLock };

    explicit LockedFile(const QString &name);
    ~LockedFile() override; ///< unlocks

    /// True if the lock is held afterwards. Without `block` a lock that others hold is a failure at once.
    bool lock(LockMode mode, bool block = true);
    bool unlock();
    bool isLocked() const { return m_mode != NoLock; }

    /// Sets the modification time of the open file to the present.
    bool touch();

private:
    LockMode m_mode = NoLock;
};
