#pragma once

#include "gui/browser/drawing/colormap.h"
#include "gui/browser/plots/plot.h"
#include "spectra/spectruminfo.h"
#include "util/numeric.h"

#include <QTimer>

namespace Tsb {

/// One spectrum as an image: time to the right, bins upward, colour for log10 of the values. The drawing is
/// renderSpectrogram's; this is the plot that keeps its parameters and its cached image.
class SpectrogramPlot : public Plot {
    Q_OBJECT
public:
    explicit SpectrogramPlot(QWidget *parent = nullptr);

    const SpectMath::SpectrumInfoPointer &spectrumInfo() const { return m_spectrumInfo; }
    /// Null: nothing is drawn but the background. With reversedRows the last bin stands on the bottom row.
    void setSpectrum(const SpectMath::SpectrumInfoPointer &info, bool reversedRows);
    double colorLower() const { return m_colorLower; }
    double colorUpper() const { return m_colorUpper; }

    /// Adds the values in view, smoothed as they are drawn.
    void addVisibleValuesTo(SpectMath::DecadeHistogram &histogram);
    /// The curve of a spectrogram is the number concentration over the whole axis. It comes without a name.
    QVector<CurveFigures> measure(const MeasuringCursors::Times &cursors) override;

public Q_SLOTS:
    void setColorLimits(double lower, double upper); ///< decades
    void setFillGaps(bool on);
    void setMarkZeros(bool on);
    void setSmoothingCoef(double width); ///< 0: off
    void setWhiteBackground(bool on);
    void setColormap(const Colormap::Map &colormap);

protected:
    /// Its total number concentration, and where its distribution is highest.
    QString valuesText(const Record &record) const override;
    void drawRange(QPainter &painter, int first, int last) override;
    void clearRange(QPainter &painter, int first, int last) override;
    void drawOverlay(QPainter &painter) override;
    PixelRange rangeOfUpdatedRecord(int index, const std::shared_ptr<Record> &record, int flags) override;
    PixelRange rangeOfRemovedRecord(int index, const std::shared_ptr<Record> &record) override;
    std::shared_ptr<Record> findRecord(RecordTime tick, int direction) override;

private:
    std::shared_ptr<const Datastore::Series> series() const; ///< null without a store, spectrum or series
    std::shared_ptr<const SpectMath::Spectrum> spectrumOf(const Record &record) const; ///< null: it has none
    int binCount() const;
    const RealMatrix *smoothing();
    void render(QImage &image, int first, int last, int offset);
    /// How far a record reaches into a gap depends on the record at the other side, which may have come since.
    void redrawNeighboursSoon(const Record &changed);
    void redrawNeighbours();

    SpectMath::SpectrumInfoPointer m_spectrumInfo;
    double m_colorLower = 1;
    double m_colorUpper = 3;
    Colormap::Map m_colormap;
    bool m_fillGaps = false;
    bool m_marksZeros = false;
    bool m_whiteBackground = true;
    bool m_reversedRows = false;
    double m_smoothingCoef = 0;
    RealMatrix m_smoothingMatrix; ///< 0 by 0 until it is needed
    QTimer m_neighboursTimer;     ///< runs from a change in the store to the redraw of the records beside it
    RecordTime m_changedBegin{}, m_changedEnd{}; ///< of all changes since it runs
};

} // namespace Tsb
