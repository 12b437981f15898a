#pragma once

#include "gui/common/pictures/picturefile.h"

#include <QRect>
#include <QVector>

class QWidget;

namespace Tsb {

class TimeView;
class View;

/// The time axis and these views of a browser as they are laid out at present, those that are scrolled out of sight
/// included, without the controls that only the mouse can use. Scales tell at once how many values lie off them. To be
/// drawn before the event loop goes on.
///
/// The frame reaches from the left end of the views' contents, where their close buttons end, to the end of the axis,
/// and down to the last view. It is in the coordinates of a browser that isn't scrolled; its margin may reach beyond.
PictureFile::Drawing stackDrawing(QWidget &browser, TimeView &axis, const QVector<View *> &views);
/// The frame of that picture.
QRect stackFrame(const QWidget &browser, const TimeView &axis, const QVector<View *> &views);

} // namespace Tsb
