#include "datafiles/parsing/variablesection.h"

#include "datafiles/parsing/headerlimits.h"

namespace HeaderSections {

namespace {

Llama::Node variablesNode(const Llama::MapNode &header)
{
    const Llama::Node node = header.get(QStringLiteral("diagnostic parameters"));
    return node.exists ? node : header.get(QStringLiteral("parameters"));
}

int readVariable(const Llama::Node &node, FileReaderState &state)
{
    if (node.value.type() != QVariant::Map) {
        const QString name = node.requireString();
        return state.variableOf(name, name, QString());
    }
    const Llama::MapNode map = node.toMap();
    const QString name = map.at(QStringLiteral("name")).requireString();
    const QString humanname = map.at(QStringLiteral("humanname")).requireString();
    return state.variableOf(name, humanname, map.value(QStringLiteral("unit"), QString()));
}

} // namespace

std::optional<QVector<int>> readVariables(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node node = variablesNode(header);
    if (!node.exists)
        return std::nullopt;
    const Llama::ListNode list = node.toList();
    checkHeaderCount(list.size());
    QVector<int> slots;
    slots.reserve(list.size());
    for (int i = 0; i < list.size(); ++i)
        slots.append(readVariable(list.at(i), state));
    return slots;
}

} // namespace HeaderSections
