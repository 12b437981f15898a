#include "axis/measuringcursors.h"

#include <algorithm>

namespace Tsb {

MeasuringCursors::MeasuringCursors(QObject *parent) : QObject(parent) {}

std::pair<RecordTime, RecordTime> MeasuringCursors::span() const
{
    return std::minmax(*m_times[0], *m_times[1]);
}

void MeasuringCursors::set(int which, RecordTime time)
{
    std::optional<RecordTime> &cursor = m_times[std::size_t(which)];
    if (cursor == time)
        return;
    cursor = time;
    Q_EMIT changed();
}

void MeasuringCursors::drop()
{
    if (!areAny())
        return;
    m_times = {};
    Q_EMIT changed();
}

} // namespace Tsb
