#pragma once

#include "gui/common/menubutton.h"

namespace Tsb {
class TimeSeriesBrowser;
}

/// A button for the toolbar whose menu adds plots; it can be pressed while the browser can take any.
class AddPlotButton : public MenuButton {
    Q_OBJECT
public:
    AddPlotButton(const Tsb::TimeSeriesBrowser &browser, QWidget *parent);
};
