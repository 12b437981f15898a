#include "gui/common/tsb/markerpainter.h"

namespace Tsb {

MarkerPainter::MarkerPainter(QImage &image, int first, int last)
    : m_bits(image.bits()), m_stride(image.bytesPerLine()), m_first(std::max(first, 0)),
      m_last(std::min(last, image.width())), m_height(image.height())
{
}

void MarkerPainter::squareAtBorder(int x, int y, QRgb color)
{
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (dx != 0 || dy != 0)
                pixel(x + dx, y + dy, color);
}

void MarkerPainter::edge(int x, int top, QRgb color)
{
    for (int dy = 0; dy < 2; ++dy)
        for (int dx = -1; dx <= 0; ++dx)
            pixel(x + dx, top + dy, color);
}

} // namespace Tsb
