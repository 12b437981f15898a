#pragma once

#include <QVariant>

namespace RecordViews {

/// What of a cell with a value that the chosen flag names stands out: its colour, a line below it, and words for
/// readers of the screen. Nothing for other roles.
QVariant flagMark(int role);

} // namespace RecordViews
