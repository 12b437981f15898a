#pragma once

#include <QSize>

class QMainWindow;

/// Places the docks of the window, which it knows by their object names, where they stand by default: the record and
/// its plots on the left, its tables and the flags on the right, the log at the bottom. Docks that there aren't leave
/// no gap; a dock whose name it doesn't know goes to the right.
void arrangeDocks(QMainWindow &window);

/// Gives the two bottom corners to the docks at the sides.
void setDockCorners(QMainWindow &window);

/// Brings all docks and toolbars back to where they stand by default, also hidden ones and those outside the window.
void resetDocks(QMainWindow &window);

/// Gives the docks their first sizes, by font and window: half of the width or more is left to the centre, and the log
/// is a strip to glance at. For a window that has its size.
void sizeDocks(QMainWindow &window);

/// What leaveRoomForCentre() holds the centre against: its size when the docks were stored that are restored now.
void setStoredCentre(QMainWindow &window, QSize size);

/// Sizes the docks as at first where they, restored in a smaller window than they were stored in, leave less to the
/// centre than it had there, and less than a quarter of the window's width or height.
void leaveRoomForCentre(QMainWindow &window);
