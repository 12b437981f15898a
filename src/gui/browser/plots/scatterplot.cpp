#include "gui/browser/plots/scatterplot.h"

#include "columns/scattervalues.h"
#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/plots/scatterlabel.h"

#include <QPainter>
#include <QStaticText>
#include <QTextOption>

#include <cmath>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::decadesOf;

namespace {

constexpr auto itself = [](double number) { return number; }; // no function: a call costs as much as to read the number

constexpr int markerMargin = 3; ///< a marker reaches beyond its record's own columns

constexpr int countDelay = 150; // ms

const QColor cursorColor(0, 0, 0, 80);

/// Points from inside at the edge, as the small ones of other records do.
void drawTriangle(QPainter &painter, int x, int edge, int inwards, const QColor &color)
{
    for (int row = 0; row < MarkerPainter::triangleHeight; ++row)
        painter.fillRect(x - row, edge + inwards * row, 2 * row + 1, 1, color);
}

QRgb opaque(const QColor &color)
{
    return color.isValid() ? color.rgb() | 0xff000000u : qRgb(0, 0, 0);
}

} // namespace

ScatterPlot::ScatterPlot(QWidget *parent) : Plot(parent)
{
    setMouseTracking(true);
    setRedrawMargin(markerMargin);
    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(countDelay);
    connect(&m_countTimer, &QTimer::timeout, this, &ScatterPlot::countOffScaleNow);
}

ScatterPlot::~ScatterPlot() = default;

// ---- what is drawn

void ScatterPlot::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    m_uiInfo = std::move(uiInfo);
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &ScatterPlot::reloadSetup);
    reloadSetup();
}

void ScatterPlot::setScale(ValueScale scale)
{
    if (scale == m_scale)
        return;
    m_scale = scale;
    requestFullRedraw();
}

void ScatterPlot::setSettings(ScatterPlotSettings settings)
{
    if (settings == m_settings)
        return;
    m_settings = std::move(settings);
    rebuildLines();
}

void ScatterPlot::reloadSetup()
{
    rebuildLines();
}

template<typename ValueOfNumber>
void ScatterPlot::addRecordLine(RecordSlot slot, ValueOfNumber valueOf, bool paleRegular, bool paleIrregular)
{
    ScatterLines::RecordLine line;
    if (auto former = takeOver(slot))
        line = std::move(*former);
    else
        line.values.setValueOfNumber(slot, valueOf);
    line.colors.clear();
    for (const QColor &color : m_uiInfo->opmodeColors())
        for (const bool pale : {paleRegular, paleIrregular})
            line.colors.push_back(opaque(pale ? paleTint(color) : color));
    m_lines.add(std::move(line));
}

void ScatterPlot::rebuildLines()
{
    m_lines.clear();
    requestFullRedraw();
    Q_EMIT curvesChanged(); // which is heard of later
    if (!m_uiInfo || !m_uiInfo->metadata())
        return;
    const int number = m_settings.electrometerNumber;
    if (m_settings.type == ScatterPlotSettings::Electrometer) {
        if (number < 0 || number >= m_uiInfo->metadata()->totalElectrometers)
            return;
        if (m_settings.showElectrometerNoise)
            return addRecordLine({&Record::currentVariances, number}, electrometerNoise, false, false);
        if (m_settings.showRawCurrents)
            addRecordLine({&Record::rawCurrents, number}, itself, true, true);
        if (m_settings.showProcessedCurrents)
            addRecordLine({&Record::currents, number}, itself, false, false);
    } else if (m_settings.type == ScatterPlotSettings::Variable) {
        if (const auto variable = m_uiInfo->metadata()->variable(m_settings.parameterName))
            addRecordLine({&Record::variables, variable->valueIndex}, itself, false, true);
    } else {
        rebuildSpectrumLines();
    }
}

