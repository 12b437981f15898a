#include "gui/common/recordviews/distribution/resultplots.h"

#include "gui/common/recordviews/plotpicture.h"

#include <QCoreApplication>
#include <QResizeEvent>
#include <QStyle>

#include <algorithm>

namespace RecordViews {

namespace {

// Of a plot, in lines of text.
constexpr int leastHeight = 10;
constexpr int leastHeightAlone = 6; ///< there is less of it in a small dock, and all of it is seen

/// Before the plot is filled: axes fit contents by its size.
void setRect(ResultPlot &plot, const QRect &rect)
{
    const bool isResized = plot.size() != rect.size();
    plot.setGeometry(rect);
    if (isResized && !plot.isVisibleTo(plot.parentWidget())) {
        QResizeEvent event(rect.size(), QSize()); // a hidden widget hears of it when it is shown
        QCoreApplication::sendEvent(&plot, &event);
    }
}

} // namespace

ResultPlots::ResultPlots(std::shared_ptr<const PlotOptions> options, QWidget *parent)
    : QScrollArea(parent), m_options(std::move(options))
{
    setWidget(new QWidget(this));
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // the plots have it
    reservePlaces(1);
    showPlace(0);
}

QSize ResultPlots::minimumSizeHint() const
{
    return {QScrollArea::minimumSizeHint().width(), leastHeightAlone * fontMetrics().lineSpacing()};
}

// ---- places

void ResultPlots::reservePlaces(int count)
{
    m_leastPlaces = m_placeCount = std::max(m_leastPlaces, count);
    m_places.resize(std::max(m_places.size(), std::size_t(m_placeCount)));
    const int lines = m_placeCount == 1 ? leastHeightAlone : leastHeight;
    const int height = lines * fontMetrics().lineSpacing() + spacing();
    widget()->setMinimumHeight(m_placeCount * height - spacing());
    // At once: plots would be laid out at the old size first.
    widget()->resize(viewport()->width(), std::max(viewport()->height(), widget()->minimumHeight()));
}

int ResultPlots::spacing() const
{
    return std::max(0, style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
}

/// All are as high as each other, and fill the canvas.
QRect ResultPlots::placeRect(int i) const
{
    const int height = widget()->height() + spacing();
    const int top = i * height / m_placeCount, next = (i + 1) * height / m_placeCount;
    return {0, top, widget()->width(), next - spacing() - top};
}

/// Neighbours as well: the keyboard goes on to them.
void ResultPlots::showThoseInSight()
{
    const int top = -widget()->y(), bottom = top + viewport()->height();
    const int margin = placeRect(0).height() + spacing();
    for (int i = 0; i < int(m_places.size()); ++i) {
        ResultPlot *const plot = m_places[std::size_t(i)].plot;
        // Also that of a window which isn't active: the plot would lose it when it is hidden.
        const bool hasFocus = plot && plot == window()->focusWidget();
        const QRect rect = i < m_placeCount ? placeRect(i) : QRect();
        const bool isNear = rect.bottom() > top - margin && rect.top() < bottom + margin;
        if (i < m_placeCount && (isNear || hasFocus))
            showPlace(i);
        else if (plot)
            plot->hide();
    }
}

void ResultPlots::draw(QPainter &painter)
{
    ResultPlot substitute(m_options, widget());
    substitute.hide();
    const QRectF seen = painter.hasClipping() ? painter.clipBoundingRect() : QRectF(widget()->rect());
    // The last ones, which may have no spectrum, come before the substitute has the axes of any.
    for (int i = m_placeCount - 1; i >= 0; --i) {
        if (seen.intersects(placeRect(i)))
            drawPlace(painter, i, substitute);
    }
}

void ResultPlots::drawPlace(QPainter &painter, int i, ResultPlot &substitute)
{
    const Place &place = m_places[std::size_t(i)];
    ResultPlot &plot = place.plot ? *place.plot : substitute;
    setRect(plot, placeRect(i));
    if (!place.plot) {
        if (substitute.areAxesLocked()) { // to another's spectrum
            substitute.showSpectra({}, {});
            substitute.setAxesLocked(false);
        }
        fill(substitute, i);
    } else if (!place.isFilled) {
        fillPlace(i);
    }
    PlotPicture::drawPlot(&plot, painter, plot.pos());
}

void ResultPlots::showPlace(int i)
{
    const Place &place = m_places[std::size_t(i)];
    if (!place.plot)
        makePlot(i);
    setRect(*place.plot, placeRect(i));
    if (!place.isFilled)
        fillPlace(i);
    place.plot->show();
}

void ResultPlots::makePlot(int i)
{
    auto *const plot = new ResultPlot(m_options, widget());
    m_places[std::size_t(i)].plot = plot;
    const auto isMade = [](const Place &place) { return place.plot != nullptr; };
    const auto madeBefore = std::find_if(m_places.rend() - i, m_places.rend(), isMade);
    if (madeBefore != m_places.rend())
        setTabOrder(madeBefore->plot, plot);
}

void ResultPlots::fillPlace(int i)
{
    Place &place = m_places[std::size_t(i)];
    place.isFilled = true;
    place.plot->setRecordMoment(m_moment);
    fill(*place.plot, i);
}

void ResultPlots::fill(ResultPlot &plot, int i) const
{
    if (m_areAxesLocked && !plot.areAxesLocked()) {
        showSpectraOf(m_lockedTo, plot, i);
        plot.setAxesLocked(true);
    }
    showSpectraOf(m_shown, plot, i);
}

void ResultPlots::showSpectraOf(const ShownSpectra &shown, ResultPlot &plot, int i) const
{
    if (m_isSinglePlot)
        plot.showSpectra(shown, m_held);
    else if (i < shown.size())
        plot.showSpectra({shown[i]}, heldLike(shown[i]));
    else
        plot.showSpectra({}, {});
}

bool ResultPlots::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::Resize)
        showThoseInSight();
    return QScrollArea::eventFilter(watched, event);
}

