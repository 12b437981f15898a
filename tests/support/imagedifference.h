#pragma once

#include <QImage>

#include <algorithm>

/// The largest difference of a color's part between two images of one size; 256 for images of two sizes.
/// The library of fonts makes outlines of letters that come out up to 4 apart from one window to the next.
inline int greatestDifference(const QImage &one, const QImage &other)
{
    int greatest = one.size() == other.size() ? 0 : 256;
    for (int y = 0; greatest < 256 && y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y); // to convert whole images, the toolkit starts threads of its own
            const QRgb b = other.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                 std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return greatest;
}
