#pragma once

#include <QString>

#include <sys/types.h>

/// The end of a file that was cut off while it was written: it goes into another file, so that rows can follow what is
/// whole, and nothing is lost.
namespace TornTail {

/// Where the ends of that file go: "NAME.torn".
QString fileFor(const QString &name);

/// Moves the bytes of the open file of that name from `begin` to `end`, where it ends, behind those of its fileFor(),
/// and begins a line there, unless these end in such a line already; no link is followed to that file. They are on the
/// disk before the file is cut. Null, or the reason why the file is as it was.
QString move(int descriptor, const QString &name, off_t begin, off_t end);

} // namespace TornTail