void ScatterPlot::rebuildSpectrumLines()
{
    for (const SpectMath::SpectrumInfoPointer &info : m_uiInfo->spectrumInfos()) {
        if (!m_settings.visibleSpectra.contains(info->hash))
            continue;
        const QRgb color = opaque(m_uiInfo->spectrumColor(info.get()));
        if (auto former = takeOver(info.get())) {
            former->color = color;
            m_lines.add(std::move(*former));
            continue;
        }
        const auto add = [&](SeriesColumn column, auto valueOf) {
            m_lines.add(ScatterLines::SpectrumLine{info, std::move(column), color, valueOf});
        };
        if (m_settings.type == ScatterPlotSettings::Parameter) {
            const auto valueOf = [parameter = m_settings.spectrumParameter](const SpectMath::Spectrum &s) {
                return parameterOf(s, parameter);
            };
            add(SeriesColumn(info, valueOf), valueOf);
            continue;
        }
        const auto valueOf = [weights = concentrationWeights(*info, m_settings)](const SpectMath::Spectrum &s) {
            return concentrationOf(s, weights);
        };
        if (m_settings.totalConcentration && m_settings.concentrationType == ConcentrationType::number)
            add(SeriesColumn::ofTotalDecades(info), valueOf);
        else
            add(SeriesColumn(info, [valueOf](const SpectMath::Spectrum &s) { return decadesOf(valueOf(s)); }), valueOf);
    }
}

// ---- the values, kept beside the store

void ScatterPlot::setPredecessors(const QVector<ScatterPlot *> &plots)
{
    m_predecessors.clear();
    for (ScatterPlot *plot : plots)
        m_predecessors.append(plot);
}

void ScatterPlot::workOutValues(const QVector<ScatterPlot *> &plots)
{
    std::vector<ScatterLines *> lines;
    for (ScatterPlot *plot : plots)
        lines.push_back(&plot->m_lines);
    if (!plots.isEmpty() && plots.first()->datastore())
        ScatterLines::bringUpToDate(lines, *plots.first()->datastore());
}

std::optional<ScatterLines::RecordLine> ScatterPlot::takeOver(const RecordSlot &slot)
{
    for (const auto &plot : qAsConst(m_predecessors)) {
        if (!plot || plot->datastore() != datastore())
            continue;
        if (auto line = plot->m_lines.releaseRecordLine(slot)) {
            m_lines.swapPens(plot->m_lines);
            return line;
        }
    }
    return {};
}

std::optional<ScatterLines::SpectrumLine> ScatterPlot::takeOver(const SpectMath::SpectrumInfo *info)
{
    for (const auto &plot : qAsConst(m_predecessors)) {
        if (!plot || plot->datastore() != datastore())
            continue;
        ScatterPlotSettings settings = plot->m_settings;
        settings.visibleSpectra = m_settings.visibleSpectra; // which don't concern a line's values, nor does a label
        settings.datalabels = m_settings.datalabels;
        if (settings != m_settings)
            continue;
        if (auto line = plot->m_lines.releaseSpectrumLine(info))
            return line;
    }
    return {};
}

void ScatterPlot::setDatastore(Datastore *store)
{
    if (datastore())
        disconnect(datastore(), nullptr, this, nullptr);
    Plot::setDatastore(store);
    m_lines.invalidatePens();
    rebuildLines();
}

void ScatterPlot::noteUpdated(int index, const std::shared_ptr<Record> &record, int flags)
{
    if ((flags & SpectraChanged) != 0)
        m_lines.noteSpectra(*datastore(), record);
    else
        m_lines.noteRecord(*datastore(), index, *record);
}

PixelRange ScatterPlot::rangeOfUpdatedRecord(int, const std::shared_ptr<Record> &record, int flags)
{
    const bool cameIn = (flags & (RecordCameIn | otherChange)) != 0;
    const bool values = (flags & DataReplaced) != 0 && m_settings.type != ScatterPlotSettings::Concentration;
    const bool spectra = (flags & SpectraChanged) != 0 && m_settings.usesSpectra();
    return cameIn || values || spectra ? spanOf(*record, redrawMargin()) : PixelRange();
}

// ---- drawing

