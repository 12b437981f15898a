#include "gui/common/recordviews/recordplot.h"

#include "gui/common/recordviews/panzoomhelper.h"

#include <QEvent>
#include <QKeyEvent>
#include <QWheelEvent>

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_widget.h>
#include <qwt_text_label.h>

#include <cmath>

namespace RecordViews {

namespace {

constexpr int leastWidth = 16, leastHeight = 6; // characters, lines
constexpr int linesOfTitles = 5;                // and of the horizontal axis
constexpr int fewTicks = 3, usualTicks = 8;
constexpr double ticksOfALine = 0.75; // of the rest: more would touch each other
constexpr double keyZoom = 0.8;
constexpr double keyPan = 0.1; ///< of an axis
constexpr int margin = 4;      ///< pixels around the plot
constexpr double leastContrast = 4;
constexpr double gridStrength = 0.2;

QwtText plainText(const QString &text)
{
    return QwtText(text, QwtText::PlainText);
}

QColor mixed(const QColor &a, const QColor &b, double partOfB)
{
    const auto mix = [partOfB](int x, int y) { return qRound(x + (y - x) * partOfB); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

double luminance(const QColor &color)
{
    const auto linear = [](double part) { return std::pow(part, 2.2); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &lighter, const QColor &darker)
{
    return (luminance(lighter) + 0.05) / (luminance(darker) + 0.05);
}

} // namespace

RecordPlot::RecordPlot(QWidget *parent)
    : QwtPlot(parent), m_grid(new QwtPlotGrid), m_readout(new PlotReadout(this, [this] { return readoutSeries(); }))
{
    tellSelections();
    setAutoReplot(false);
    setFocusPolicy(Qt::StrongFocus);
    setContentsMargins(margin, margin, 2 * margin, margin);
    auto *frame = static_cast<QwtPlotCanvas *>(canvas());
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    frame->setLineWidth(1);
    frame->setBorderRadius(0);
    canvas()->setFocusPolicy(Qt::NoFocus); // keys are the plot's
    canvas()->setCursor(Qt::ArrowCursor);
    plotLayout()->setAlignCanvasToScales(true);
    m_grid->attach(this);
    for (int axis : {xBottom, yLeft})
        setupAxis(axis);
    takeFonts();
    takeColors();
}

RecordPlot::~RecordPlot() = default;

void RecordPlot::setupAxis(int axis)
{
    auto *const helper = new PanZoomHelper(this, axis);
    helper->setAutoMode(true);
    connect(helper, &PanZoomHelper::setAutoScaleEnabled, this,
            axis == yLeft ? &RecordPlot::setVerticalAutoscale : &RecordPlot::setHorizontalAutoscale);
    axisOf(axis).helper = helper;
    axisWidget(axis)->setMargin(0);
}

void RecordPlot::setPlainTitle(const QString &title)
{
    QwtText text = plainText(title);
    text.setRenderFlags(Qt::AlignCenter | Qt::TextWordWrap);
    setTitle(text);
}

void RecordPlot::setPlainAxisTitle(int axis, const QString &title)
{
    QwtText text = plainText(title);
    text.setFont(font());
    text.setRenderFlags(Qt::AlignCenter | Qt::TextWordWrap); // a low plot has a short axis
    setAxisTitle(axis, text);
}

// ---- axes

void RecordPlot::setVerticalAutoscale(bool on)
{
    setAutoscale(yLeft, on);
}

void RecordPlot::setHorizontalAutoscale(bool on)
{
    setAutoscale(xBottom, on);
}

void RecordPlot::setAutoscale(int axis, bool on)
{
    axisOf(axis).isAutomatic = on;
    axisOf(axis).isFitted = false;
    if (on)
        replot();
}

void RecordPlot::setAxesLocked(bool on)
{
    if (m_areLocked == on)
        return;
    m_areLocked = on;
    if (!on)
        fitAxes();
}

void RecordPlot::fitAxes()
{
    for (Axis *axis : {&m_horizontal, &m_vertical})
        *axis = {axis->helper, axis->subject};
    replot();
}

void RecordPlot::setAxisSubject(int axis, const QString &subject)
{
    Axis &own = axisOf(axis);
    if (subject == own.subject)
        return;
    if (own.isFitted || !own.isAutomatic)
        own.otherRanges.insert(own.subject, {own.isAutomatic, axisInterval(axis)});
    own.subject = subject;
    const auto known = own.otherRanges.constFind(subject);
    own.isFitted = known != own.otherRanges.constEnd();
    own.isAutomatic = !own.isFitted || known->isAutomatic;
    if (own.isFitted)
        setAxisScale(axis, known->ends.minValue(), known->ends.maxValue());
}

void RecordPlot::setRecordMoment(const QString &moment)
{
    m_recordMoment = moment;
    noteSelectionChanged(this);
}

QString RecordPlot::selectionText() const
{
    return m_recordMoment.isEmpty() ? tr("No record is selected") : tr("%1: %2").arg(m_recordMoment, valuesText());
}

QSize RecordPlot::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * leastWidth, fontMetrics().lineSpacing() * leastHeight};
}

void RecordPlot::replot()
{
    for (int axis : {xBottom, yLeft})
        setAxisAutoScale(axis, axisOf(axis).isAutomatic && !(m_areLocked && axisOf(axis).isFitted));
    QwtPlot::replot();
    noteFitted();
    m_readout->refresh();
}

void RecordPlot::noteFitted()
{
    for (const QwtPlotItem *item : itemList()) {
        if (!item->isVisible() || !item->testItemAttribute(QwtPlotItem::AutoScale))
            continue;
        const QRectF extent = item->boundingRect();
        m_horizontal.isFitted |= extent.width() >= 0;
        m_vertical.isFitted |= extent.height() >= 0;
    }
}

void RecordPlot::wheelEvent(QWheelEvent *event)
{
    // Over an axis it zooms, and must not scroll what the plot stands in as well.
    const QWidget *const under = childAt(event->position().toPoint());
    event->setAccepted(under == axisWidget(xBottom) || under == axisWidget(yLeft));
}

// ---- keys

void RecordPlot::keyPressEvent(QKeyEvent *event)
{
    if (!pressPanZoomKey(*event) && !pressReadoutKey(*event))
        QwtPlot::keyPressEvent(event);
}

bool RecordPlot::pressPanZoomKey(const QKeyEvent &event)
{
    const bool isShifted = event.modifiers() & Qt::ShiftModifier;
    const auto zoom = [this](double factor) {
        m_horizontal.helper->zoom(factor);
        m_vertical.helper->zoom(factor);
    };
    switch (event.key()) {
    case Qt::Key_Plus:
        zoom(keyZoom);
        return true;
    case Qt::Key_Minus:
        zoom(1 / keyZoom);
        return true;
    case Qt::Key_Home:
        fitAxes();
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (isShifted)
            m_horizontal.helper->pan(event.key() == Qt::Key_Right ? keyPan : -keyPan);
        return isShifted;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (isShifted)
            m_vertical.helper->pan(event.key() == Qt::Key_Up ? keyPan : -keyPan);
        return isShifted;
    default:
        return false;
    }
}

bool RecordPlot::pressReadoutKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Comma:
        m_readout->stepPoint(-1);
        return true;
    case Qt::Key_Period:
        m_readout->stepPoint(1);
        return true;
    case Qt::Key_PageUp:
        m_readout->stepSeries(-1);
        return true;
    case Qt::Key_PageDown:
        m_readout->stepSeries(1);
        return true;
    case Qt::Key_Escape:
        m_readout->hide();
        return true;
    default:
        return false;
    }
}

