#include "gui/frame/shownrecord.h"

#include "util/timeformat.h"

#include <QScopedValueRollback>

ShownRecord::ShownRecord(std::shared_ptr<const UiInfo> uiInfo, QObject *parent)
    : QObject(parent), m_uiInfo(std::move(uiInfo)), m_logger(QStringLiteral("gui"))
{
}

void ShownRecord::setDatastore(std::shared_ptr<Datastore> store)
{
    const QScopedValueRollback<bool> guard(m_isMoving, true);
    moveTo(nullptr, User);
    m_delayed.reset();
    m_last.reset();
    m_spectraPending = false;
    m_datastore = std::move(store);
}

// ---- moved by the user

void ShownRecord::show(const RecordPointer &record)
{
    if (!m_isMoving)
        setFollowing(false);
    moveTo(record, User);
}

void ShownRecord::moveTo(const RecordPointer &record, Mover mover)
{
    if (record == m_record)
        return;
    m_record = record; // before anybody hears of it: answers come back here
    Q_EMIT changed(record, mover);
}

void ShownRecord::showDelayed(const RecordPointer &record)
{
    if (record != m_delayed) {
        m_delayed = record;
        QMetaObject::invokeMethod(this, &ShownRecord::showDelayedNow, Qt::QueuedConnection);
    } else if (record && record != m_record) {
        m_logger.log(Log::Debug, QStringLiteral("skipped record show %1").arg(timeToString(record->beginTime)));
    }
}

void ShownRecord::showDelayedNow()
{
    show(m_delayed);
}

void ShownRecord::jump(JumpCmd command)
{
    if (!m_datastore || !m_record)
        return;
    RecordPointer found;
    switch (command) {
    case NextRecord:
        found = m_datastore->neighbour(m_record, 1);
        break;
    case PreviousRecord:
        found = m_datastore->neighbour(m_record, -1);
        break;
    case NextRecordOfMode:
        found = m_datastore->neighbourWithOpmode(m_record, 1, m_record->opmode);
        break;
    case PreviousRecordOfMode:
        found = m_datastore->neighbourWithOpmode(m_record, -1, m_record->opmode);
        break;
    }
    // The shown record itself is how the store says that there is none: it must not end following.
    if (found && found != m_record)
        show(found);
}

// ---- following the latest

void ShownRecord::setFollowing(bool on)
{
    const QScopedValueRollback<bool> guard(m_isMoving, true);
    if (std::exchange(m_isFollowing, on) != on)
        Q_EMIT followingChanged(on);
    if (!on)
        return;
    if (m_last)
        moveTo(m_last, User);
    else if (m_datastore && !m_datastore->isEmpty())
        moveTo(m_datastore->records().back(), User); // nothing came in since the data were opened
}

DpVariant ShownRecord::variantOf(const Record &record) const
{
    const auto metadata = m_uiInfo->metadata();
    if (!metadata || record.dpVariantId < 0 || record.dpVariantId >= metadata->dpVariants.size())
        return {};
    return metadata->dpVariants[record.dpVariantId];
}

bool ShownRecord::isOffset(const Record &record) const
{
    const auto metadata = m_uiInfo->metadata();
    return metadata && record.opmode >= 0 && record.opmode < metadata->opmodes.size() &&
           metadata->opmodes[record.opmode].isOffset;
}

void ShownRecord::recordCameIn(const RecordPointer &record)
{
    const DpVariant variant = variantOf(*record);
    if (variant.skipOffsets && isOffset(*record))
        return;
    // A shown record whose spectra are still being replaced holds its follower back, until the next one comes.
    const bool heldBack = !variant.followAtOnce && m_spectraPending && m_record == m_last;
    if (!variant.followAtOnce && !heldBack)
        m_spectraPending = false;
    if (m_isFollowing && !heldBack)
        moveTo(record, Follower);
    m_last = record;
}

void ShownRecord::showHeldBack()
{
    const QScopedValueRollback<bool> guard(m_isMoving, true);
    if (m_isFollowing && m_last)
        moveTo(m_last, Follower);
}

void ShownRecord::recordUpdated(const RecordPointer &record, int flags)
{
    const QScopedValueRollback<bool> guard(m_isMoving, true);
    if (flags & RecordCameIn) {
        recordCameIn(record);
        return;
    }
    if ((flags & SpectraChanged) && m_spectraPending && record == m_last && record != m_record) {
        if (m_isFollowing)
            moveTo(record, Follower);
        return;
    }
    if (record != m_record)
        return;
    if (flags & SpectraChanged)
        m_spectraPending = true;
    Q_EMIT contentsChanged();
}
