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
    /// A ring about a place within the image, for one above or below a triangle that points outwards, nothing for no
    /// number.
    void mark(int column, double row, QRgb color)
    {
        const int h = image.height();
        if (std::isnan(row))
            return;
        if (row < 0 || row > h - 1) {
            for (int y = 0; y < 3; ++y)
                for (int x = -y; x <= y; ++x)
                    pixel(column + x, row < 0 ? y : h - 1 - y, color);
            return;
        }
        const int top = int(std::floor(row + 0.5)) - 1;
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                if (x != 1 || y != 1)
                    pixel(column - 1 + x, top + y, color);
    }
};
