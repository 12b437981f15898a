#pragma once

#include "axis/timescale.h"
#include "axis/valuescale.h"
#include "columns/finiterange.h"
#include "columns/measurement.h"
#include "columns/recordcolumn.h"
#include "gui/browser/drawing/markerpainter.h"
#include "gui/browser/drawing/scatterseries.h"

#include <QImage>
#include <QRgb>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Tsb {

/// The lines of points of a scatter plot: their values, kept in step with the store, and their drawing. All lines have
/// one value for each record, or all have one for each entry of a spectrum series.
class ScatterLines {
public:
    /// A line with one value for each record: currents, noise or a variable. There are two at most.
    struct RecordLine {
        RecordColumn<double> values;
        std::vector<QRgb> colors; ///< by pen of the record; black for pens outside it
        MarkerPlaceColumn places = {};
        QRgb colorOf(std::uint8_t pen) const { return pen < colors.size() ? colors[pen] : qRgb(0, 0, 0); }
    };
    /// A line with one value for each entry of a spectrum series.
    struct SpectrumLine {
        SpectMath::SpectrumInfoPointer info;
        SeriesColumn values;
        QRgb color;
        std::function<double(const SpectMath::Spectrum &)> valueOf; ///< as a label tells it
        MarkerPlaceColumn places = {};
    };
    /// The picture to draw into, as high as the plot, and its scales. Only the columns first .. last - 1 are drawn.
    struct Frame {
        QImage &image;
        int first, last;
        const Datastore &store;
        const TimeScale &timeScale;
        const ValueScale &valueScale;
    };

    ScatterLines();

    void clear();
    void add(RecordLine line);
    void add(SpectrumLine line);
    /// The line that reads that slot, or that of a description, with the values that it keeps: it leaves these lines,
    /// for others of the same store. None if there is no such line.
    std::optional<RecordLine> releaseRecordLine(const RecordSlot &slot);
    std::optional<SpectrumLine> releaseSpectrumLine(const SpectMath::SpectrumInfo *info);
    void swapPens(ScatterLines &other) { std::swap(m_pens, other.m_pens); }
    const std::vector<RecordLine> &recordLines() const { return m_recordLines; }
    const std::vector<SpectrumLine> &spectrumLines() const { return m_spectrumLines; }
    /// The pen of a record: 2 m for regular records of mode m, 2 m + 1 for others; 255 without a mode.
    std::uint8_t penOf(const Record &record) const { return m_pens.valueOf(record); }

    /// Another store has come.
    void invalidatePens() { m_pens.invalidate(); }
    // For Datastore::updated: a record came in or its data changed, or its spectra did.
    void noteRecord(const Datastore &store, int index, const Record &record);
    void noteSpectra(const Datastore &store, const std::shared_ptr<Record> &record);

    /// Works out the values of the record lines of several plots of one store, which costs less than those of each.
    static void bringUpToDate(const std::vector<ScatterLines *> &all, const Datastore &store);
    /// The range of the values whose records may touch the columns 0 .. width.
    FiniteRange rangeInSight(const Datastore &store, const TimeScale &scale, int width);
    /// How many of the values in sight lie above or below a plot of that height.
    std::size_t countOffScale(const Datastore &store, const TimeScale &scale, int width, const ValueScale &valueScale,
                              int height);
    void draw(const Frame &frame);
    /// The figures of each line without name and unit, record lines first. Values of spectrum lines may be decades, as
    /// columns keep concentrations; their figures are concentrations.
    QVector<CurveFigures> measure(const Datastore &store, bool areDecades,
                                  const std::array<std::optional<RecordTime>, 2> &cursors);

private:
    class PlaceSource;

    template<typename Line>
    PlaceSource placesOf(Line &line, const Frame &frame, std::size_t size, std::size_t drawn);
    void drawRecordLines(const Frame &frame);
    void drawSpectrumLines(const Frame &frame);
    template<typename Mark>
    static void markByColumn(MarkerPainter &marker, ColumnFinder &column, const SpanIndex &spans, std::size_t first,
                             std::size_t count, Mark mark);

    RecordColumn<std::uint8_t> m_pens;
    std::vector<RecordLine> m_recordLines;
    std::vector<SpectrumLine> m_spectrumLines;
};

} // namespace Tsb
