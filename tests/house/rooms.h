#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/// The table of rooms as the build has it, and the arrows that the includes draw.

struct Room {
    QString place; ///< a folder such as "src/util", or a program's source in it
    QString target;
    bool windows = false; ///< may include Qt Gui and Widgets
    QStringList needs;    ///< targets, libraries from outside among them
};

/// In the order of CMakeLists.txt.
QVector<Room> roomTable();
/// The program, or the room in whose folder the file stands; null if there is none, as for rooms with windows in a build
/// without. `path` may be relative to src, as in an include.
const Room *roomOf(const QVector<Room> &rooms, const QString &path);

/// The units that each unit includes. A unit is a header and its source, without the ending: "src/util/calendar".
using Arrows = QMap<QString, QSet<QString>>;
Arrows unitArrows(const QStringList &files);
/// The strongly connected components of more than one unit (Tarjan), each as a line of its names.
QStringList circles(const Arrows &arrows);