double ScatterPlot::rowOf(double scaleValue) const
{
    return contentsRect().height() - m_scale.pixel(scaleValue);
}

void ScatterPlot::drawRange(QPainter &painter, int first, int last)
{
    clearRange(painter, first, last);
    if (!m_countTimer.isActive())
        m_countTimer.start();
    if (!datastore() || !m_scale.valid)
        return;
    m_lines.draw({*static_cast<QImage *>(painter.device()), first, last, *datastore(), timeScale(), m_scale});
}

void ScatterPlot::countOffScaleNow()
{
    m_countTimer.stop();
    const QSize size = contentsRect().size();
    const bool isDrawn = datastore() && m_scale.valid;
    const std::size_t count =
        isDrawn ? m_lines.countOffScale(*datastore(), timeScale(), size.width(), m_scale, size.height()) : 0;
    Q_EMIT offScaleCounted(int(std::min<std::size_t>(count, std::numeric_limits<int>::max())));
}

std::pair<double, double> ScatterPlot::minMax()
{
    const FiniteRange range =
        datastore() ? m_lines.rangeInSight(*datastore(), timeScale(), contentsRect().width()) : FiniteRange();
    return range.isEmpty() ? std::make_pair(noValue, noValue) : std::make_pair(range.least, range.greatest);
}

// ---- measuring

QString ScatterPlot::nameOf(const ScatterLines::RecordLine &line) const
{
    if (m_settings.type != ScatterPlotSettings::Electrometer)
        return m_settings.parameterName;
    const QString name = scatterScaleLabel(
        m_settings, electrometerSeriesName(*m_uiInfo->metadata(), m_settings.electrometerNumber), QString());
    return line.values.reads().vector == &Record::rawCurrents ? tr("%1, raw").arg(name) : name;
}

QString ScatterPlot::nameOf(const ScatterLines::SpectrumLine &line) const
{
    const QString label = scatterScaleLabel(m_settings, QString(), QString());
    return QStringLiteral("%1: %2").arg(m_uiInfo->spectrumName(line.info.get()),
                                        label.section(QLatin1Char('\n'), 0, 0));
}

QString ScatterPlot::unit() const
{
    const auto variable = m_uiInfo->metadata()->variable(m_settings.parameterName);
    return scatterUnit(m_settings, variable ? variable->unit : QString());
}

QVector<CurveFigures> ScatterPlot::measure(const MeasuringCursors::Times &cursors)
{
    if (!datastore() || !m_uiInfo || !m_uiInfo->metadata())
        return {};
    QVector<CurveFigures> curves =
        m_lines.measure(*datastore(), m_settings.type == ScatterPlotSettings::Concentration, cursors);
    auto curve = curves.begin();
    for (const ScatterLines::RecordLine &line : m_lines.recordLines())
        (curve++)->name = nameOf(line);
    for (const ScatterLines::SpectrumLine &line : m_lines.spectrumLines())
        (curve++)->name = nameOf(line);
    for (CurveFigures &each : curves)
        each.unit = unit();
    return curves;
}

// ---- the selected record

std::vector<ScatterPlot::Point> ScatterPlot::pointsOf(const Record &record) const
{
    std::vector<Point> points;
    if (!m_uiInfo || !m_uiInfo->metadata())
        return points;
    const auto metadata = m_uiInfo->metadata();
    if (!m_settings.usesSpectra()) {
        const bool electrometer = m_settings.type == ScatterPlotSettings::Electrometer;
        const QString name =
            electrometer ? electrometerSeriesName(*metadata, m_settings.electrometerNumber) : m_settings.parameterName;
        for (const ScatterLines::RecordLine &line : m_lines.recordLines()) {
            const double value = line.values.valueOf(record);
            if (!std::isnan(value))
                points.push_back({name, unit(), value, value, line.colorOf(m_lines.penOf(record))});
        }
        return points;
    }
    for (const auto &spectrum : record.spectra) {
        for (const ScatterLines::SpectrumLine &line : m_lines.spectrumLines()) {
            if (spectrum->info.get() != line.info.get())
                continue;
            const double value = line.valueOf(*spectrum);
            const bool decades = m_settings.type == ScatterPlotSettings::Concentration;
            if (!std::isnan(value))
                points.push_back({m_uiInfo->spectrumName(line.info.get()), unit(), value,
                                  decades ? decadesOf(value) : value, line.color});
        }
    }
    return points;
}

