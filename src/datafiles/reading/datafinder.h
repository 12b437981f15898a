#pragma once

#include <QDate>
#include <QDir>
#include <QStringList>
#include <QVariantMap>

/// The names of the day files in the folder of a choice, in the listing's order. The choice's keys are "folderName",
/// "beginTime", "endTime" (QDateTime), "limitBegin", "limitEnd", "variant" (a pattern, as it stands) and "legacyFiles".
/// The span is compared with the dates in the file names alone.
QStringList findDataFiles(const QVariantMap &choice);
/// The same; nothing is logged.
QStringList listDataFiles(const QVariantMap &choice);

/// The window setup file for a data folder: the only one there or in its parent, else "default.windowsetup". The answer
/// may not exist.
QString findWindowSetup(QDir folder);
/// All of the window setup files in the folder and its parent, in this order; absolute paths.
QStringList windowSetupsFor(QDir folder);

/// The date in the name of a day file of any kind; invalid where its digits make none.
QDate dayOfDataFile(const QString &name);

/// Which day files a folder holds.
struct FolderContents {
    QStringList variants;  ///< averaging variants, sorted
    int unmarkedFiles = 0; ///< day files without a variant in their names
    int legacyFiles = 0;   ///< old-style files
};
FolderContents folderContents(const QString &folder);
/// How many day files of any kind the folder holds for an averaging variant of exactly that name; spectra files count
/// for these operating modes.
int dayFileCount(const QString &folder, const QString &variant, const QStringList &modes);
/// The text for a user whose choice matched no file; its three statements are parted by that character.
QString nothingMatchedText(const QString &folder, QChar between = QLatin1Char(' '));
