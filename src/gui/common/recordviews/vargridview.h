#pragma once

#include "gui/common/recordviews/recordview.h"

#include <QModelIndex>

class QAction;
class QActionGroup;
class QLabel;
class QStackedWidget;
class QTableView;
class QToolButton;

namespace RecordViews {

class VarGridViewModel;

/// The record's variables as a table that a file of layouts lays out. A cell that is activated asks for plots of its
/// variables.
class VarGridView : public RecordView {
    Q_OBJECT
public:
    explicit VarGridView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~VarGridView() override;

    QString viewName() const override;
    /// The chosen layout's name, also while the data have none of that name.
    QVariantMap setup() const override;
    void restoreSetup(const QVariantMap &setup) override;

public Q_SLOTS:
    /// Does nothing: a cell may have many variables, and none is the one that is looked at.
    void selectParameter(QModelIndex newindex, QModelIndex oldindex);
    void activateParameter(QModelIndex index);
    void layoutActionTriggered(QAction *action);

protected:
    void refreshSetup() override;
    void refreshRecord() override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeGridPage();
    void fillLayoutMenu();
    void showLayout();
    void sizeColumns();

    VarGridViewModel *m_model;
    QStackedWidget *m_pages;
    QLabel *m_hint = nullptr; ///< tells where layouts come from, while there are none
    QTableView *m_tableView = nullptr;
    QToolButton *m_layoutButton = nullptr;
    QActionGroup *m_layoutActionGroup = nullptr;
    QString m_selectedLayout; ///< by name
};

} // namespace RecordViews
