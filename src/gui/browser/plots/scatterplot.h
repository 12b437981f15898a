#pragma once

#include "axis/valuescale.h"
#include "columns/recordwalk.h"
#include "columns/scatterplotsettings.h"
#include "gui/browser/drawing/scatterlines.h"
#include "gui/browser/plots/plot.h"
#include "gui/common/uiinfo.h"

#include <QPen>
#include <QPointer>
#include <QTimer>

#include <optional>
#include <utility>

namespace Tsb {

/// One value per record (or per record and spectrum) against time, as small marks in the colour of the record's mode or
/// of the spectrum. Values off the scale are triangles on its edge, and counted.
class ScatterPlot : public Plot {
    Q_OBJECT
public:
    explicit ScatterPlot(QWidget *parent = nullptr);
    ~ScatterPlot() override;

    const ScatterPlotSettings &settings() const { return m_settings; }
    const ValueScale &scale() const { return m_scale; }

    void setDatastore(Datastore *datastore) override;
    void setUiInfo(std::shared_ptr<UiInfo> uiInfo);

    /// Plots that are about to go: what they keep of the store's values is taken over instead of being worked out anew.
    void setPredecessors(const QVector<ScatterPlot *> &plots);

    /// Works out what plots of the same store draw, in less time than each of them would take.
    static void workOutValues(const QVector<ScatterPlot *> &plots);

    /// Counts the values off the scale at once, for a picture that is made before they would be.
    void countOffScaleNow();

    /// The least and the greatest value in sight, in decades for concentrations; two NaN if there are none.
    std::pair<double, double> minMax();
    /// The values of one record as they are placed on the scale, in drawing order; NaN left out.
    std::vector<double> scaleValuesOf(const Record &record) const;
    QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors) override;

public Q_SLOTS:
    void setScale(ValueScale scale);
    void setSettings(ScatterPlotSettings settings);
    /// Names, colours or the list of spectra changed.
    void reloadSetup();

Q_SIGNALS:
    /// So many of the values in sight lie above or below the scale; told a moment after they were drawn.
    void offScaleCounted(int count);

protected:
    QString valuesText(const Record &record) const override;
    void drawRange(QPainter &painter, int first, int last) override;
    void drawOverlay(QPainter &painter) override;
    void noteUpdated(int index, const std::shared_ptr<Record> &record, int flags) override;
    PixelRange rangeOfUpdatedRecord(int index, const std::shared_ptr<Record> &record, int flags) override;

private:
    /// One point of one record, as the overlay and the label need it.
    struct Point {
        QString name;
        QString unit;
        double value;      ///< as the label tells it
        double scaleValue; ///< as it is placed
        QRgb color;
    };

    void rebuildLines();
    template<typename ValueOfNumber>
    void addRecordLine(RecordSlot slot, ValueOfNumber valueOf, bool paleRegular, bool paleIrregular);
    void rebuildSpectrumLines();
    std::optional<ScatterLines::RecordLine> takeOver(const RecordSlot &slot);
    std::optional<ScatterLines::SpectrumLine> takeOver(const SpectMath::SpectrumInfo *info);

    QString nameOf(const ScatterLines::RecordLine &line) const;
    QString nameOf(const ScatterLines::SpectrumLine &line) const;
    QString unit() const;
    double rowOf(double scaleValue) const;
    std::vector<Point> pointsOf(const Record &record) const;
    void drawSelectedRecord(QPainter &painter, const QRect &contents);
    void drawLabel(QPainter &painter, const QRect &contents, const std::vector<Point> &points, double x, double y);

    std::shared_ptr<UiInfo> m_uiInfo;
    ValueScale m_scale;
    ScatterPlotSettings m_settings;
    ScatterLines m_lines;
    QTimer m_countTimer;
    QVector<QPointer<ScatterPlot>> m_predecessors;
};

} // namespace Tsb
