#pragma once

#include "gui/common/tsb/valuescale.h"

#include <QImage>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace Tsb {

/// Writes the markers of a scatter plot into the pixels of an image: hollow squares of eight pixels, and small marks on
/// the edge for what lies above or below. Only the columns first .. last - 1 are written. Opaque colours; a later
/// marker covers an earlier one.
///
/// Markers come column by column. Of the many that one column gets, each row remembers only the last, and the pixels
/// are worked out from those when the column is left: the same picture as by writing each, at the cost of one number
/// kept for each marker.
class MarkerPainter {
public:
    MarkerPainter(QImage &image, int first, int last);
    MarkerPainter(const MarkerPainter &) = delete;
    MarkerPainter &operator=(const MarkerPainter &) = delete;
    ~MarkerPainter() { flush(); }

    /// A marker's place in its column, made by placesOf().
    using Place = std::int32_t;
    /// The places of values on a scale. A NaN draws nothing.
    void placesOf(const ValueScale &scale, const double *values, std::size_t count, Place *places) const;

    /// The column of the middles of the markers that follow; may lie outside of the image.
    void setColumn(int column)
    {
        if (column == m_column)
            return;
        flush();
        m_column = column;
    }
    void mark(Place place, QRgb color)
    {
        markEach(&place, 1, 1, 0, [color](std::size_t) { return color; });
    }
    /// Markers of one column. Of `lines` lines of as many markers each, which are drawn point by point by turns, this
    /// is number `line`; they come in order.
    template<typename ColorOf>
    void markEach(const Place *places, std::size_t count, std::size_t lines, std::size_t line, ColorOf colorOf)
    {
        noteSpan(places, count);
        Key *const keys = m_keys.data();
        Key order = m_order + line;
        for (std::size_t k = 0; k < count; ++k, order += lines) {
            const Key key = order << 32 | colorOf(k);
            Key &last = keys[places[k]];
            last = line == 0 ? key : std::max(key, last);
        }
        if (line + 1 == lines)
            m_order += count * lines;
    }
    /// Writes what is still held back.
    void flush();

private:
    /// Which marker was the last, in the upper half, and its colour; 0 for none.
    using Key = std::uint64_t;

    void noteSpan(const Place *places, std::size_t count);
    void writeRows(int from, int to);

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
