#include "gui/browser/views/colorlock.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace Tsb {

ColorLock::ColorLock(QObject *parent) : QObject(parent) {}

void ColorLock::join(ColorLimits *limits, AddVisibleValues addVisibleValues)
{
    leave(limits);
    const auto set =
        std::find_if(m_members.begin(), m_members.end(), [](const Member &member) { return member.limits->areSet(); });
    const bool haveOthersLimits = set != m_members.end();
    if (haveOthersLimits)
        limits->set(set->limits->lower(), set->limits->upper());
    m_members.push_back({limits, std::move(addVisibleValues)});
    connect(limits, &ColorLimits::changed, this, [this, limits] { spread(*limits); });
    if (!haveOthersLimits && limits->areSet())
        spread(*limits);
}

void ColorLock::leave(ColorLimits *limits)
{
    limits->disconnect(this);
    m_members.erase(std::remove_if(m_members.begin(), m_members.end(),
                                   [limits](const Member &member) { return member.limits == limits; }),
                    m_members.end());
}

void ColorLock::spread(const ColorLimits &from)
{
    if (m_isSpreading)
        return; // it comes from here
    const QScopedValueRollback<bool> spreading(m_isSpreading, true);
    for (const Member &member : m_members)
        member.limits->set(from.lower(), from.upper());
}

void ColorLock::addVisibleValuesTo(DecadeHistogram &histogram) const
{
    for (const Member &member : m_members)
        member.addVisibleValues(histogram);
}

} // namespace Tsb
