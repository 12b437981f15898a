#include "gui/browser/controls/titlebutton.h"

#include <QStyle>

namespace Tsb {

TitleButton::TitleButton(QWidget *parent) : QToolButton(parent)
{
    const int extent = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    setMaximumSize(extent, extent);
    setAutoRaise(true);
}

} // namespace Tsb
