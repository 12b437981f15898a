#include "gui/browser/views/stackdrawing.h"

#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/plots/scatterplot.h"
#include "gui/browser/views/view.h"

#include <QLayout>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace Tsb {

namespace {

constexpr int margin = 4; // around the views

QRect placeIn(const QWidget &parent, const QWidget &widget)
{
    return {widget.mapTo(&parent, QPoint()), widget.size()};
}

/// Where a view stands as long as nothing is scrolled.
QRect placeOf(const QWidget &browser, const View &view)
{
    const QWidget &holder = *view.parentWidget();
    const QPoint top = holder.parentWidget()->mapTo(&browser, QPoint());
    return placeIn(holder, view).translated(top);
}

/// The part of a widget that isn't taken by controls.
QRegion withoutControls(const QWidget &widget)
{
    QRegion region = widget.rect();
    for (const auto *handle : widget.findChildren<Resizer *>())
        region -= placeIn(widget, *handle);
    for (const auto *button : widget.findChildren<QToolButton *>()) {
        if (button->menu() && button->isVisibleTo(&widget))
            region -= placeIn(widget, *button);
    }
    return region;
}

/// QWidget::render puts the top left of the region, and not that of the widget, at its offset.
void draw(QPainter &painter, QWidget &widget, const QRect &place, const QRect &frame)
{
    const QRegion region = withoutControls(widget) & frame.translated(-place.topLeft());
    if (!region.isEmpty())
        widget.render(&painter, place.topLeft() + region.boundingRect().topLeft(), region);
}

/// Pictures have no moment to wait for what is told later.
void countOffScale(const QVector<View *> &views)
{
    for (const View *view : views) {
        for (ScatterPlot *plot : view->findChildren<ScatterPlot *>())
            plot->countOffScaleNow();
    }
}

} // namespace

QRect stackFrame(const QWidget &browser, const TimeView &axis, const QVector<View *> &views)
{
    const QRect axisPlace = placeIn(browser, axis);
    QRect frame(QPoint(ViewLayout::titleWidth, axisPlace.top()), axisPlace.bottomRight());
    for (const View *view : views) {
        const QRect place = placeOf(browser, *view);
        frame.setLeft(place.left() + ViewLayout::titleWidth + view->layout()->spacing());
        frame.setBottom(std::max(frame.bottom(), place.bottom()));
    }
    return frame.adjusted(-margin, -margin, margin, margin);
}

PictureFile::Drawing stackDrawing(QWidget &browser, TimeView &axis, const QVector<View *> &views)
{
    const QRect frame = stackFrame(browser, axis, views);
    countOffScale(views);
    const auto drawStack = [&browser, &axis, views, frame](QPainter &painter) {
        draw(painter, axis, placeIn(browser, axis), frame);
        for (View *view : views)
            draw(painter, *view, placeOf(browser, *view), frame);
        for (Plot *plot : browser.findChildren<Plot *>())
            plot->update(); // having painted, it takes what it had deferred as done
    };
    return {frame, browser.logicalDpiX(), browser.palette().color(QPalette::Window), QString(), drawStack};
}

} // namespace Tsb
