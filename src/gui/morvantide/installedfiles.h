#pragma once

#include <QString>
#include <QStringList>

/// Where the files lie that come with the program, or that serve all users of a machine.
namespace InstalledFiles {

/// Whether an executable in that folder belongs to the system, below /usr, where no user keeps files.
bool belongsToSystem(const QString &applicationFolder);

/// The folders with layouts for all users, the first first: those of a system's program alone.
QStringList sharedFolders(const QString &applicationFolder);

/// All layout files in these folders; absolute paths.
QStringList layoutsIn(const QStringList &folders);

/// The layout file for data whose own one doesn't exist: that of the first of these folders that has one for all data,
/// else the data's own.
QString layoutToRestore(const QString &ownLayout, const QStringList &sharedFolders);

/// The first page of the user guide: of the installation that the executable belongs to, or of the source tree that it
/// was built in. Empty if there is none.
QString userGuidePage(const QString &applicationFolder);

} // namespace InstalledFiles
