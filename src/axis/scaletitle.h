#pragma once

#include <QStringList>

#include <functional>

namespace Tsb {

/// The room that a scale has for its name, beside its numbers; all in pixels.
struct TitleRoom {
    int lineHeight = 0;
    int firstLine = 0;    ///< width of the first line from left to right, which an icon may shorten
    int line = 0;         ///< width of the others
    int lines = 0;        ///< the greatest number of lines
    int firstUpwards = 0; ///< length of the first line from the bottom upwards
    int upwards = 0;      ///< length of the others
    int depth = 0;        ///< width that lines upwards may take together
};

struct TitlePlan {
    bool upwards = false;
    QStringList lines; ///< the caller shortens a line that is too wide
};

/// Places a label upwards with its own lines if they fit, else broken into words across, else broken so upwards. A line
/// may also end behind a full stop or an underscore. If the label fits in no way, its own lines stand upwards if they
/// are longer than lines across, else its first words stand across; nothing stands in lines too narrow to be read.
TitlePlan planTitle(const QString &label, const TitleRoom &room, const std::function<int(const QString &)> &widthOf);

} // namespace Tsb
