#include "gui/morvantide/keptplace.h"

#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/frame/mainwindowbase.h"

#include <algorithm>
#include <optional>

namespace KeptPlace {

namespace {

const QString beginKey = QStringLiteral("begin");
const QString endKey = QStringLiteral("end");
const QString recordBeginKey = QStringLiteral("recordbegin");
const QString recordEndKey = QStringLiteral("recordend");

QString textOf(RecordTime time)
{
    return QString::number(ticksOf(time));
}

std::optional<RecordTime> timeIn(const QVariantMap &place, const QString &key)
{
    bool isNumber = false;
    const qint64 ticks = place.value(key).toString().toLongLong(&isNumber);
    return isNumber ? std::optional(recordTimeFromTicks(ticks)) : std::nullopt;
}

/// Folders share the layout of the folder above them, and its time span. Without data any span will do.
bool hasDataIn(const Datastore *store, RecordTime begin, RecordTime end)
{
    return !store || store->isEmpty() ||
           (begin < effectiveEnd(*store->records().back()) && end > store->at(0)->beginTime);
}

} // namespace

QVariantMap of(const MainWindowBase &window)
{
    const TimeScale scale = window.browser()->timeScale();
    QVariantMap place{{beginKey, textOf(scale.tickAt(0))},
                      {endKey, textOf(scale.tickAt(window.browser()->timeView()->contentsRect().width()))}};
    if (const auto &record = window.shownRecord()) {
        place.insert(recordBeginKey, textOf(record->beginTime));
        place.insert(recordEndKey, textOf(record->endTime));
    }
    return place;
}

void showRecord(MainWindowBase &window, const QVariantMap &place)
{
    const auto recordBegin = timeIn(place, recordBeginKey), recordEnd = timeIn(place, recordEndKey);
    if (window.datastore() && recordBegin && recordEnd) {
        const int index = window.datastore()->indexOf(*recordBegin, *recordEnd);
        if (index >= 0)
            window.showRecord(window.datastore()->at(index));
    }
}

void show(MainWindowBase &window, const QVariantMap &place)
{
    showRecord(window, place);
    // Last, since a record that is shown is brought into sight.
    const auto begin = timeIn(place, beginKey), end = timeIn(place, endKey);
    if (!begin || !end || *end <= *begin || !hasDataIn(window.datastore().get(), *begin, *end))
        return;
    Tsb::TimeNavigator *const navigator = window.browser()->timeView()->navigator();
    navigator->setFollowNow(false);
    const int width = std::max(1, window.browser()->timeView()->contentsRect().width());
    navigator->setTimeScale({*begin, saturatedSubtract(ticksOf(*end), ticksOf(*begin)) / width, 0});
}

} // namespace KeptPlace
