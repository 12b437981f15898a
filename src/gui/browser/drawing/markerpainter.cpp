#include "gui/browser/drawing/markerpainter.h"

#include "util/functionclones.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace Tsb {

namespace {

using namespace MarkerPlaces;
using Place = MarkerPlace;

constexpr Place noPlace = std::numeric_limits<Place>::max();

} // namespace

MarkerPainter::MarkerPainter(QImage &image, int first, int last, ColorOf colorOf)
    : m_colorOf(std::move(colorOf)), m_bits(image.bits()), m_stride(image.bytesPerLine()), m_first(std::max(first, 0)),
      m_end(std::min(last, image.width())), m_height(std::min(image.height(), mostRows)),
      m_keys(std::size_t(firstRow) + std::size_t(m_height) + 1, 0), m_least(noPlace), m_greatest(nowhere)
{
}

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void MarkerPainter::noteSpan(const Place *places, std::size_t count)
{
    Place least = m_least, greatest = m_greatest;
    for (std::size_t k = 0; k < count; ++k) {
        least = places[k] < least ? places[k] : least;
        greatest = places[k] > greatest ? places[k] : greatest;
    }
    m_least = least;
    m_greatest = greatest;
}

void MarkerPainter::flush()
{
    if (m_least == noPlace)
        return;
    // A marker beyond an edge reaches some rows inward.
    int from = m_least - firstRow - 1, to = m_greatest - firstRow + 2;
    if (m_least < firstRow)
        from = 0;
    if (m_keys[aboveTop] != 0)
        to = std::max(to, triangleHeight);
    if (m_keys[belowBottom] != 0)
        to = m_height;
    if (m_column >= m_first - triangleHeight + 1 && m_column < m_end + triangleHeight - 1) {
        findColors();
        writeRows(std::max(from, 0), std::min(to, m_height));
    }
    std::fill(m_keys.begin() + m_least, m_keys.begin() + m_greatest + 1, 0);
    m_least = noPlace;
    m_greatest = nowhere;
}

void MarkerPainter::findColors()
{
    constexpr Key order = ~Key(0) << 32;
    for (Place place = std::max(m_least, aboveTop); place <= m_greatest; ++place)
        if (Key &key = m_keys[std::size_t(place)])
            key = (key & order) | m_colorOf(Name(key));
}

/// The triangle that covers the pixel in that row, so far from the middle of the column's markers.
MarkerPainter::Key MarkerPainter::edgeAt(int y, int distance) const
{
    const int fromBottom = m_height - 1 - y;
    const Key top = y < triangleHeight && distance <= y ? m_keys[aboveTop] : 0;
    const Key bottom = fromBottom < triangleHeight && distance <= fromBottom ? m_keys[belowBottom] : 0;
    return std::max(top, bottom);
}

/// A square leaves its middle open.
void MarkerPainter::writeRows(int from, int to)
{
    const auto write = [](QRgb *pixel, Key key) { *pixel = key != 0 ? QRgb(key) : *pixel; };
    const auto isInside = [this](int column) { return column >= m_first && column < m_end; };
    const bool left = isInside(m_column - 1), middle = isInside(m_column), right = isInside(m_column + 1);
    const bool hasEdge = m_keys[aboveTop] != 0 || m_keys[belowBottom] != 0;
    for (int y = from; y < to; ++y) {
        const Key *const key = m_keys.data() + firstRow + y;
        const Key beside = std::max(key[-1], key[1]);
        const Key squares = std::max(beside, key[0]);
        QRgb *const pixel = reinterpret_cast<QRgb *>(m_bits + std::ptrdiff_t(y) * m_stride) + m_column;
        if (hasEdge && (y < triangleHeight || y >= m_height - triangleHeight)) {
            for (int x = 1 - triangleHeight; x < triangleHeight; ++x) {
                const Key square = x == 0 ? beside : std::abs(x) == 1 ? squares : 0;
                if (isInside(m_column + x))
                    write(pixel + x, std::max(square, edgeAt(y, std::abs(x))));
            }
            continue;
        }
        if (left)
            write(pixel - 1, squares);
        if (middle)
            write(pixel, beside);
        if (right)
            write(pixel + 1, squares);
    }
}

} // namespace Tsb
