#pragma once

#include <QString>

/// Where the program's settings lie: "morvantide.conf" beside the executable if it is there already or could be written
/// there, else in the user's folder for settings. Of a program of the system, below /usr, they lie in the user's folder
/// in any case.
QString settingsFilePath(const QString &applicationFolder, const QString &userFolder);
/// The same for the running program.
QString applicationSettingsFile();
