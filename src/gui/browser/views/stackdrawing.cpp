#include "gui/browser/views/stackdrawing.h"

#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/views/timeseriesbrowser.h"
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
QRect placeOf(const TimeSeriesBrowser &browser, const View &view)
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

} // namespace

QRect stackFrame(const TimeSeriesBrowser &browser)
{
    const QRect axis = placeIn(browser, *browser.timeView());
    QRect frame(QPoint(ViewLayout::titleWidth, axis.top()), axis.bottomRight());
    for (const View *view : browser.views()) {
        const QRect place = placeOf(browser, *view);
        frame.setLeft(place.left() + ViewLayout::titleWidth + view->layout()->spacing());
        frame.setBottom(std::max(frame.bottom(), place.bottom()));
    }
    return frame.adjusted(-margin, -margin, margin, margin);
}

PictureFile::Drawing stackDrawing(TimeSeriesBrowser &browser)
{
    PictureFile::Drawing drawing;
    drawing.frame = stackFrame(browser);
    drawing.background = browser.palette().color(QPalette::Window);
    drawing.draw = [&browser, frame = drawing.frame](QPainter &painter) {
        draw(painter, *browser.timeView(), placeIn(browser, *browser.timeView()), frame);
        for (View *view : browser.views())
            draw(painter, *view, placeOf(browser, *view), frame);
    };
    return drawing;
}

} // namespace Tsb
