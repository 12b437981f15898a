#include "datafiles/parsing/instrumentsection.h"

#include "datafiles/parsing/headerlimits.h"
#include "records/recordflagparser.h"

namespace HeaderSections {

namespace {

/// Nulls can't be written into a header that reads back the same.
QVariant withoutNulls(const QVariant &value)
{
    if (value.type() == QVariant::Map) {
        QVariantMap kept;
        const QVariantMap entries = value.toMap();
        for (auto entry = entries.constBegin(); entry != entries.constEnd(); ++entry)
            if (entry->isValid())
                kept.insert(entry.key(), withoutNulls(*entry));
        return kept;
    }
    if (value.type() == QVariant::List) {
        QVariantList kept;
        for (const QVariant &item : value.toList())
            if (item.isValid())
                kept.append(withoutNulls(item));
        return kept;
    }
    return value;
}

} // namespace

void readInstrumentSettings(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node node = header.get(QStringLiteral("instrument configuration"));
    if (!node.exists || node.value.type() != QVariant::Map)
        return;
    if (state.instrumentSettingsTaken) {
        if (state.order.isChecking())
            state.order.noteOtherSettings(withoutNulls(node.value).toMap() == state.metadata->instrumentSettings);
    } else {
        const std::size_t bytes = MemoryBudget::perTreeNode * std::size_t(Spectrometer::nodesOf(node.value));
        checkHeaderCount(0, state.isAffordable(bytes));
        state.budget.hold(bytes);
        state.metadata->instrumentSettings = withoutNulls(node.value).toMap();
        state.instrumentSettingsTaken = true;
        state.order.noteSettings();
    }
}

} // namespace HeaderSections
