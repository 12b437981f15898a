#pragma once

#include "gui/browser/drawing/markerplaces.h"

#include <QImage>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

namespace Tsb {

/// Writes the markers of a scatter plot into the pixels of an image: hollow squares of eight pixels, and on the edge
/// triangles that point outwards for values above or below. Only the columns first .. last - 1 are written. Opaque
/// colours; a later marker covers an earlier one.
///
/// Markers come column by column. Of the many that one column gets, each row remembers only the last, and the pixels
/// are worked out from those when the column is left: the same picture as by writing each, at the cost of one number
/// kept for each marker. Only the colours of those that show are asked for.
class MarkerPainter {
public:
    /// The caller's number of a marker.
    using Name = std::uint32_t;
    using ColorOf = std::function<QRgb(Name)>;

    MarkerPainter(QImage &image, int first, int last, ColorOf colorOf);
    MarkerPainter(const MarkerPainter &) = delete;
    MarkerPainter &operator=(const MarkerPainter &) = delete;
    ~MarkerPainter() { flush(); }

    using Place = MarkerPlace;
    /// A triangle is so many rows high, and reaches as many columns less one to each side.
    static constexpr int triangleHeight = 3;

    /// The column of the middles of the markers that follow; may lie outside of the image.
    void setColumn(int column)
    {
        if (column == m_column)
            return;
        flush();
        m_column = column;
    }
    void mark(Place place, Name name) { markEach(&place, 1, 1, 0, name, 0); }
    /// Markers of one column, named by `firstName` and steps from there. Of `lines` lines of as many markers each,
    /// which are drawn point by point by turns, this is number `line`; they come in order.
    void markEach(const Place *places, std::size_t count, std::size_t lines, std::size_t line, Name firstName,
                  Name nameStep)
    {
        noteSpan(places, count);
        Key *const keys = m_keys.data();
        Key key = (m_order + line) << 32 | firstName;
        const Key step = Key(lines) << 32 | nameStep;
        for (std::size_t k = 0; k < count; ++k, key += step) {
            Key &last = keys[places[k]];
            last = line == 0 ? key : std::max(key, last);
        }
        if (line + 1 == lines)
            m_order += count * lines;
    }
    /// Writes the markers that are still held back.
    void flush();

private:
    /// Which marker was the last, in the upper half, and its name, later its colour; 0 for none.
    using Key = std::uint64_t;

    void noteSpan(const Place *places, std::size_t count);
    void findColors();
    void writeRows(int from, int to);
    Key edgeAt(int y, int distance) const;

    ColorOf m_colorOf;
    uchar *m_bits;
    int m_stride;
    int m_first;
    int m_end;
    int m_height;
    int m_column = -16;
    Key m_order = 1;         ///< of the next marker
    std::vector<Key> m_keys; ///< by place
    Place m_least;
    Place m_greatest;
};

} // namespace Tsb
