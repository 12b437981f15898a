#pragma once

#include "gui/browser/controls/expspinbox.h"

namespace Tsb {

class ColorLimits;

/// Shows one of the colour limits as a value, and sets it. A number that can't be a limit goes back once the user is
/// done with it: 250 starts as 2. The limits must live as long as the box.
class ColorLimitBox : public ExpSpinBox {
    Q_OBJECT
public:
    enum End { Lower, Upper };

    ColorLimitBox(ColorLimits &limits, End end, QWidget *parent);

private:
    void takeValue(double value);
    void showLimit();

    ColorLimits &m_limits;
    End m_end;
};

} // namespace Tsb
