#pragma once

#include "axis/valuescale.h"
#include "columns/recordcolumn.h"
#include "columns/scatterplotsettings.h"
#include "gui/browser/drawing/markerpainter.h"
#include "gui/browser/drawing/scatterseries.h"
#include "gui/browser/plots/plot.h"
#include "gui/common/uiinfo.h"

#include <QPen>

#include <utility>

namespace Tsb {

/// One value per record (or per record and spectrum) against time, as small marks in the colour of the record's mode or
/// of the spectrum. Values off the scale are drawn on its edge.
class ScatterPlot : public Plot {
    Q_OBJECT
public:
    explicit ScatterPlot(QWidget *parent = nullptr);
    ~ScatterPlot() override;

    const ScatterPlotSettings &settings() const { return m_settings; }
    const ValueScale &scale() const { return m_scale; }

    void setDatastore(Datastore *datastore) override;
    void setUiInfo(std::shared_ptr<UiInfo> uiInfo);

    /// The least and the greatest value in sight, in decades for concentrations; two NaN if there are none.
    std::pair<double, double> minMax();
    /// The values of one record as they are placed on the scale, in drawing order; NaN left out.
    std::vector<double> scaleValuesOf(const Record &record) const;

public Q_SLOTS:
    void setScale(ValueScale scale);
    void setSettings(ScatterPlotSettings settings);
    /// Names, colours or the list of spectra changed.
    void reloadSetup();

protected:
    void drawRange(QPainter &painter, int first, int last) override;
    void drawOverlay(QPainter &painter) override;
    void noteUpdated(int index, const std::shared_ptr<Record> &record, int flags) override;
    PixelRange rangeOfUpdatedRecord(int index, const std::shared_ptr<Record> &record, int flags) override;

private:
    /// A line of points with one value for each record: currents, noise or a variable.
    struct RecordSeries {
        RecordColumn<double> values;
        MarkerPlaceColumn places;
        std::vector<QRgb> colors; ///< by pen of the record; black for pens outside it
        QRgb colorOf(std::uint8_t pen) const { return pen < colors.size() ? colors[pen] : qRgb(0, 0, 0); }
    };
    /// A line of points with one value for each entry of a spectrum series.
    struct SpectrumSeries {
        SpectMath::SpectrumInfoPointer info;
        SeriesColumn values;
        MarkerPlaceColumn places;
        QRgb color;
        std::function<double(const SpectMath::Spectrum &)> valueOf; ///< as the label tells it
    };
    /// One point of one record, as the overlay and the label need it.
    struct Point {
        QString name;
        QString unit;
        double value;      ///< as the label tells it
        double scaleValue; ///< as it is placed
        QRgb color;
    };

    class PlaceSource;

    void rebuildSeries();
    using ValueOfSlot = double (*)(const RealVector &values, int slot);
    void addRecordSeries(RecordSlot slot, ValueOfSlot valueOf, bool paleRegular, bool paleIrregular);
    void rebuildSpectrumSeries();

    double rowOf(double scaleValue) const;
    template<typename Series>
    PlaceSource placesOf(Series &series, std::size_t size, std::size_t drawn);
    void drawRecordSeries(QImage &image, int first, int last);
    void drawSpectrumSeries(QImage &image, int first, int last);
    template<typename Mark>
    static void markByColumn(MarkerPainter &marker, ColumnFinder &column, const SpanIndex &spans, std::size_t first,
                             std::size_t count, Mark mark);
    /// Calls visit(values, count) for the values in sight of each line.
    template<typename Visit>
    void visitInSight(Visit visit);
    std::vector<Point> pointsOf(const Record &record) const;
    void drawSelectedRecord(QPainter &painter, const QRect &contents);
    void drawLabel(QPainter &painter, const QRect &contents, const std::vector<Point> &points, double x, double y);

    std::shared_ptr<UiInfo> m_uiInfo;
    ValueScale m_scale;
    ScatterPlotSettings m_settings;
    RecordColumn<std::uint8_t> m_pens; ///< 2 m for regular records of mode m, 2 m + 1 for others; 255 without a mode
    std::vector<RecordSeries> m_recordSeries;
    std::vector<SpectrumSeries> m_spectrumSeries;
};

} // namespace Tsb
