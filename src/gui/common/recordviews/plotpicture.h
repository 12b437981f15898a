#pragma once

#include "gui/common/pictures/picturecommands.h"

#include <functional>

namespace RecordViews {

/// The commands "Copy picture" and "Save picture..." for all plots that are seen in a widget, each at its place; what
/// else stands there isn't drawn. Belongs to the widget.
class PlotPicture : public PictureCommands {
public:
    /// `prepare` brings the plots into the state that is drawn.
    explicit PlotPicture(QWidget *widget, const std::function<void()> &prepare = {});

    static PictureFile::Drawing drawingOf(QWidget *widget);
};

} // namespace RecordViews
