#include "gui/browser/plots/spectrogramplot.h"

#include "axis/valuescale.h"
#include "columns/recordpicking.h"
#include "gui/browser/drawing/colorfit.h"
#include "gui/browser/drawing/spectrogramrenderer.h"
#include "spectra/spectrum.h"

#include <QPainter>

#include <cmath>

namespace Tsb {

namespace {

constexpr int highlightAlpha = 176;
constexpr int cursorAlpha = 80;
constexpr int neighboursDelay = 200; // ms
constexpr int widestPad = 6;         // columns that a record lends to a gap, and one for rounding

/// The image behind a painter whose bits can be written as opaque colours; null for any other device.
QImage *writableImage(QPainter &painter)
{
    QPaintDevice *device = painter.device();
    if (!device || device->devType() != QInternal::Image)
        return nullptr;
    auto *image = static_cast<QImage *>(device);
    switch (image->format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return image;
    default:
        return nullptr;
    }
}

} // namespace

SpectrogramPlot::SpectrogramPlot(QWidget *parent) : Plot(parent)
{
    m_neighboursTimer.setSingleShot(true);
    m_neighboursTimer.setInterval(neighboursDelay);
    connect(&m_neighboursTimer, &QTimer::timeout, this, &SpectrogramPlot::redrawNeighbours);
}

// ---- parameters; each change is a full redraw

void SpectrogramPlot::setSpectrum(const SpectMath::SpectrumInfoPointer &info, bool reversedRows)
{
    if (info == m_spectrumInfo && reversedRows == m_reversedRows)
        return;
    m_spectrumInfo = info;
    m_reversedRows = reversedRows;
    requestFullRedraw();
    Q_EMIT curvesChanged();
}

void SpectrogramPlot::setColorLimits(double lower, double upper)
{
    if (sameValue(lower, m_colorLower) && sameValue(upper, m_colorUpper))
        return;
    m_colorLower = lower;
    m_colorUpper = upper;
    requestFullRedraw();
}

void SpectrogramPlot::setFillGaps(bool on)
{
    if (on == m_fillGaps)
        return;
    m_fillGaps = on;
    requestFullRedraw();
}

void SpectrogramPlot::setMarkZeros(bool on)
{
    if (on == m_marksZeros)
        return;
    m_marksZeros = on;
    requestFullRedraw();
}

void SpectrogramPlot::setSmoothingCoef(double width)
{
    if (sameValue(width, m_smoothingCoef))
        return;
    m_smoothingCoef = width;
    m_smoothingMatrix.resize(0, 0, false);
    requestFullRedraw();
}

void SpectrogramPlot::setWhiteBackground(bool on)
{
    if (on == m_whiteBackground)
        return;
    m_whiteBackground = on;
    requestFullRedraw();
}

void SpectrogramPlot::setColormap(const Colormap::Map &colormap)
{
    m_colormap = colormap;
    requestFullRedraw();
}

// ---- data

std::shared_ptr<const Datastore::Series> SpectrogramPlot::series() const
{
    // Looked up each time: a series comes and goes with its data.
    return datastore() && m_spectrumInfo ? datastore()->series(m_spectrumInfo.get()) : nullptr;
}

std::shared_ptr<const SpectMath::Spectrum> SpectrogramPlot::spectrumOf(const Record &record) const
{
    if (!m_spectrumInfo)
        return nullptr;
    const auto found = std::find_if(record.spectra.begin(), record.spectra.end(), [this](const auto &spectrum) {
        return spectrum && spectrum->info == m_spectrumInfo;
    });
    return found == record.spectra.end() ? nullptr : *found;
}

QString SpectrogramPlot::valuesText(const Record &record) const
{
    const auto spectrum = spectrumOf(record);
    if (!spectrum || !spectrum->isValid())
        return tr("no spectrum");
    const RealVector &values = spectrum->concentrations;
    const bool isMobility = m_spectrumInfo->scale == SpectMath::DistributionScale::mobility;
    // As the axis beside it has them: diameters, also of a spectrum over radii.
    const RealVector points = m_spectrumInfo->points(isMobility ? SpectMath::DistributionScale::mobility
                                                                : SpectMath::DistributionScale::diameter);
    const RealVector weights = m_spectrumInfo->totalWeights(SpectMath::ConcentrationType::number);
    const auto isLess = [](double a, double b) { return !(a >= b) && !std::isnan(b); }; // NaN is less than all
    const auto highest = std::size_t(std::max_element(values.begin(), values.end(), isLess) - values.begin());
    if (highest >= points.size())
        return tr("no spectrum");
    const Unit &unit = isMobility ? m_spectrumInfo->mobilityUnit : m_spectrumInfo->sizeUnit;
    return tr("total %1 %2, highest at %3 %4")
        .arg(QString::number(SpectMath::concentrationOf(*spectrum, weights), 'g', 4),
             m_spectrumInfo->concentrationUnit.toString(), QString::number(points[highest], 'g', 3), unit.toString());
}

int SpectrogramPlot::binCount() const
{
    return m_spectrumInfo ? int(m_spectrumInfo->nativePoints().size()) : 0;
}

const RealMatrix *SpectrogramPlot::smoothing()
{
    if (m_smoothingCoef == 0)
        return nullptr;
    if (int(m_smoothingMatrix.size1()) != binCount())
        m_smoothingMatrix = SpectMath::smoothingWindowMatrix(binCount(), m_smoothingCoef);
    return &m_smoothingMatrix;
}

std::shared_ptr<Record> SpectrogramPlot::findRecord(RecordTime tick, int direction)
{
    const auto entries = series();
    return entries ? Tsb::findRecord(*entries, datastore()->seriesSpans(m_spectrumInfo.get()), tick, direction)
                   : nullptr;
}

PixelRange SpectrogramPlot::rangeOfUpdatedRecord(int index, const std::shared_ptr<Record> &record, int flags)
{
    if ((flags & (RecordCameIn | SpectraChanged)) == 0)
        return {};
    return rangeOfRemovedRecord(index, record);
}

PixelRange SpectrogramPlot::rangeOfRemovedRecord(int, const std::shared_ptr<Record> &record)
{
    if (!spectrumOf(*record))
        return {};
    if (m_fillGaps)
        redrawNeighboursSoon(*record);
    return spanOf(*record, 1);
}

void SpectrogramPlot::redrawNeighboursSoon(const Record &changed)
{
    const bool isFirst = !m_neighboursTimer.isActive();
    m_changedBegin = isFirst ? changed.beginTime : std::min(m_changedBegin, changed.beginTime);
    m_changedEnd = isFirst ? effectiveEnd(changed) : std::max(m_changedEnd, effectiveEnd(changed));
    if (isFirst)
        m_neighboursTimer.start();
}

void SpectrogramPlot::redrawNeighbours()
{
    if (!series())
        return;
    const SpanIndex &spans = datastore()->seriesSpans(m_spectrumInfo.get());
    const std::size_t first = spans.lowerBound(ticksOf(m_changedBegin)),
                      after = spans.lowerBound(ticksOf(m_changedEnd));
    const RecordTime begin = first > 0 ? recordTimeFromTicks(spans.begin(first - 1)) : m_changedBegin;
    const RecordTime end = after < spans.size() ? recordTimeFromTicks(spans.end(after)) : m_changedEnd;
    requestRedraw({timeScale().pixelAt(begin) - widestPad, timeScale().pixelAt(end) + widestPad + 1});
}

void SpectrogramPlot::addVisibleValuesTo(DecadeHistogram &histogram)
{
    const auto entries = series();
    if (!entries)
        return;
    const SpectrogramSource source{*entries, datastore()->seriesSpans(m_spectrumInfo.get())};
    addVisibleValues(histogram, source, timeScale(), contentsRect().width(), binCount(), smoothing(),
                     &datastore()->histogram(m_spectrumInfo.get()));
}

QVector<CurveFigures> SpectrogramPlot::measure(const MeasuringCursors::Times &cursors)
{
    const auto entries = series();
    if (!entries)
        return {};
    const auto total = [&, weights = m_spectrumInfo->totalWeights(SpectMath::ConcentrationType::number)](
                           std::size_t i) { return concentrationOf(*(*entries)[i].spectrum, weights); };
    const SpectMath::SpectrumInfo *const key = m_spectrumInfo.get();
    return {figuresOf({datastore()->seriesSpans(key), datastore()->totalDecades(key), total}, cursors)};
}

// ---- drawing

void SpectrogramPlot::clearRange(QPainter &painter, int first, int last)
{
    painter.fillRect(first, 0, last - first, contentsRect().height(),
                     spectrogramBackground(m_colormap, m_whiteBackground));
}

void SpectrogramPlot::drawRange(QPainter &painter, int first, int last)
{
    clearRange(painter, first, last);
    if (first >= last)
        return;
    if (QImage *image = writableImage(painter)) {
        painter.beginNativePainting();
        render(*image, first, last, 0);
        painter.endNativePainting();
        return;
    }
    QImage image(last - first, contentsRect().height(), QImage::Format_RGB32);
    image.fill(Qt::white);
    render(image, first, last, -first);
    painter.drawImage(first, 0, image);
}

void SpectrogramPlot::render(QImage &image, int first, int last, int offset)
{
    const auto entries = series();
    if (!entries || !m_colormap)
        return;
    SpectrogramParameters parameters;
    parameters.scale = timeScale();
    parameters.binCount = binCount();
    parameters.colorLower = m_colorLower;
    parameters.colorUpper = m_colorUpper;
    parameters.colormap = m_colormap;
    parameters.fillGaps = m_fillGaps;
    parameters.reversedRows = m_reversedRows;
    parameters.marksZeros = m_marksZeros;
    parameters.smoothing = smoothing();
    const SpectrogramSource source{*entries, datastore()->seriesSpans(m_spectrumInfo.get())};
    renderSpectrogram(source, parameters, image, {first, last}, offset);
}

void SpectrogramPlot::drawOverlay(QPainter &painter)
{
    const QRect area = contentsRect();
    if (currentRecord() && spectrumOf(*currentRecord())) {
        const auto column = [&](RecordTime time) {
            return saturatedPixel(std::floor(area.left() + timeScale().positionOf(time)));
        };
        // Held near the window: a painter's coordinates have less room than times.
        const int left = std::max(column(currentRecord()->beginTime), area.left() - 1);
        const int right = std::min(column(effectiveEnd(*currentRecord())), area.right() + 1);
        if (left <= right)
            painter.fillRect(left, area.top(), right - left + 1, area.height(), QColor(255, 255, 255, highlightAlpha));
    }
    const QColor cursorColor(0, 0, 0, cursorAlpha);
    if (isValueCursorVisible())
        painter.fillRect(area.left(), valueCursorPixel(), area.width(), 1, cursorColor);
    if (isTimeCursorVisible())
        painter.fillRect(timeCursorPixel(), area.top(), 1, area.height(), cursorColor);
}

} // namespace Tsb
