#pragma once

#include <QString>
#include <QStringList>

/// Makes the folder and those above it that are missing; `made` gets those that it made, the outermost first, also
/// where it fails. The result is null, or the reason of the failure in the system's words.
QString makeFolders(const QString &folder, QStringList *made);

/// The same, and waits until the names of the new folders are on the disk. Where they can't be brought there, the
/// folders stand and the reason is told.
QString makeLastingFolders(const QString &folder);

/// Of the folder and those above it those that aren't there, the outermost first.
QStringList missingFolders(const QString &folder);

/// Waits until the names of these folders, which were made, are on the disk.
QString syncNamesOf(const QStringList &made);
