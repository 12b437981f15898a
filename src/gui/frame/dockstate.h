#pragma once

#include <QVariantMap>

class QMainWindow;

/// Lets go of the docks and toolbars that are dragged. A drag goes on with the arrangement that it began in, which must
/// not be replaced or end before.
void endDrags(QMainWindow &window);
/// Puts the places and sizes of docks and toolbars, the toolkit's bytes, sealed into a map.
void storeDockState(QVariantMap &map, const QMainWindow &window);
/// Brings them back. Without them, or with bytes that can't be trusted, nothing changes; in the latter case the result
/// tells why, else it is null. The two bottom corners belong to the docks at the sides afterwards.
QString restoreDockState(QMainWindow &window, const QVariantMap &map);
