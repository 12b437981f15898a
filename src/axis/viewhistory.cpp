#include "axis/viewhistory.h"

namespace Tsb {

namespace {

bool isSame(const ViewHistory::Place &a, const ViewHistory::Place &b)
{
    if (a.following != b.following || a.scale.ticksPerPixel != b.scale.ticksPerPixel)
        return false;
    int shift = 0;
    // The same mapping may have its origin at another column.
    return a.following || a.scale == b.scale || (a.scale.pixelShiftFrom(b.scale, &shift) && shift == 0);
}

} // namespace

void ViewHistory::begin(const Place &before)
{
    if (!m_open)
        m_open = before;
}

void ViewHistory::finish(const Place &reached)
{
    if (m_open && !isSame(*m_open, reached)) {
        m_places.push_back(*m_open);
        if (m_places.size() > greatestDepth)
            m_places.pop_front();
    }
    m_open.reset();
}

bool ViewHistory::hasPrevious(const Place &reached) const
{
    return !m_places.empty() || (m_open && !isSame(*m_open, reached));
}

std::optional<ViewHistory::Place> ViewHistory::goBack(const Place &reached)
{
    finish(reached);
    if (m_places.empty())
        return std::nullopt;
    const Place place = m_places.back();
    m_places.pop_back();
    return place;
}

void ViewHistory::clear()
{
    m_open.reset();
    m_places.clear();
}

} // namespace Tsb
