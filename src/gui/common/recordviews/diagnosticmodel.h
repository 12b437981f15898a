#pragma once

#include "gui/common/recordviews/diagnosticgroups.h"
#include "gui/common/recordviews/variablefilter.h"
#include "records/record.h"

#include <QAbstractItemModel>

namespace RecordViews {

/// The diagnostic variables of a record, a row for each quantity that passes the filter: its name and its value. Main
/// thread only.
class DiagnosticModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum Column { NameColumn, ValueColumn, ColumnCount };

    explicit DiagnosticModel(QObject *parent = nullptr);
    ~DiagnosticModel() override;

    /// May be null. Costs nothing for the present object while it has no new variables.
    void setMetadata(std::shared_ptr<const Spectrometer::RecordMetadata> metadata);
    /// May be null. The rows stay.
    void setRecord(std::shared_ptr<const Record> record);
    void setFilter(const QString &filter);
    /// Rows that have one of these variables, under any of its names, are red.
    void setHighlights(const QStringList &names);

    /// The place of the row's group, which no filter changes; -1 for no row of this model.
    int groupOf(const QModelIndex &index) const;
    /// The group's row, or -1 while it doesn't pass the filter.
    int rowOf(int group) const;
    const Spectrometer::SystemVariable &mainVariable(const QModelIndex &index) const;
    /// Name, unit and value of the row's main variable between tabs, for a table elsewhere.
    QString textToCopy(const QModelIndex &index) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const ParameterGroup &groupAt(const QModelIndex &index) const;
    double valueOf(const Spectrometer::SystemVariable *variable) const;
    QString valueText(const ParameterGroup &group, int slot) const;
    QString toolTip(const ParameterGroup &group) const;
    std::vector<int> passingGroups() const;
    void setRows(std::vector<int> rows);
    void findHighlightedGroups();

    std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    int m_variableCount = 0; ///< of the metadata when they were grouped
    std::shared_ptr<const Record> m_record;
    std::vector<ParameterGroup> m_groups;
    std::vector<QString> m_searchedTexts; ///< by group
    std::vector<bool> m_isHighlighted;    ///< by group
    QString m_filterText;
    VariableFilter m_filter;
    QStringList m_highlights;
    std::vector<int> m_rows;  ///< the group of each row
    std::vector<int> m_rowOf; ///< by group; -1 for none
};

} // namespace RecordViews
