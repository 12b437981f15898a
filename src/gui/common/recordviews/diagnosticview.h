#pragma once

#include "gui/common/recordviews/recordview.h"

#include <QModelIndex>

#include <vector>

class QAction;
class QLineEdit;
class QTreeView;

namespace RecordViews {

class DiagnosticModel;

/// The list of the record's diagnostic variables with a filter. From here variables go into the browser as plots and
/// onto the clipboard.
class DiagnosticView : public RecordView {
    Q_OBJECT
public:
    explicit DiagnosticView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~DiagnosticView() override;

    QString viewName() const override;
    QVariantMap setup() const override;
    void restoreSetup(const QVariantMap &setup) override;

public Q_SLOTS:
    /// Tells the other views which variable is looked at: the value "diagview_selected_parameter" of uiInfo().
    void selectParameter(QModelIndex newindex, QModelIndex oldindex);
    void activateParameter(QModelIndex index);
    /// Shows the variables that pass. Selected ones stay selected, those out of sight as well.
    void setFilter(QString filter);
    void clearFilter();
    void showSelectedPlots();
    /// In the order of selection.
    void copyParameterValues();

protected:
    void refreshSetup() override;
    void refreshRecord() override;

private:
    QWidget *makeContents();
    void makeActions();
    QModelIndexList selectedRows() const;
    void selectGroups(const std::vector<int> &groups, int current);
    void selectionChanged(bool hasLostRows);

    DiagnosticModel *m_model;
    QTreeView *m_treeView;
    QLineEdit *m_filterEdit;
    QAction *m_clearAction = nullptr;
    std::vector<int> m_hiddenSelection; ///< selected groups that the filter hides
    bool m_isFiltering = false;         ///< the selection changes with the rows, not by the user
};

} // namespace RecordViews