void ResultPlots::scrollContentsBy(int dx, int dy)
{
    QScrollArea::scrollContentsBy(dx, dy);
    showThoseInSight();
}

void ResultPlots::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    showThoseInSight();
}

// ---- spectra

void ResultPlots::setSinglePlot(bool on)
{
    m_isSinglePlot = on;
    forgetPlaces();
}

void ResultPlots::showSpectra(const ShownSpectra &shown, const QString &moment)
{
    m_moment = moment;
    if (moment.isEmpty())
        m_lockedTo.clear();
    showSpectra(shown);
}

void ResultPlots::showSpectra(const ShownSpectra &shown)
{
    m_shown = shown;
    for (Place &place : m_places) {
        place.isFilled = false;
        if (place.plot)
            place.plot->letGoOfSpectra();
    }
    reservePlaces(m_isSinglePlot ? 1 : std::max(1, shown.size()));
    showThoseInSight();
}

ShownSpectra ResultPlots::heldLike(const ShownSpectrum &shown) const
{
    ShownSpectra like;
    std::copy_if(m_held.begin(), m_held.end(), std::back_inserter(like),
                 [&](const ShownSpectrum &held) { return *held.spectrum->info == *shown.spectrum->info; });
    return like;
}

void ResultPlots::setHolding(bool on)
{
    m_held = on ? m_shown : ShownSpectra();
    showSpectra(m_shown);
}

void ResultPlots::setAxesLocked(bool on)
{
    m_areAxesLocked = on;
    m_lockedTo = on ? m_shown : ShownSpectra();
    for (const Place &place : m_places) {
        if (place.plot && (place.isFilled || !on))
            place.plot->setAxesLocked(on);
    }
}

void ResultPlots::fitAxes()
{
    if (m_areAxesLocked)
        m_lockedTo = m_shown;
    for (const Place &place : m_places) {
        if (!place.plot)
            continue;
        if (!place.isFilled)
            place.plot->setAxesLocked(false); // until it is
        place.plot->fitAxes();
    }
}

} // namespace RecordViews
