#pragma once

#include <QString>

class QFile;

/// For every path that a user or a file names: it is looked at before it is opened. Reading a pipe or a terminal may
/// wait for ever, and a device may have no end.

/// Null for a regular file, links being followed; else the reason why it is none, such as "It is a pipe".
QString whyNotRegularFile(const QString &path);

/// Opens a regular file for reading. False: `reason` (may be null) says why not.
bool openRegularFile(QFile &file, QString *reason = nullptr);

/// The bytes from the file's position to its end, but at most `mostBytes`. Memory is taken for the bytes that are
/// there; QIODevice::read() takes it for as many as it may read.
QByteArray readUpTo(QFile &file, qint64 mostBytes);
