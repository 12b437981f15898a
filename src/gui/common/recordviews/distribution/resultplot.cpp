#include "gui/common/recordviews/distribution/resultplot.h"

#include "gui/common/recordviews/distribution/distributionsummary.h"

#include <QEvent>

#include <qwt_plot_item.h>
#include <qwt_scale_div.h>
#include <qwt_scale_engine.h>
#include <qwt_text.h>
#include <qwt_text_label.h>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr int mostNames = 20;          ///< in a title
constexpr double titlePart = 0.25;     ///< of the plot's height
constexpr double filledPart = 0.8;     ///< of a line: names aren't broken
constexpr int longestName = 80;        ///< characters in a title
constexpr int leastTitledHeight = 10;  ///< lines: a plot that is lower has no title of the vertical axis
const QColor heldColor(140, 140, 140); // seen on white and on black

QString titleName(const QString &name)
{
    return name.size() > longestName ? name.left(longestName) + QChar(0x2026) : name;
}

/// Where a range holds one power of ten, 2 and 5 are labelled as well: one label tells no scale.
class SizeScaleEngine : public QwtLogScaleEngine {
public:
    QwtScaleDiv divideScale(double x1, double x2, int mostMajor, int mostMinor, double step) const override
    {
        QwtScaleDiv scale = QwtLogScaleEngine::divideScale(x1, x2, mostMajor, mostMinor, step);
        QList<double> labelled = scale.ticks(QwtScaleDiv::MajorTick);
        if (labelled.size() != 1)
            return scale;
        const double power = labelled[0];
        for (const double tick : {power / 5, power / 2, power * 2, power * 5}) {
            if (scale.contains(tick))
                labelled << tick;
        }
        std::sort(labelled.begin(), labelled.end());
        scale.setTicks(QwtScaleDiv::MajorTick, labelled);
        return scale;
    }
};

} // namespace

/// Draws nothing: gives the axes what they are fitted to.
class ResultPlot::ExtentItem : public QwtPlotItem {
public:
    ExtentItem() { setItemAttribute(AutoScale); }

    QRectF boundingRect() const override
    {
        QRectF rect(0, 0, -1, -1);
        if (extents.horizontal.isKnown())
            rect.setX(extents.horizontal.least), rect.setWidth(extents.horizontal.greatest - rect.x());
        if (extents.vertical.isKnown())
            rect.setY(extents.vertical.least), rect.setHeight(extents.vertical.greatest - rect.y());
        return rect;
    }
    void draw(QPainter *, const QwtScaleMap &, const QwtScaleMap &, const QRectF &) const override {}

    DistributionExtents extents;
};

ResultPlot::ResultPlot(std::shared_ptr<const PlotOptions> options, QWidget *parent)
    : RecordPlot(parent), m_options(std::move(options)), m_extents(new ExtentItem)
{
    m_extents->attach(this);
    auto *const sizes = new SizeScaleEngine;
    sizes->setAttribute(QwtScaleEngine::Floating); // from the first point to the last, not by whole decades
    setAxisScaleEngine(xBottom, sizes);
    setAxisScale(xBottom, 1, 100);
}

ResultPlot::~ResultPlot() = default;

void ResultPlot::showSpectra(const ShownSpectra &shown, const ShownSpectra &held)
{
    const ShownSpectra &leading = shown.isEmpty() ? held : shown;
    const SpectMath::SpectrumInfo *const first = leading.isEmpty() ? nullptr : leading.first().spectrum->info.get();
    const auto axis = first ? shownAxis(*first, *m_options) : SpectMath::DistributionScale::diameter;
    showTraces(m_shown, shown, SpectrumItems::Look::shown, axis);
    showTraces(m_held, held, SpectrumItems::Look::held, axis);
    setScaleKind();
    setExtents();
    if (first)
        setTitles(*first, axis);
    setAxisSubject(xBottom, axisTitle(xBottom).text());
    setAxisSubject(yLeft, m_verticalTitle + (m_isLog ? QStringLiteral(", logarithmic") : QString()));
    fitTitle();
    QStringList names;
    for (const ShownSpectrum &one : shown)
        names << one.name;
    setAccessibleName(tr("Distribution plot: %1").arg(names.join(QStringLiteral(", "))));
    replot();
}

void ResultPlot::letGoOfSpectra()
{
    m_shown.spectra.clear();
    m_held.spectra.clear();
}

QString ResultPlot::valuesText() const
{
    QStringList texts;
    for (const ShownSpectrum &one : m_shown.spectra)
        texts << summaryText(*one.spectrum, one.name);
    return texts.isEmpty() ? tr("no values") : texts.join(QStringLiteral("; "));
}

