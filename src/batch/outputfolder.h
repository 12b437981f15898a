#pragma once

#include <QString>
#include <QStringList>

namespace Batch {

/// The reason why that path can't be the output folder, such as that it is a file; empty if it is a folder or doesn't
/// exist.
QString unusableFolder(const QString &folder);

/// The reason why no file can be written to that folder; empty if there is none. It is tried, so that a command needn't
/// work for hours to find it out: the folder is made, those above it too, with a file in it, and all that is new is
/// removed again.
QString unwritableFolder(const QString &folder);

/// Makes the folder, and those above it, and brings their names to the disk. Returns the reason if it can't, else an
/// empty text.
QString makeFolder(const QString &folder);

/// Brings the names of the folder's files to the disk, and those of folders that are new. False if they might be lost
/// in a power failure, which is told.
bool bringNamesToDisk(const QString &folder, const QStringList &newFolders = {});

} // namespace Batch
