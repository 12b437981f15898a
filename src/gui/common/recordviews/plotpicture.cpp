#include "gui/common/recordviews/plotpicture.h"

#include "gui/common/recordviews/recordplot.h"

#include <QPainter>
#include <QWidget>

#include <qwt_plot.h>
#include <qwt_plot_renderer.h>

namespace RecordViews {

namespace {

void drawSeen(QWidget *widget, QPainter &painter)
{
    if (auto *const plot = qobject_cast<QwtPlot *>(widget))
        PlotPicture::drawPlot(plot, painter, QPoint());
    for (QwtPlot *plot : widget->findChildren<QwtPlot *>()) {
        if (plot->isVisibleTo(widget))
            PlotPicture::drawPlot(plot, painter, plot->mapTo(widget, QPoint()));
    }
}

} // namespace

PlotPicture::PlotPicture(QWidget *widget, const Draw &draw)
    : PictureCommands(widget, [widget, draw] { return drawingOf(widget, draw); })
{
}

PictureFile::Drawing PlotPicture::drawingOf(QWidget *widget, const Draw &draw)
{
    const auto drawAll = [widget](QPainter &painter) { drawSeen(widget, painter); };
    return {widget->rect(), widget->logicalDpiX(), widget->palette().color(QPalette::Window), widget->windowTitle(),
            draw ? draw : drawAll};
}

void PlotPicture::drawPlot(QwtPlot *plot, QPainter &painter, const QPoint &at)
{
    auto *const own = qobject_cast<RecordPlot *>(plot);
    if (own)
        own->setFocusFrameShown(false);
    QwtPlotRenderer().render(plot, &painter, QRectF(at, plot->size()));
    if (own)
        own->setFocusFrameShown(true);
}

} // namespace RecordViews
