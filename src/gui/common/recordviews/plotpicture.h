#pragma once

#include "gui/common/picturecommands.h"

namespace RecordViews {

/// The commands "Copy picture" and "Save picture..." for all plots that are seen in a widget, each at its place; what
/// else stands there isn't drawn. Belongs to the widget.
class PlotPicture : public PictureCommands {
public:
    explicit PlotPicture(QWidget *widget);

    static PictureFile::Drawing drawingOf(QWidget *widget);
};

} // namespace RecordViews
