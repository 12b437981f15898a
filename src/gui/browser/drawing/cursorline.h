#pragma once

class QPainter;
class QRect;

namespace Tsb {

/// Draws the line of a measuring cursor down a plot, on a light rim that keeps it legible on any colours. The first one
/// is whole, the second dashed. The column is one of the painter's.
void drawCursorLine(QPainter &painter, const QRect &contents, int column, int which);
/// How far the rim reaches on both sides.
constexpr int cursorLineMargin = 1;

} // namespace Tsb
