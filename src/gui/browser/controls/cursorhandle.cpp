#include "gui/browser/controls/cursorhandle.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace Tsb {

namespace {

constexpr int tip = 4; ///< height of the point below the number

} // namespace

bool CursorHandles::isInSight(int which) const
{
    const std::optional<RecordTime> &time = times[std::size_t(which)];
    const int column = time ? scale.pixelAt(*time) : -1;
    return column >= 0 && column < axis.width();
}

QRect CursorHandles::placeOf(int which) const
{
    const int half = lineHeight / 2;
    return {scale.pixelAt(*times[std::size_t(which)]) - half, axis.height() - lineHeight - tip, 2 * half + 1,
            lineHeight + tip};
}

int CursorHandles::at(const QPoint &point) const
{
    for (int which = MeasuringCursors::count - 1; which >= 0; --which) {
        if (isInSight(which) && placeOf(which).contains(point))
            return which;
    }
    return -1;
}

void CursorHandles::draw(QPainter &painter, const QPalette &palette) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (int which = 0; which < MeasuringCursors::count; ++which) {
        if (!isInSight(which))
            continue;
        const QRect place = placeOf(which);
        const QRectF flag = QRectF(place).adjusted(0.5, 0.5, -0.5, -tip - 0.5);
        QPainterPath outline(flag.topLeft());
        outline.lineTo(flag.topRight());
        outline.lineTo(flag.bottomRight());
        outline.lineTo(flag.center().x(), place.bottom() + 0.5);
        outline.lineTo(flag.bottomLeft());
        outline.closeSubpath();
        painter.setPen(palette.color(QPalette::WindowText));
        painter.setBrush(palette.color(QPalette::Highlight));
        painter.drawPath(outline);
        painter.setPen(palette.color(QPalette::HighlightedText));
        painter.drawText(flag, Qt::AlignCenter | Qt::TextDontClip, QString::number(which + 1));
    }
    painter.restore();
}

} // namespace Tsb
