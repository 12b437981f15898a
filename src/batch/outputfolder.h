#pragma once

#include <QString>

namespace Batch {

/// Why that can't be the folder to write to: it is something else. Empty if it is a folder, or nothing yet.
QString unusableFolder(const QString &folder);

/// Why no file can be written to that folder, or an empty text. It is tried, so that a command needn't work for hours
/// to find it out: the folder is made, those above it too, with a file in it, and all that is new is removed again.
QString unwritableFolder(const QString &folder);

/// Makes the folder, and those above it. Empty, or why it can't be.
QString makeFolder(const QString &folder);

} // namespace Batch
