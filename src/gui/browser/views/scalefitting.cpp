#include "gui/browser/views/scalefitting.h"

#include "gui/browser/plots/scatterplot.h"
#include "gui/browser/views/plotadder.h"
#include "gui/browser/views/view.h"

#include <QCoreApplication>
#include <QEvent>

namespace Tsb {

namespace {

constexpr int growPeriod = 500; // ms

/// A plot whose values are worked out before it paints paints once.
void workOutSeenValues(const QVector<View *> &views)
{
    QVector<ScatterPlot *> seen;
    for (const View *view : views) {
        for (ScatterPlot *plot : view->findChildren<ScatterPlot *>()) {
            if (!plot->visibleRegion().isEmpty())
                seen.append(plot);
        }
    }
    ScatterPlot::workOutValues(seen);
}

} // namespace

ScaleFitting::ScaleFitting(const ViewStack &stack, QObject *parent) : QObject(parent), m_stack(stack)
{
    m_growTimer.setSingleShot(true);
    m_growTimer.setInterval(growPeriod);
    connect(&m_growTimer, &QTimer::timeout, this, &ScaleFitting::grow);
}

void ScaleFitting::fitAll()
{
    m_stack.activateLayouts();
    for (View *view : m_stack.views())
        view->fitScale();
}

void ScaleFitting::fitUntold()
{
    m_stack.activateLayouts();
    const QVector<View *> views = m_stack.views();
    for (View *view : views) {
        if (!view->isScaleGiven())
            view->fitScale();
    }
    settleBeforePainting();
    workOutSeenValues(views);
}

void ScaleFitting::settleBeforePainting()
{
    for (const QEvent::Type type : {QEvent::LayoutRequest, QEvent::UpdateLater})
        QCoreApplication::sendPostedEvents(nullptr, type);
}

void ScaleFitting::valuesChanged()
{
    if (m_isGrowing && !m_growTimer.isActive())
        m_growTimer.start();
}

void ScaleFitting::grow()
{
    for (View *view : m_stack.views())
        view->growScale();
}

} // namespace Tsb
