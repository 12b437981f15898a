#include "gui/common/recordviews/plotpicture.h"

#include "gui/common/recordviews/recordplot.h"

#include <QPainter>
#include <QWidget>

#include <qwt_plot.h>
#include <qwt_plot_renderer.h>

namespace RecordViews {

namespace {

void draw(QWidget *widget, QPainter &painter)
{
    QwtPlotRenderer renderer;
    const auto drawPlot = [&](QwtPlot *plot) {
        auto *const own = qobject_cast<RecordPlot *>(plot);
        if (own)
            own->setFocusFrameShown(false);
        renderer.render(plot, &painter, QRectF(QPointF(plot->mapTo(widget, QPoint())), QSizeF(plot->size())));
        if (own)
            own->setFocusFrameShown(true);
    };
    if (auto *const plot = qobject_cast<QwtPlot *>(widget))
        drawPlot(plot);
    for (QwtPlot *plot : widget->findChildren<QwtPlot *>()) {
        if (plot->isVisibleTo(widget))
            drawPlot(plot);
    }
}

} // namespace

PlotPicture::PlotPicture(QWidget *widget, const std::function<void()> &prepare)
    : PictureCommands(widget, [widget, prepare] {
          PictureFile::Drawing drawing = drawingOf(widget);
          if (prepare)
              drawing.draw = [draw = drawing.draw, prepare](QPainter &painter) {
                  prepare();
                  draw(painter);
              };
          return drawing;
      })
{
}

PictureFile::Drawing PlotPicture::drawingOf(QWidget *widget)
{
    return {widget->rect(), widget->logicalDpiX(), widget->palette().color(QPalette::Window), widget->windowTitle(),
            [widget](QPainter &painter) { draw(widget, painter); }};
}

} // namespace RecordViews
