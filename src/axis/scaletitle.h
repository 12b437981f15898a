#pragma once

#include <QStringList>

#include <functional>

namespace Tsb {

/// The room that a scale has for its name, beside its numbers; all in pixels.
struct TitleRoom {
    int lineHeight = 0;
    int firstLine = 0;    ///< width of the first line from left to right, which an icon may shorten
    int line = 0;         ///< width of the others
    int lines = 0;        ///< how many of them there may be
    int firstUpwards = 0; ///< length of the first line from the bottom upwards
    int upwards = 0;      ///< length of the others
    int depth = 0;        ///< width that lines upwards may take together
};

struct TitlePlan {
    bool upwards = false;
    QStringList lines; ///< one that is too wide is to be shortened
};

/// Upwards as the label stands, if its lines fit; else word by word from left to right; else word by word upwards. If
/// none of these holds all of it, the way with the longer lines, or nothing where that says nothing. A line may also
/// end behind a full stop or an underscore.
TitlePlan planTitle(const QString &label, const TitleRoom &room, const std::function<int(const QString &)> &widthOf);

} // namespace Tsb