// ---- looks

void RecordPlot::resizeEvent(QResizeEvent *event)
{
    const int lines = height() / fontMetrics().lineSpacing() - linesOfTitles;
    const int ticks = qBound(fewTicks, int(lines * ticksOfALine), usualTicks);
    if (ticks != axisMaxMajor(yLeft)) {
        const QwtInterval ends = axisInterval(yLeft);
        setAxisMaxMajor(yLeft, ticks);
        if (!axisAutoScale(yLeft)) // whose range would be the last that was set, not the last that was fitted
            setAxisScale(yLeft, ends.minValue(), ends.maxValue());
        replot();
    }
    QwtPlot::resizeEvent(event);
}

void RecordPlot::changeEvent(QEvent *event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        takeColors();
        QwtPlot::replot();
    } else if (event->type() == QEvent::FontChange) {
        takeFonts();
        updateLayout();
    }
}

QColor RecordPlot::legible(const QColor &color) const
{
    const QColor ground = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    QColor seen = color;
    if (ground.lightness() > ink.lightness())
        return seen;
    for (int step = 1; step <= 10 && contrast(seen, ground) < leastContrast; ++step)
        seen = mixed(color, ink, step * 0.1);
    return seen;
}

void RecordPlot::takeColors()
{
    const QColor paper = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    QPalette colors = canvas()->palette();
    colors.setColor(QPalette::Window, paper);
    canvas()->setPalette(colors);
    colorFrame(hasFocus());
    m_grid->setPen(mixed(paper, ink, gridStrength), 0, Qt::DotLine);
}

void RecordPlot::setFocusFrameShown(bool on)
{
    colorFrame(on && hasFocus());
}

void RecordPlot::colorFrame(bool isFocused)
{
    const QColor paper = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    QPalette colors = canvas()->palette();
    colors.setColor(QPalette::WindowText,
                    isFocused ? palette().color(QPalette::Highlight) : mixed(paper, ink, 2 * gridStrength));
    canvas()->setPalette(colors);
    static_cast<QwtPlotCanvas *>(canvas())->replot();
}

void RecordPlot::focusInEvent(QFocusEvent *event)
{
    QwtPlot::focusInEvent(event);
    colorFrame(true);
}

void RecordPlot::focusOutEvent(QFocusEvent *event)
{
    QwtPlot::focusOutEvent(event);
    colorFrame(false);
}

void RecordPlot::takeFonts()
{
    QFont bold = font();
    bold.setBold(true);
    titleLabel()->setFont(bold);
    for (int axis : {xBottom, yLeft}) {
        setAxisFont(axis, font());
        QwtText title = axisTitle(axis);
        title.setFont(font());
        setAxisTitle(axis, title);
    }
}

} // namespace RecordViews
