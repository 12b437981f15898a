#include "gui/common/recordviews/diagnosticmodel.h"

#include "gui/common/recordviews/diagnosticvalue.h"
#include "gui/common/recordviews/flagmark.h"
#include "util/numeric.h"

#include <QBrush>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <numeric>

namespace RecordViews {

namespace {

using Spectrometer::SystemVariable;

constexpr int longestLabel = 200; ///< of a tool tip, which wraps no lines

QString label(const QString &name)
{
    return name.size() > longestLabel ? name.left(longestLabel) + QChar(0x2026) : name;
}

} // namespace

DiagnosticModel::DiagnosticModel(QObject *parent) : QAbstractItemModel(parent) {}
DiagnosticModel::~DiagnosticModel() = default;

void DiagnosticModel::setMetadata(std::shared_ptr<const Spectrometer::RecordMetadata> metadata)
{
    const int count = metadata ? metadata->variables.size() : 0;
    if (metadata == m_metadata && count == m_variableCount)
        return;
    beginResetModel();
    m_metadata = std::move(metadata);
    m_variableCount = count;
    m_groups = m_metadata ? groupVariables(m_metadata->variables) : std::vector<ParameterGroup>();
    m_searchedTexts.clear();
    for (const ParameterGroup &group : m_groups)
        m_searchedTexts.push_back(VariableFilter::searchedText(group.main()));
    findHighlightedGroups();
    setRows(passingGroups());
    endResetModel();
}

void DiagnosticModel::setRecord(std::shared_ptr<const Record> record)
{
    m_record = std::move(record);
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, ValueColumn), index(rowCount() - 1, ValueColumn));
}

void DiagnosticModel::setFilter(const QString &filter)
{
    if (filter == m_filterText)
        return;
    m_filterText = filter;
    m_filter = VariableFilter(filter);
    std::vector<int> rows = passingGroups();
    if (rows == m_rows)
        return;
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<int> groups;
    for (const QModelIndex &index : before)
        groups.push_back(groupOf(index));
    setRows(std::move(rows));
    QModelIndexList after;
    for (int i = 0; i < before.size(); ++i)
        after << index(rowOf(groups[std::size_t(i)]), before[i].column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

void DiagnosticModel::setHighlights(const QStringList &names)
{
    if (names == m_highlights)
        return;
    m_highlights = names;
    findHighlightedGroups();
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1),
                           {Qt::ForegroundRole, Qt::FontRole, Qt::AccessibleDescriptionRole});
}

void DiagnosticModel::findHighlightedGroups()
{
    m_isHighlighted.assign(m_groups.size(), false);
    if (m_highlights.isEmpty())
        return;
    const QSet<QString> names(m_highlights.begin(), m_highlights.end());
    const auto isNamed = [&](const SystemVariable *variable) { return variable && names.contains(variable->name); };
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        m_isHighlighted[i] = std::any_of(m_groups[i].slots.begin(), m_groups[i].slots.end(), isNamed);
}

std::vector<int> DiagnosticModel::passingGroups() const
{
    std::vector<int> groups;
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        if (m_filter.passes(m_searchedTexts[i]))
            groups.push_back(int(i));
    }
    return groups;
}

void DiagnosticModel::setRows(std::vector<int> rows)
{
    m_rows = std::move(rows);
    m_rowOf.assign(m_groups.size(), -1);
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rowOf[std::size_t(m_rows[row])] = int(row);
}

// ---- rows and groups

int DiagnosticModel::groupOf(const QModelIndex &index) const
{
    return index.isValid() && index.row() < rowCount() ? m_rows[std::size_t(index.row())] : -1;
}

int DiagnosticModel::rowOf(int group) const
{
    return group >= 0 && group < int(m_rowOf.size()) ? m_rowOf[std::size_t(group)] : -1;
}

const ParameterGroup &DiagnosticModel::groupAt(const QModelIndex &index) const
{
    return m_groups[std::size_t(m_rows[std::size_t(index.row())])];
}

const SystemVariable &DiagnosticModel::mainVariable(const QModelIndex &index) const
{
    return groupAt(index).main();
}

QModelIndex DiagnosticModel::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex DiagnosticModel::parent(const QModelIndex &) const
{
    return {};
}

int DiagnosticModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int DiagnosticModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

// ---- texts

double DiagnosticModel::valueOf(const SystemVariable *variable) const
{
    if (!variable || !m_record || variable->valueIndex < 0)
        return noValue;
    const auto slot = std::size_t(variable->valueIndex);
    return slot < m_record->variables.size() ? m_record->variables[slot] : noValue; // a record may be shorter
}

QString DiagnosticModel::valueText(const ParameterGroup &group, int slot) const
{
    return diagnosticValueText(valueOf(group.slots[std::size_t(slot)]), valueOf(group.slots[std::size_t(slot) + 1]));
}

QString DiagnosticModel::toolTip(const ParameterGroup &group) const
{
    QString lines;
    for (const auto slot : {ParameterGroup::Mean, ParameterGroup::Input, ParameterGroup::Output,
                            ParameterGroup::OnState, ParameterGroup::Target, ParameterGroup::ValueTarget}) {
        const SystemVariable *const variable = group.slots[slot];
        if (!variable)
            continue;
        const QString unit = variable->unit.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(label(variable->unit));
        lines += QStringLiteral("<div style=\"white-space: nowrap;\"><b>%1</b>: %2%3</div>")
                     .arg(label(variable->humanname).toHtmlEscaped(), valueText(group, slot), unit.toHtmlEscaped());
    }
    return lines;
}

QString DiagnosticModel::textToCopy(const QModelIndex &index) const
{
    const SystemVariable &variable = mainVariable(index);
    const double value = valueOf(&variable);
    return QStringLiteral("%1\t%2\t%3")
        .arg(variable.humanname, variable.unit, std::isnan(value) ? QString() : QString::number(value, 'g', 5));
}

QVariant DiagnosticModel::data(const QModelIndex &index, int role) const
{
    const int groupIndex = groupOf(index);
    if (groupIndex < 0)
        return {};
    const ParameterGroup &group = m_groups[std::size_t(groupIndex)];
    const bool isName = index.column() == NameColumn;
    switch (role) {
    case Qt::DisplayRole:
        if (!isName)
            return valueText(group, ParameterGroup::Mean);
        return group.main().unit.isEmpty() ? group.main().humanname
                                           : QStringLiteral("%1 (%2)").arg(group.main().humanname, group.main().unit);
    case Qt::TextAlignmentRole:
        return int((isName ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return toolTip(group);
    default:
        return m_isHighlighted[std::size_t(groupIndex)] ? flagMark(role) : QVariant();
    }
}

QVariant DiagnosticModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return {};
    return section == NameColumn ? tr("Name") : tr("Value");
}

} // namespace RecordViews
