#pragma once

#include "gui/common/vargridlayout.h"
#include "records/record.h"
#include "records/recordmetadata.h"

#include <QAbstractTableModel>
#include <QFont>

namespace RecordViews {

/// The cells of one layout, with the values of a record. Main thread only.
class VarGridViewModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit VarGridViewModel(QObject *parent = nullptr);

    /// The metadata are those that the layout was read with; null for neither. They aren't kept.
    void setLayout(const VarGridLayout &layout, const Spectrometer::RecordMetadata *metadata);
    /// May be null: cells with variables are empty then. The cells stay.
    void setRecord(std::shared_ptr<const Record> record);
    /// Cells that show one of these variables are red.
    void setHighlights(const QStringList &variables);
    void setFont(const QFont &font);

    const VarGridLayout &layout() const { return m_layout; }
    /// Null for a place without a cell.
    const VarGridCell *cell(const QModelIndex &index) const;
    /// The column of the layout; that of the header isn't among the model's.
    const VarGridColumn &column(int section) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    /// A cell's format can't be used; once for a layout.
    void formatIsWrong(const QString &format) const;

private:
    std::size_t layoutColumn(int section) const
    {
        return std::size_t(section) + (m_layout.firstColumnIsHeader ? 1 : 0);
    }
    bool isHighlighted(const VarGridCell &cell) const;
    QVariant cellData(const VarGridCell &cell, int role) const;
    QString text(const VarGridCell &cell) const;
    void valuesChanged();

    VarGridLayout m_layout;
    QHash<QString, int> m_slots; ///< of the values, by variable
    std::shared_ptr<const Record> m_record;
    QStringList m_highlights;
    QFont m_font;
    mutable bool m_hasWarned = false;
};

} // namespace RecordViews
