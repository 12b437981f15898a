#include "datafiles/parsing/electrometersection.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/parsing/headerlimits.h"

namespace HeaderSections {

namespace {

using Groups = QMap<QString, Spectrometer::ChannelRange>;

Groups readGroups(const Llama::MapNode &node)
{
    checkHeaderCount(node.entries.size());
    Groups groups;
    for (auto entry = node.entries.constBegin(); entry != node.entries.constEnd(); ++entry) {
        const Llama::ListNode range = node.at(entry).toList();
        Spectrometer::ChannelRange group;
        group.end = int(std::min<qint64>(qint64(range.at(1).toInt()) + 1, std::numeric_limits<int>::max()));
        group.first = range.at(0).toInt();
        groups.insert(entry.key(), group);
    }
    return groups;
}

} // namespace

bool readElectrometers(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node countNode = header.get(QStringLiteral("total electrometers"));
    const Llama::Node groupsNode = header.get(QStringLiteral("electrometer groups"));
    const Llama::Node namesNode = header.get(QStringLiteral("electrometer names"));
    if (!countNode.exists || !groupsNode.exists || !namesNode.exists)
        return false;

    const int count = countNode.toInt();
    checkHeaderCount(count);
    // Names that are no list at all are complained of where they are taken.
    const bool namesAreList = namesNode.value.canConvert(QMetaType::QVariantList);
    if (count < 0 || (namesAreList && count > namesNode.toList().size()))
        throw FileReaderError(QStringLiteral("Electrometer count does not match the names"));
    if (state.electrometerCountKnown && count != state.electrometerCount)
        throw FileReaderError(QStringLiteral("Electrometer count does not match previous value"));
    checkHeaderCount(count, state.isAffordable(0, count, state.variableNames.size()));

    const Groups groups = readGroups(groupsNode.toMap());
    Spectrometer::RecordMetadata &metadata = *state.metadata;
    if (!state.electrometerCountKnown)
        metadata.electrometerGroups = groups;
    else if (groups.values() != metadata.electrometerGroups.values()) // only the ranges in order of the names count
        throw FileReaderError(QStringLiteral("Different eletrometer groups"));

    state.electrometerCount = count;
    state.electrometerCountKnown = true;
    state.order.noteElectrometers();
    metadata.totalElectrometers = count;
    metadata.electrometerNames.resize(count);
    const Llama::ListNode names = namesNode.toList();
    for (int i = 0; i < count; ++i)
        metadata.electrometerNames[i] = names.at(i).requireString();
    return true;
}

} // namespace HeaderSections
