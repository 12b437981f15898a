#pragma once

#include <QSettings>

namespace WindowSetup {

/// The text that QSettings::IniFormat writes and reads, kept safely: what could not be written whole isn't put into the
/// file's place, which Qt does where the disk is full; and a file isn't written over that could not be read, which Qt
/// takes for an empty one. In both cases the old file stays and QSettings::status() tells. The bytes are on the disk
/// before the name is.
///
///     QSettings settings(path, WindowSetup::settingsFormat());
///
/// All objects for one file have to be of this format, on one thread.
QSettings::Format settingsFormat();

/// Removes the lock of a settings file that a killed process has made and not yet put its whole name into: Qt would
/// wait half a minute for it with the first setting that is written. To be called before that.
void removeNamelessLock(const QString &settingsFile);

} // namespace WindowSetup
