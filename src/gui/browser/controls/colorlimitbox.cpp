#include "gui/browser/controls/colorlimitbox.h"

#include "gui/browser/controls/colorlimits.h"

#include <QSignalBlocker>

namespace Tsb {

ColorLimitBox::ColorLimitBox(ColorLimits &limits, End end, QWidget *parent)
    : ExpSpinBox(parent), m_limits(limits), m_end(end)
{
    setAccessibleName(end == Lower ? tr("Least value of the color scale") : tr("Greatest value of the color scale"));
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setRange(1e-300, 1e300);
    showLimit();
    connect(this, &ExpSpinBox::valueChanged, this, &ColorLimitBox::takeValue);
    connect(this, &ExpSpinBox::editingFinished, this, &ColorLimitBox::showLimit);
    connect(&m_limits, &ColorLimits::changed, this, &ColorLimitBox::showLimit);
}

void ColorLimitBox::takeValue(double value)
{
    const bool taken = m_end == Lower ? m_limits.setLowerValue(value) : m_limits.setUpperValue(value);
    if (!taken && !isBeingEdited())
        showLimit();
}

void ColorLimitBox::showLimit()
{
    const QSignalBlocker blocker(this);
    setValue(m_end == Lower ? m_limits.lowerValue() : m_limits.upperValue());
}

} // namespace Tsb
