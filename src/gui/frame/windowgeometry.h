#pragma once

#include <QByteArray>

class QSettings;
class QWidget;

/// Keeps where a window stands and how large it is.
void storeWindowGeometry(QSettings &settings, const QWidget &window);
/// Gives the window the geometry that was stored, not larger than the desktop and in reach. Without one, or with
/// damaged bytes, nothing happens.
void restoreWindowGeometry(const QSettings &settings, QWidget &window);
/// The same with bytes that may be damaged, or of a time with other screens. False: the window stays as it is.
bool restoreReachableGeometry(QWidget &window, const QByteArray &geometry);
/// Empties settings that an older version of the program has written.
void forgetOlderSettings(QSettings &settings);
