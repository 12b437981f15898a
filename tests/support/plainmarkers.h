#pragma once

#include <QImage>

#include <cmath>

/// Markers drawn one by one, pixel by pixel, in the columns first .. last - 1: the plain way to draw a scatter plot.
struct PlainMarkers {
    QImage image;
    int first, last;

    void pixel(int x, int y, QRgb color)
    {
        if (x >= first && x < last && y >= 0 && y < image.height())
            image.setPixel(x, y, color);
    }
    /// A ring about a place within the image, a square at the edge for one above or below, nothing for no number.
    void mark(int column, double row, QRgb color)
    {
        const int h = image.height();
        if (std::isnan(row))
            return;
        const bool outside = row < 0 || row > h - 1;
        const int top = outside ? (row < 0 ? 0 : h - 2) : int(std::floor(row + 0.5)) - 1, size = outside ? 2 : 3;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                if (outside || x != 1 || y != 1)
                    pixel(column - 1 + x, top + y, color);
    }
};
