#pragma once

#include <QByteArray>

class QWidget;

/// Restores what saveGeometry() gave, and sees to it that the window isn't larger than the desktop and can be reached:
/// the bytes may be damaged, or of a time with other screens. False, and nothing done, for bytes of another kind.
bool restoreReachableGeometry(QWidget &window, const QByteArray &geometry);
