#include "gui/common/recordviews/electrometersmodel.h"

#include "gui/common/recordviews/electrometertext.h"
#include "gui/common/recordviews/flagmark.h"

#include <QBrush>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr int decimals = 3;

} // namespace

ElectrometersModel::ElectrometersModel(QObject *parent) : QAbstractTableModel(parent) {}
ElectrometersModel::~ElectrometersModel() = default;

void ElectrometersModel::setMetadata(std::shared_ptr<const Spectrometer::RecordMetadata> metadata)
{
    const int count = metadata ? std::max(0, metadata->totalElectrometers) : 0;
    if (metadata == m_metadata && count == m_rowCount)
        return;
    beginResetModel();
    m_metadata = std::move(metadata);
    m_rowCount = count;
    endResetModel();
}

void ElectrometersModel::setRecord(std::shared_ptr<const Record> record)
{
    m_record = std::move(record);
    if (m_rowCount > 0)
        Q_EMIT dataChanged(index(0, VoltageColumn), index(m_rowCount - 1, DeviationColumn), {Qt::DisplayRole});
}

void ElectrometersModel::setHighlights(const QList<int> &electrometers)
{
    if (electrometers == m_highlights)
        return;
    m_highlights = electrometers;
    m_highlightedRows = QSet<int>(electrometers.begin(), electrometers.end());
    if (m_rowCount > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_rowCount - 1, ColumnCount - 1),
                           {Qt::ForegroundRole, Qt::FontRole, Qt::AccessibleDescriptionRole});
}

int ElectrometersModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int ElectrometersModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

double ElectrometersModel::value(int row, int column) const
{
    if (!m_record)
        return noValue;
    switch (column) {
    case VoltageColumn:
        return valueAt(m_record->voltages, row);
    case RawCurrentColumn:
        return valueAt(m_record->rawCurrents, row);
    case CurrentColumn:
        return valueAt(m_record->currents, row);
    default:
        return deviationOf(valueAt(m_record->currentVariances, row));
    }
}

QString ElectrometersModel::text(int row, int column) const
{
    if (column == NameColumn)
        return m_metadata->electrometerNames.value(row);
    const double number = value(row, column);
    return std::isnan(number) ? QString() : QString::number(number, 'f', decimals);
}

QVariant ElectrometersModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rowCount)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return int((index.column() == NameColumn ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::UserRole:
        return index.row();
    default:
        return m_highlightedRows.contains(index.row()) ? flagMark(role) : QVariant();
    }
}

QVariant ElectrometersModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::ToolTipRole && section == DeviationColumn)
        return tr("Standard deviation of the current");
    if (role != Qt::DisplayRole)
        return {};
    // The last one is a sigma that once went through the wrong code page. Users know the column by it.
    static const QString titles[] = {tr("Name"), tr("U (V)"), tr("I raw (fA)"), tr("I (fA)"),
                                     QStringLiteral("\u00cf\u0192 I (fA)")};
    return titles[section];
}

} // namespace RecordViews
