#pragma once

#include "gui/common/picturefile.h"

namespace Tsb {

class TimeSeriesBrowser;

/// The time axis and all views of a browser, those that are scrolled out of sight included, without the controls that
/// only the mouse can use, as they are laid out at present. They are drawn only as the browser lives.
PictureFile::Drawing stackDrawing(TimeSeriesBrowser &browser);
/// Its frame: from the left end of the views' contents, where their close buttons end, to the end of the axis, and down
/// to the last view. In the coordinates of a browser that isn't scrolled; its margin may reach beyond.
QRect stackFrame(const TimeSeriesBrowser &browser);

} // namespace Tsb
