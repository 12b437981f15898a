#pragma once

#include <QStringList>

#include <optional>

/// The file from which a crashed process is started again: a heading and one command-line argument a line, the first of
/// them in the place of the program's name. It is there for as long as its process is.
namespace RecoveryFile {

/// A name that no other process has: "quilvane-<pid>-<ms since the epoch>.recovery", relative to the current directory.
QString name(qint64 processId, qint64 milliseconds);

/// Writes the arguments with which this program starts again. A failure is silent: a crash then restarts into an exit.
void write(const QString &path);

/// The arguments that a recovery file's text holds; nothing if the heading isn't right to the byte.
std::optional<QStringList> argumentsIn(const QString &text);

/// The arguments of the file, which is gone afterwards in any case. The first of two processes that are given the
/// same file gets them; the other waits for the lock and fails.
std::optional<QStringList> take(const QString &path);

} // namespace RecoveryFile
