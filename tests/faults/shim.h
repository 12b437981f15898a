#pragma once

#include "faults/writers.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <vector>

/// The library that stands between a program and its calls (callshim.cpp).
namespace Faults {

/// A call on a path below the watched folder.
struct Call {
    QString name;
    bool isDone = false; ///< it didn't fail
    quint64 file = 0;    ///< the file's inode
    qint64 result = 0;   ///< of a write, the number of its bytes
    qint64 offset = 0;   ///< of a write; the size of a truncation
    QString path, target;
    QByteArray bytes; ///< that were written
};

/// What the environment needs for the folder's calls to be watched.
QStringList shimVariables(const QString &folder);

/// How far the calls of a process that is started with variable() have come, whatever becomes of it.
class CallCounter {
public:
    CallCounter();

    /// Begins at zero.
    QString variable();
    qint64 begun() const;
    qint64 ended() const;

private:
    QTemporaryFile m_file;
    volatile qint64 *m_counts = nullptr;
};

/// The folder in which recordOf() has the calls done.
QString watchedFolder(const QString &folder);
/// The calls of an undisturbed run on the writer's folder, which is made here.
std::vector<Call> recordOf(const Writer &writer, const QString &folder);

} // namespace Faults