QString ScatterPlot::valuesText(const Record &record) const
{
    QStringList values;
    for (const Point &point : pointsOf(record))
        values << scatterValueText(point.name, point.value, point.unit);
    return values.isEmpty() ? tr("no value") : values.join(QStringLiteral("; "));
}

std::vector<double> ScatterPlot::scaleValuesOf(const Record &record) const
{
    std::vector<double> values;
    for (const Point &point : pointsOf(record))
        values.push_back(point.scaleValue);
    return values;
}

void ScatterPlot::drawOverlay(QPainter &painter)
{
    const QRect contents = contentsRect();
    if (m_settings.usesSpectra() && m_settings.visibleSpectra.isEmpty()) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
        painter.drawText(contents, Qt::AlignCenter, tr("No spectra"));
    }
    painter.setPen(cursorColor);
    if (isValueCursorVisible())
        painter.drawLine(contents.left(), valueCursorPixel(), contents.right(), valueCursorPixel());
    if (isTimeCursorVisible())
        painter.drawLine(timeCursorPixel(), contents.top(), timeCursorPixel(), contents.bottom());
    if (currentRecord() && m_scale.valid)
        drawSelectedRecord(painter, contents);
}

void ScatterPlot::drawSelectedRecord(QPainter &painter, const QRect &contents)
{
    const double x = timeScale().positionOf(currentRecord()->midTime);
    if (!(x >= -2 && x <= contents.width() + 2))
        return;
    const std::vector<Point> points = pointsOf(*currentRecord());
    double topmost = contents.height();
    painter.save();
    painter.translate(contents.topLeft());
    painter.setBrush(Qt::white);
    for (const Point &point : points) {
        const double y = rowOf(point.scaleValue);
        if (std::isnan(y))
            continue;
        const int row = qRound(std::max(std::min(y, double(contents.height())), -1.0));
        painter.setPen(Qt::black);
        painter.drawRect(qRound(x) - 3, row - 3, 6, 6);
        if (y < 0 || y > contents.height() - 1) {
            drawTriangle(painter, qRound(x), y < 0 ? 0 : contents.height() - 1, y < 0 ? 1 : -1, point.color);
        } else {
            painter.setPen(QColor(point.color));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(qRound(x) - 1, row - 1, 2, 2);
            painter.setBrush(Qt::white);
        }
        topmost = std::min(topmost, double(row));
    }
    if (m_settings.datalabels && !points.empty())
        drawLabel(painter, contents, points, x, topmost);
    painter.restore();
}

/// To the right of the marker where it fits, otherwise to its left.
void ScatterPlot::drawLabel(QPainter &painter, const QRect &contents, const std::vector<Point> &points, double x,
                            double y)
{
    QStringList lines;
    for (const Point &point : points)
        lines << scatterLabelLine(point.color, point.name, point.value, point.unit);
    QStaticText text(lines.join(QLatin1String("<br>")));
    text.setTextFormat(Qt::RichText);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap); // each value on one line
    text.setTextOption(option);
    text.prepare(QTransform(), painter.font());
    const QSizeF size = text.size();
    constexpr double distance = 8;
    double left = x + distance;
    if (left + size.width() > contents.width())
        left = x - distance - size.width();
    const double top = std::max(0.0, std::min(y - size.height() / 2, contents.height() - size.height()));
    painter.fillRect(QRectF(QPointF(left, top), size).adjusted(-4, -2, 4, 2), QColor(255, 255, 255, 204));
    painter.setPen(Qt::black);
    painter.drawStaticText(QPointF(left, top), text);
}

} // namespace Tsb
