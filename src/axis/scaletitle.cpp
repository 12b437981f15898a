#include "axis/scaletitle.h"

#include <algorithm>

namespace Tsb {

namespace {

using WidthOf = std::function<int(const QString &)>;
using RoomIn = std::function<int(int)>; ///< the width of a line

/// The parts between which a line may end, blanks left at their ends.
QStringList partsOf(const QString &label)
{
    static const QString ends = QStringLiteral(" \n._");
    QStringList parts{QString()};
    for (const QChar c : label) {
        parts.last() += c == QLatin1Char('\n') ? QLatin1Char(' ') : c;
        if (ends.contains(c))
            parts << QString();
    }
    return parts;
}

QStringList wrapped(const QString &label, const RoomIn &roomIn, const WidthOf &widthOf)
{
    QStringList lines{QString()};
    for (const QString &part : partsOf(label)) {
        const QString longer = lines.last() + part;
        if (lines.last().isEmpty() || widthOf(longer.trimmed()) <= roomIn(lines.size() - 1))
            lines.last() = longer;
        else
            lines << part;
    }
    for (QString &line : lines)
        line = line.trimmed();
    return lines;
}

/// So many lines at most. The last has the next behind it where there are more: too wide then, it shows that it is cut.
QStringList firstOf(const QStringList &lines, int most)
{
    QStringList first = lines.mid(0, most);
    if (lines.size() > most)
        first.last() += QLatin1Char(' ') + lines[most];
    return first;
}

bool fit(const QStringList &lines, int most, const RoomIn &roomIn, const WidthOf &widthOf)
{
    for (int i = 0; i < lines.size(); ++i) {
        if (widthOf(lines[i]) > roomIn(i))
            return false;
    }
    return lines.size() <= most;
}

} // namespace

TitlePlan planTitle(const QString &label, const TitleRoom &room, const WidthOf &widthOf)
{
    const auto upwards = [&room](int line) { return line == 0 ? room.firstUpwards : room.upwards; };
    const auto across = [&room](int line) { return line == 0 ? room.firstLine : room.line; };
    const int linesUpwards = room.depth / std::max(1, room.lineHeight);

    const QStringList asItStands = label.split(QLatin1Char('\n'));
    if (fit(asItStands, linesUpwards, upwards, widthOf))
        return {true, asItStands};
    const QStringList acrossLines = wrapped(label, across, widthOf);
    if (fit(acrossLines, room.lines, across, widthOf))
        return {false, acrossLines};
    const QStringList upwardLines = wrapped(label, upwards, widthOf);
    if (fit(upwardLines, linesUpwards, upwards, widthOf))
        return {true, upwardLines};
    if (room.firstUpwards > room.line && asItStands.size() <= linesUpwards)
        return {true, asItStands};
    const bool canBeRead = room.line >= 2 * room.lineHeight;
    return {false, canBeRead ? firstOf(acrossLines, std::max(1, room.lines)) : QStringList()};
}

} // namespace Tsb
