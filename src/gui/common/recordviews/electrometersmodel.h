#pragma once

#include "records/record.h"
#include "records/recordmetadata.h"

#include <QAbstractTableModel>
#include <QSet>

namespace RecordViews {

/// The electrometers of a record, a row each. Main thread only.
class ElectrometersModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { NameColumn, VoltageColumn, RawCurrentColumn, CurrentColumn, DeviationColumn, ColumnCount };

    explicit ElectrometersModel(QObject *parent = nullptr);
    ~ElectrometersModel() override;

    /// May be null. Costs nothing for the present object while it has no more electrometers.
    void setMetadata(std::shared_ptr<const Spectrometer::RecordMetadata> metadata);
    /// May be null. The rows stay.
    void setRecord(std::shared_ptr<const Record> record);
    /// The rows of these electrometers are red. Numbers of none are passed over.
    void setHighlights(const QList<int> &electrometers);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    /// The role Qt::UserRole gives the electrometer's number from 0.
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString text(int row, int column) const;
    double value(int row, int column) const;

    std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    int m_rowCount = 0;
    std::shared_ptr<const Record> m_record;
    QList<int> m_highlights;
    QSet<int> m_highlightedRows; ///< a file's flag may name any number of them
};

} // namespace RecordViews
