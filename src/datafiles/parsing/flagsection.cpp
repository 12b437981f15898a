#include "datafiles/parsing/flagsection.h"

#include "datafiles/parsing/headerlimits.h"

#include "util/textescape.h"

namespace HeaderSections {

namespace {

FlagLevel readFlagLevel(const Llama::MapNode &map, FileReaderState &state)
{
    QString type = map.at(QStringLiteral("type")).requireString();
    if (type.isEmpty())
        type = QStringLiteral("note");
    const QString message = map.at(QStringLiteral("message")).requireString();
    const double threshold = map.value(QStringLiteral("freq"), 0.0);
    const QString text = QStringLiteral("{type: \"%1\", message: \"%2\"}").arg(escapeText(type), escapeText(message));
    const auto flag = state.flagOf(text);
    checkHeaderCount(0, flag != nullptr);
    return {flag, threshold};
}

} // namespace

std::optional<QVector<FlagLevel>> readFlagLevels(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node node = header.get(QStringLiteral("flags"));
    if (!node.exists)
        return std::nullopt;
    const Llama::ListNode list = node.toList();
    checkHeaderCount(list.size());
    QVector<FlagLevel> levels;
    for (int i = 0; i < list.size(); ++i)
        levels.append(readFlagLevel(list.at(i).toMap(), state));
    return levels;
}

} // namespace HeaderSections
