#include "house/rooms.h"

#include "house/sourcetext.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <functional>

namespace {

QString unitOf(const QString &file)
{
    return file.left(file.lastIndexOf('.'));
}

} // namespace

QVector<Room> roomTable()
{
    QVector<Room> rooms;
    QFile file(QStringLiteral(ROOM_TABLE));
    if (!file.open(QIODevice::ReadOnly))
        return rooms;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        const QStringList parts = line.split('|');
        rooms << Room{parts.value(0), parts.value(1), parts.value(2) == "window",
                      parts.value(3).split(' ', Qt::SkipEmptyParts)};
    }
    return rooms;
}

const Room *roomOf(const QVector<Room> &rooms, const QString &path)
{
    const Room *best = nullptr;
    for (const QString &whole : {path, "src/" + path}) {
        for (const Room &room : rooms) {
            const bool inside = whole == room.place || QFileInfo(whole).path() == room.place;
            if (inside && (!best || room.place.size() > best->place.size()))
                best = &room;
        }
    }
    return best;
}

Arrows unitArrows(const QStringList &files)
{
    Arrows arrows;
    for (const QString &file : files)
        arrows[unitOf(file)];
    for (const QString &file : files) {
        for (const QString &include : includesOf(textOf(file))) {
            for (const QString &other : {unitOf(include), unitOf("src/" + include)}) {
                if (arrows.contains(other) && other != unitOf(file))
                    arrows[unitOf(file)] << other;
            }
        }
    }
    return arrows;
}

QStringList circles(const Arrows &arrows)
{
    QStringList found;
    QMap<QString, int> index, low;
    QStringList stack;
    const std::function<void(const QString &)> visit = [&](const QString &unit) {
        low[unit] = index[unit] = index.size();
        stack << unit;
        for (const QString &other : arrows[unit]) {
            if (!index.contains(other))
                visit(other);
            if (stack.contains(other))
                low[unit] = std::min(low[unit], low[other]);
        }
        if (low[unit] != index[unit])
            return;
        const QStringList component = stack.mid(stack.indexOf(unit));
        stack = stack.mid(0, stack.indexOf(unit));
        if (component.size() > 1)
            found << component.join(", ");
    };
    for (auto it = arrows.begin(); it != arrows.end(); ++it) {
        if (!index.contains(it.key()))
            visit(it.key());
    }
    return found;
}
