#pragma once

#include "gui/common/pictures/picturecommands.h"

#include <functional>

class QwtPlot;

namespace RecordViews {

/// The commands "Copy picture" and "Save picture..." for all plots that are seen in a widget, each at its place; what
/// else stands there isn't drawn. Belongs to the widget.
class PlotPicture : public PictureCommands {
public:
    using Draw = std::function<void(QPainter &painter)>;

    /// `draw` draws the plots in the widget's place, if they aren't all there to be seen.
    explicit PlotPicture(QWidget *widget, const Draw &draw = {});

    static PictureFile::Drawing drawingOf(QWidget *widget, const Draw &draw = {});
    /// A plot that is that large, seen or not, without the frame of the focus.
    static void drawPlot(QwtPlot *plot, QPainter &painter, const QPoint &at);
};

} // namespace RecordViews
