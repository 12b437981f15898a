#pragma once

#include "gui/common/tsb/valuescale.h"

#include <QImage>

namespace Tsb {

/// Writes the markers of a scatter plot into the pixels of an image: hollow squares of eight pixels, and small marks on
/// the edge for what lies above or below. Only the columns first .. last - 1 are written. Opaque colours; a later
/// marker covers an earlier one.
class MarkerPainter {
public:
    MarkerPainter(QImage &image, int first, int last);

    /// x and y as the scales give them, y down from the top edge. NaN draws nothing.
    void mark(double x, double y, QRgb color)
    {
        if (!(x > m_first - 2.0 && x < m_last + 2.0))
            return;
        const int column = int(x + 16.5) - 16; // rounds halves up, as points are drawn; x is above -16
        if (y >= 0 && y <= m_height - 1)
            square(column, int(y + 0.5), color);
        else if (y < 0)
            edge(column, 0, color);
        else if (y > m_height - 1)
            edge(column, m_height - 2, color);
    }

private:
    QRgb *row(int y) { return reinterpret_cast<QRgb *>(m_bits + std::ptrdiff_t(y) * m_stride); }

    void square(int x, int y, QRgb color)
    {
        if (x <= m_first || x >= m_last - 1 || y <= 0 || y >= m_height - 1)
            return squareAtBorder(x, y, color);
        QRgb *const above = row(y - 1) + x;
        above[-1] = above[0] = above[1] = color;
        QRgb *const middle = row(y) + x;
        middle[-1] = middle[1] = color;
        QRgb *const below = row(y + 1) + x;
        below[-1] = below[0] = below[1] = color;
    }
    void squareAtBorder(int x, int y, QRgb color);
    void edge(int x, int top, QRgb color);
    void pixel(int x, int y, QRgb color)
    {
        if (x >= m_first && x < m_last && y >= 0 && y < m_height)
            row(y)[x] = color;
    }

    uchar *m_bits;
    int m_stride;
    int m_first;
    int m_last;
    int m_height;
};

} // namespace Tsb
