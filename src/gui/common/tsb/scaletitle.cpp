#include "gui/common/tsb/scaletitle.h"

#include <algorithm>

namespace Tsb {

namespace {

using WidthOf = std::function<int(const QString &)>;
using RoomIn = std::function<int(int)>; ///< the width of a line

QStringList wrapped(QString label, const RoomIn &roomIn, const WidthOf &widthOf)
{
    QStringList lines{QString()};
    for (const QString &word : label.replace(QLatin1Char('\n'), QLatin1Char(' ')).split(QLatin1Char(' '))) {
        const QString longer = lines.last().isEmpty() ? word : lines.last() + QLatin1Char(' ') + word;
        if (lines.last().isEmpty() || widthOf(longer) <= roomIn(lines.size() - 1))
            lines.last() = longer;
        else
            lines.append(word);
    }
    return lines;
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
    const auto upwards = [&room](int) { return room.upwards; };
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
    return {false, acrossLines.mid(0, std::max(1, room.lines))};
}

} // namespace Tsb
