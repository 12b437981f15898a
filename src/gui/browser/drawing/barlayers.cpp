#include "gui/browser/drawing/barlayers.h"

#include "gui/browser/drawing/barblending.h"

#include <algorithm>

namespace Tsb {

namespace {

using Channel = BarColor::Channel;

/// The colour of one class of rows.
QRgb colorOf(const BarColor &colors, int rowClass)
{
    return qRgb(colors.red[rowClass], colors.green[rowClass], colors.blue[rowClass]);
}

void setColor(BarColor &colors, int rowClass, QRgb color)
{
    colors.red[rowClass] = std::uint16_t(qRed(color));
    colors.green[rowClass] = std::uint16_t(qGreen(color));
    colors.blue[rowClass] = std::uint16_t(qBlue(color));
}

/// One channel of both bounds: two lines of the bar upon them.
inline void layChannel(Channel &least, Channel &greatest, Channel color, Channel alpha)
{
    least = underTwoLines(least, color, alpha);
    greatest = underTwoLines(greatest, color, alpha);
}

/// Whether the colours of these classes are so near to each other that their middle is within 1 of both.
bool areClose(const BarColor &least, const BarColor &greatest, PerRowClass classes)
{
    const auto isApart = [](Channel a, Channel b) { return Channel(b - a) > 2; };
    return isNone(classes & (isApart(least.red, greatest.red) | isApart(least.green, greatest.green) |
                             isApart(least.blue, greatest.blue)));
}

/// The first colours for these classes, the second for the others.
BarColor chosen(PerRowClass classes, const BarColor &a, const BarColor &b)
{
    const Channel mask = reinterpret_cast<Channel>(classes);
    return {(a.red & mask) | (b.red & ~mask), (a.green & mask) | (b.green & ~mask), (a.blue & mask) | (b.blue & ~mask)};
}

BarColor middle(const BarColor &a, const BarColor &b)
{
    return {(a.red + b.red) / 2, (a.green + b.green) / 2, (a.blue + b.blue) / 2};
}

} // namespace

BarColor barColor(QRgb color)
{
    const auto all = [](int channel) { return Channel{} + std::uint16_t(channel); };
    return {all(qRed(color)), all(qGreen(color)), all(qBlue(color))};
}

void BarLayers::lay(std::size_t first, std::size_t end, Bounds &bounds) const
{
    BarColor least = bounds.least, greatest = bounds.greatest;
    for (std::size_t i = end; i-- > first;) {
        const BarColor &color = *m_layers[i].color;
        const Channel alphas = reinterpret_cast<Channel>(*m_layers[i].alphas);
        layChannel(least.red, greatest.red, color.red, alphas);
        layChannel(least.green, greatest.green, color.green, alphas);
        layChannel(least.blue, greatest.blue, color.blue, alphas);
    }
    bounds = {least, greatest};
}

QRgb BarLayers::blended(QRgb below, int rowClass) const
{
    std::uint32_t red = std::uint32_t(qRed(below)), green = std::uint32_t(qGreen(below)),
                  blue = std::uint32_t(qBlue(below));
    for (std::size_t i = m_count; i-- > 0;) {
        const std::uint32_t alpha = std::uint32_t((*m_layers[i].alphas)[rowClass]);
        const BarColor &color = *m_layers[i].color;
        red = underTwoLines(red, std::uint32_t(color.red[rowClass]), alpha);
        green = underTwoLines(green, std::uint32_t(color.green[rowClass]), alpha);
        blue = underTwoLines(blue, std::uint32_t(color.blue[rowClass]), alpha);
    }
    return qRgb(int(red), int(green), int(blue));
}

/// All classes at once. Where what lies beneath is hidden, it is taken to be black and white: a brighter one never
/// comes to a darker colour, so that the two bound what any other would come to.
bool BarLayers::blend(QImage &image, int x, const BarStamps &stamps, const BarCover &cover) const
{
    if (m_count == 0)
        return true;
    const std::vector<int> &classOfRow = stamps.classOfRow();
    const PerRowClass hidden = cover.hidden();
    uchar *const column = image.bits() + std::size_t(x) * sizeof(QRgb);
    const auto bytesPerLine = std::size_t(image.bytesPerLine());
    const auto pixelAt = [&](std::size_t y) -> QRgb & { return *reinterpret_cast<QRgb *>(column + y * bytesPerLine); };
    const BarColor black = barColor(qRgb(0, 0, 0)), white = barColor(qRgb(255, 255, 255));
    Bounds bounds{black, white};
    std::array<QRgb, rowClasses> below{}, results{};
    if (!cover.hides(stamps.touched(false) | stamps.touched(true)))
        for (std::size_t y = 0; y < classOfRow.size(); ++y)
            if (const int rowClass = classOfRow[y]; rowClass >= 0 && !hidden[rowClass]) {
                below[std::size_t(rowClass)] = pixelAt(y);
                setColor(bounds.least, rowClass, pixelAt(y));
                setColor(bounds.greatest, rowClass, pixelAt(y));
            }
    lay(m_aboveSeal, m_count, bounds);
    bounds.least = chosen(m_sealed, black, bounds.least);
    bounds.greatest = chosen(m_sealed, white, bounds.greatest);
    lay(0, m_aboveSeal, bounds);
    if (!areClose(bounds.least, bounds.greatest, hidden))
        return false;
    const BarColor colors = middle(bounds.least, bounds.greatest);
    for (int rowClass = 0; rowClass < int(rowClasses); ++rowClass)
        results[std::size_t(rowClass)] = colorOf(colors, rowClass);
    for (std::size_t y = 0; y < classOfRow.size(); ++y) {
        const int rowClass = classOfRow[y];
        if (rowClass < 0)
            continue;
        QRgb &pixel = pixelAt(y);
        const auto known = std::size_t(rowClass);
        if (!hidden[rowClass] && below[known] != pixel) { // rows of one class over another background
            below[known] = pixel;
            results[known] = blended(pixel, rowClass);
        }
        pixel = results[known];
    }
    return true;
}

} // namespace Tsb
