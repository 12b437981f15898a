#include "gui/common/vargridparser.h"

#include "llama/qyaml.h"
#include "log/logger.h"

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QSet>

namespace VarGridParser {

namespace {

using Llama::ListNode;
using Llama::MapNode;
using Llama::Node;
using Llama::NodeError;

[[noreturn]] void throwInvalidValue(const QString &value, const Node &node)
{
    throw NodeError(QStringLiteral("Invalid value \"%1\" for %2").arg(value, node.path()));
}

void refuseMoreThan(int most, const ListNode &list)
{
    if (list.size() > most)
        throw NodeError(QStringLiteral("'%1' has more than %2 entries").arg(list.path(), QString::number(most)));
}

/// The list's texts, of which there are at most so many.
QStringList texts(const ListNode &list, int most)
{
    refuseMoreThan(most, list);
    QStringList result;
    for (int i = 0; i < list.size(); ++i)
        result.append(list.at(i).requireString());
    return result;
}

/// The file's parts in the order in which they are read: each refers to those before.
class Parser {
public:
    explicit Parser(const Spectrometer::RecordMetadata &metadata)
    {
        for (const auto &variable : metadata.variables)
            m_variables.insert(variable->name);
    }

    std::vector<VarGridLayout> parse(const MapNode &file)
    {
        const MapNode columns = file.get(QStringLiteral("cols")).toMap();
        for (auto it = columns.entries.begin(); it != columns.entries.end(); ++it)
            m_columns.insert(it.key(), column(it.key(), columns.at(it).toMap()));
        const MapNode rows = file.get(QStringLiteral("rows")).toMap();
        for (auto it = rows.entries.begin(); it != rows.entries.end(); ++it)
            m_rows.insert(it.key(), row(rows.at(it).toMap()));
        const ListNode list = file.get(QStringLiteral("layouts")).toList();
        refuseMoreThan(mostLayouts, list);
        std::vector<VarGridLayout> layouts;
        layouts.reserve(std::size_t(list.size()));
        for (int i = 0; i < list.size(); ++i)
            layouts.push_back(layout(list.at(i).toMap()));
        return layouts;
    }

private:
    static VarGridColumn column(const QString &id, const MapNode &map)
    {
        VarGridColumn column;
        column.id = id;
        if (map.contains(QStringLiteral("title")))
            column.title = map.at(QStringLiteral("title")).requireString();
        column.widthString = map.value(QStringLiteral("width_str"), QString());
        map.read(QStringLiteral("width"), &column.width);
        return column;
    }

    VarGridLayout::Row row(const MapNode &map) const
    {
        QMap<QString, VarGridCell> cells;
        for (auto it = map.entries.begin(); it != map.entries.end(); ++it)
            cells.insert(it.key(), cell(map.at(it).toMap()));
        return std::make_shared<const QMap<QString, VarGridCell>>(std::move(cells));
    }

    VarGridCell cell(const MapNode &map) const
    {
        VarGridCell cell;
        cell.text = map.value(QStringLiteral("text"), QString());
        if (map.contains(QStringLiteral("variables")))
            cell.variables = variables(map.at(QStringLiteral("variables")).toList());
        if (map.contains(QStringLiteral("align")))
            cell.alignment = alignment(map.at(QStringLiteral("align")));
        if (map.contains(QStringLiteral("font_weight")))
            cell.fontWeight = fontWeight(map.at(QStringLiteral("font_weight")));
        if (map.contains(QStringLiteral("color")))
            cell.color = color(map.at(QStringLiteral("color")));
        return cell;
    }

    QStringList variables(const ListNode &list) const
    {
        const QStringList names = texts(list, mostVariables);
        for (int i = 0; i < names.size(); ++i)
            if (!m_variables.contains(names[i]))
                throw NodeError(
                    QStringLiteral("Invalid variable \"%1\" specified at %2").arg(names[i], list.at(i).path()));
        return names;
    }

    static Qt::Alignment alignment(const Node &node)
    {
        const QString word = node.requireString();
        if (word == QLatin1String("left"))
            return Qt::AlignLeft | Qt::AlignVCenter;
        if (word == QLatin1String("right"))
            return Qt::AlignRight | Qt::AlignVCenter;
        if (word == QLatin1String("center"))
            return Qt::AlignCenter;
        throwInvalidValue(word, node);
    }

    static int fontWeight(const Node &node)
    {
        const QString word = node.requireString();
        if (word == QLatin1String("bold"))
            return QFont::Bold;
        if (word == QLatin1String("normal"))
            return QFont::Normal;
        throwInvalidValue(word, node);
    }

    static QColor color(const Node &node)
    {
        const QString name = node.requireString();
        QColor color;
        color.setNamedColor(name);
        if (!color.isValid())
            throwInvalidValue(name, node);
        return color;
    }

    VarGridLayout layout(const MapNode &map) const
    {
        VarGridLayout layout;
        layout.name = map.at(QStringLiteral("name")).requireString();
        const ListNode rows = map.at(QStringLiteral("rows")).toList();
        const QStringList rowIds = texts(rows, mostRows);
        for (int i = 0; i < rowIds.size(); ++i) {
            if (!m_rows.contains(rowIds[i]))
                throw NodeError(QStringLiteral("Invalid row \"%1\" specified at %2").arg(rowIds[i], rows.at(i).path()));
            layout.rows.push_back(m_rows[rowIds[i]]);
        }
        const ListNode columns = map.at(QStringLiteral("cols")).toList();
        const QStringList columnIds = texts(columns, mostColumns);
        for (int i = 0; i < columnIds.size(); ++i) {
            if (!m_columns.contains(columnIds[i]))
                throw NodeError(
                    QStringLiteral("Invalid column \"%1\" specified at %2").arg(columnIds[i], columns.at(i).path()));
            layout.columns.push_back(m_columns[columnIds[i]]);
        }
        layout.firstColumnIsHeader = map.value(QStringLiteral("first_column_is_header"), false);
        return layout;
    }

    QSet<QString> m_variables;
    QMap<QString, VarGridColumn> m_columns;
    QMap<QString, VarGridLayout::Row> m_rows;
};

} // namespace

std::vector<VarGridLayout> parse(const Node &file, const Spectrometer::RecordMetadata &metadata)
{
    return Parser(metadata).parse(file.toMap());
}

std::vector<VarGridLayout> load(const QStringList &folders, const Spectrometer::RecordMetadata &metadata)
{
    for (const QString &folder : folders) {
        const QString path = QDir(folder).filePath(QStringLiteral("var_grid_layouts.yaml"));
        if (!QFileInfo::exists(path))
            continue;
        try {
            return parse(Llama::loadYamlNode(path), metadata);
        } catch (const Llama::Exception &error) {
            Log::Logger(QStringLiteral("gui")).log(Log::Error, error.message());
            return {};
        }
    }
    return {};
}

} // namespace VarGridParser
