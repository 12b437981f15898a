#include "util/lockedfile.h"

#include "util/filecalls.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

/// Locks of the open file description, not of the process: they hold against other descriptors of this process, survive
/// the closing of those, and a failed change of mode keeps the old lock, which flock() would lose.
bool applyLock(int descriptor, short type, bool block)
{
    return FileCalls::current().lock(descriptor, type, block) == 0;
}

} // namespace

LockedFile::LockedFile(const QString &name) : QFile(name) {}

LockedFile::~LockedFile()
{
    unlock();
}

void LockedFile::close()
{
    unlock();
    QFile::close();
}

bool LockedFile::lock(LockMode mode, bool block)
{
    if (mode == NoLock)
        return unlock();
    if (!isOpen())
        return false;
    if (mode == m_mode)
        return true;
    if (!applyLock(handle(), mode == WriteLock ? F_WRLCK : F_RDLCK, block))
        return false;
    m_mode = mode;
    return true;
}

bool LockedFile::unlock()
{
    if (m_mode == NoLock)
        return true;
    m_mode = NoLock;
    flush(); // what was written under the lock must not reach the file after it
    return applyLock(handle(), F_UNLCK, true);
}

bool LockedFile::touch()
{
    return isOpen() && ::futimens(handle(), nullptr) == 0;
}
