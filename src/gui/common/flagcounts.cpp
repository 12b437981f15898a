#include "gui/common/flagcounts.h"

#include <iterator>

bool FlagCounts::add(const Spectrometer::FullRecord &record)
{
    bool changed = false;
    for (const std::shared_ptr<Flag> &flag : record.flags) {
        FlagStatus &status = m_statuses[flag.get()];
        if (!status.flag || record.endTime > status.lastEnd) {
            status.flag = flag;
            status.lastEnd = record.endTime;
            changed = true;
        }
        ++status.count;
    }
    return changed;
}

void FlagCounts::forgetBefore(RecordTime moment)
{
    for (auto it = m_statuses.begin(); it != m_statuses.end();)
        it = it->lastEnd < moment ? m_statuses.erase(it) : std::next(it);
}

QString FlagCounts::keyOf(const Flag *flag)
{
    return QString::number(quintptr(flag), 16);
}

std::shared_ptr<Spectrometer::RecordFlag> FlagCounts::flagOf(const QString &key) const
{
    const quintptr address = key.toULongLong(nullptr, 16);
    return m_statuses.value(reinterpret_cast<const Flag *>(address)).flag; // which is looked up, and never followed
}
