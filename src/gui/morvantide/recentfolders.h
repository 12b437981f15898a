#pragma once

#include <QStringList>

/// The list of recent folders, newest first, once the folder is opened: it stands first, once; a newcomer to a full
/// list of 20 pushes out the oldest.
QStringList recentFoldersWith(QStringList folders, const QString &opened);
