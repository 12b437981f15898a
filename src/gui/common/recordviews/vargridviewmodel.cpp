#include "gui/common/recordviews/vargridviewmodel.h"

#include "gui/common/recordviews/flagmark.h"
#include "util/valueformat.h"

#include <QBrush>

namespace RecordViews {

VarGridViewModel::VarGridViewModel(QObject *parent) : QAbstractTableModel(parent) {}

void VarGridViewModel::setLayout(const VarGridLayout &layout, const Spectrometer::RecordMetadata *metadata)
{
    beginResetModel();
    m_layout = layout;
    m_slots.clear();
    if (metadata)
        for (const auto &variable : metadata->variables)
            m_slots.insert(variable->name, variable->valueIndex);
    m_hasWarned = false;
    endResetModel();
}

void VarGridViewModel::setRecord(std::shared_ptr<const Record> record)
{
    m_record = std::move(record);
    valuesChanged();
}

void VarGridViewModel::setHighlights(const QStringList &variables)
{
    m_highlights = variables; // setRecord() follows
}

void VarGridViewModel::setFont(const QFont &font)
{
    m_font = font;
}

void VarGridViewModel::valuesChanged()
{
    if (rowCount() == 0)
        return;
    if (columnCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    if (m_layout.firstColumnIsHeader)
        Q_EMIT headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
}

const VarGridCell *VarGridViewModel::cell(const QModelIndex &index) const
{
    return index.isValid() ? m_layout.cell(std::size_t(index.row()), layoutColumn(index.column())) : nullptr;
}

const VarGridColumn &VarGridViewModel::column(int section) const
{
    return m_layout.columns[layoutColumn(section)];
}

int VarGridViewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_layout.rows.size());
}

int VarGridViewModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : std::max(0, int(m_layout.columns.size()) - (m_layout.firstColumnIsHeader ? 1 : 0));
}

QVariant VarGridViewModel::data(const QModelIndex &index, int role) const
{
    const VarGridCell *const found = cell(index);
    return found ? cellData(*found, role) : QVariant();
}

QVariant VarGridViewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section < columnCount())
        return role == Qt::DisplayRole ? column(section).title : QVariant();
    if (orientation == Qt::Vertical && m_layout.firstColumnIsHeader && section < rowCount() &&
        !m_layout.columns.empty()) {
        const VarGridCell *const found = m_layout.cell(std::size_t(section), 0);
        return found ? cellData(*found, role) : QVariant();
    }
    return {};
}

bool VarGridViewModel::isHighlighted(const VarGridCell &cell) const
{
    return std::any_of(cell.variables.begin(), cell.variables.end(),
                       [this](const QString &name) { return m_highlights.contains(name); });
}

QVariant VarGridViewModel::cellData(const VarGridCell &cell, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(cell);
    case Qt::FontRole: {
        QFont font = m_font;
        if (cell.fontWeight >= 0)
            font.setWeight(cell.fontWeight);
        font.setUnderline(isHighlighted(cell));
        return font;
    }
    case Qt::TextAlignmentRole:
        return int(cell.alignment);
    case Qt::ForegroundRole:
        if (isHighlighted(cell))
            return flagMark(role);
        return cell.color.isValid() ? QBrush(cell.color) : QVariant();
    case Qt::AccessibleDescriptionRole:
        return isHighlighted(cell) ? flagMark(role) : QVariant();
    default:
        return {};
    }
}

QString VarGridViewModel::text(const VarGridCell &cell) const
{
    if (cell.variables.isEmpty())
        return cell.text;
    if (!m_record)
        return {};
    std::vector<double> values;
    for (const QString &name : cell.variables) {
        const int slot = m_slots.value(name, -1);
        const bool isThere = slot >= 0 && std::size_t(slot) < m_record->variables.size();
        values.push_back(isThere ? m_record->variables[std::size_t(slot)] : noValue);
    }
    bool isValid = false;
    const QString formatted = formatValues(cell.text, values, &isValid);
    if (isValid)
        return formatted;
    if (!std::exchange(m_hasWarned, true))
        Q_EMIT formatIsWrong(cell.text);
    return QStringLiteral("?");
}

} // namespace RecordViews