void ResultPlot::showTraces(Traces &traces, const ShownSpectra &spectra, SpectrumItems::Look look,
                            SpectMath::DistributionScale axis)
{
    traces.spectra = spectra;
    traces.drawn.clear();
    for (const ShownSpectrum &one : spectra) {
        const std::size_t place = traces.drawn.size();
        if (place == traces.items.size())
            traces.items.emplace_back(this, look);
        traces.drawn.push_back(
            drawnValues(distributionValues(*one.spectrum, *m_options, axis, m_smoothing), *m_options));
        if (look == SpectrumItems::Look::held) // without uncertainties, which the axes needn't fit then
            std::fill(traces.drawn.back().uncertainties.begin(), traces.drawn.back().uncertainties.end(), noValue);
        traces.items[place].show(traces.drawn.back(), m_options->distributionType,
                                 look == SpectrumItems::Look::held ? heldColor : legible(one.color));
    }
    for (std::size_t i = traces.drawn.size(); i < traces.items.size(); ++i)
        traces.items[i].hide();
}

void ResultPlot::setScaleKind()
{
    if (m_isLog == m_options->verticalScaleLog)
        return;
    m_isLog = m_options->verticalScaleLog;
    if (m_isLog) {
        setAxisScaleEngine(yLeft, new QwtLogScaleEngine);
        setAxisScale(yLeft, 1, 1000); // until there are contents: a linear range may hold 0
    } else {
        setAxisScaleEngine(yLeft, new QwtLinearScaleEngine);
    }
}

void ResultPlot::setExtents()
{
    m_extents->extents = {};
    for (const Traces *traces : {&m_shown, &m_held}) {
        for (const DistributionValues &drawn : traces->drawn)
            m_extents->extents.include(drawn, m_isLog);
    }
    if (m_isLog)
        m_extents->extents.vertical = limitedToDecades(m_extents->extents.vertical);
}

void ResultPlot::changeEvent(QEvent *event)
{
    RecordPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showSpectra(ShownSpectra(m_shown.spectra), ShownSpectra(m_held.spectra));
}

// ---- texts

void ResultPlot::setTitles(const SpectMath::SpectrumInfo &first, SpectMath::DistributionScale axis)
{
    setPlainAxisTitle(xBottom, horizontalTitle(first, axis));
    m_verticalTitle = verticalTitle(first, *m_options, axis);
    fitVerticalTitle();
    const SpectMath::SpectrumInfo &info = first;
    readout()->setUnits((axis == SpectMath::DistributionScale::mobility ? info.mobilityUnit : info.sizeUnit).toString(),
                        info.concentrationUnitOf(m_options->verticalQuantity).toString());
}

void ResultPlot::fitVerticalTitle()
{
    const bool isLow = height() < leastTitledHeight * fontMetrics().lineSpacing();
    setPlainAxisTitle(yLeft, isLow ? QString() : m_verticalTitle);
}

void ResultPlot::resizeEvent(QResizeEvent *event)
{
    fitVerticalTitle();
    fitTitle();
    RecordPlot::resizeEvent(event);
}

void ResultPlot::fitTitle()
{
    QwtText title(coloredNames(namesThatFit()), QwtText::RichText);
    title.setRenderFlags(Qt::AlignCenter | Qt::TextWordWrap);
    setTitle(title);
}

/// How many names leave most of the height to the plot.
int ResultPlot::namesThatFit() const
{
    const QFontMetrics metrics(titleLabel()->font());
    const double lines = std::max(1.0, std::floor(height() * titlePart / metrics.lineSpacing()));
    double room = lines * width() * filledPart;
    int count = 0;
    for (const ShownSpectrum &one : m_shown.spectra.mid(0, mostNames)) {
        room -= metrics.horizontalAdvance(titleName(one.name) + QStringLiteral(", "));
        if (room < 0 && count > 0)
            break;
        ++count;
    }
    return count;
}

QString ResultPlot::coloredNames(int count) const
{
    QStringList names;
    for (const ShownSpectrum &one : m_shown.spectra.mid(0, count))
        names << QStringLiteral("<span style=\"color:%1\">%2</span>")
                     .arg(legible(one.color).name(), titleName(one.name).toHtmlEscaped());
    if (m_shown.spectra.size() > count)
        names << QString(QChar(0x2026));
    return names.join(QStringLiteral(", "));
}

QVector<PlotReadout::Series> ResultPlot::readoutSeries() const
{
    QVector<PlotReadout::Series> all;
    for (const Traces *traces : {&m_shown, &m_held}) {
        const bool isHeld = traces == &m_held;
        for (int i = 0; i < traces->spectra.size(); ++i) {
            const ShownSpectrum &one = traces->spectra[i];
            all.append({isHeld ? tr("%1, held").arg(one.name) : one.name,
                        isHeld ? heldColor : legible(one.color),
                        readoutPoints(traces->drawn[std::size_t(i)]),
                        {}});
        }
    }
    return all;
}

/// A bar is told of at its middle.
QVector<QPointF> ResultPlot::readoutPoints(const DistributionValues &drawn) const
{
    const bool isFraction = m_options->distributionType == SpectMath::DistributionType::fraction;
    QVector<QPointF> points;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        const double x = isFraction ? std::sqrt(drawn.grid[i] * drawn.grid[i + 1]) : drawn.grid[i];
        points << QPointF(x, drawn.values[i]);
    }
    return points;
}

} // namespace RecordViews
