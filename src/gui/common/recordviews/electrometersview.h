#pragma once

#include "gui/common/recordviews/recordview.h"

#include <QModelIndex>

class QAction;
class QTreeView;

namespace RecordViews {

class ElectrometersModel;

/// The table of the record's electrometers. From here they go into the browser as plots and onto the clipboard.
class ElectrometersView : public RecordView {
    Q_OBJECT
public:
    explicit ElectrometersView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~ElectrometersView() override;

    QString viewName() const override;
    QVariantMap setup() const override;
    void restoreSetup(const QVariantMap &setup) override;

public Q_SLOTS:
    /// All electrometers; nothing without a record.
    void copyToClipboard();
    /// The selected rows as they are shown, with tabs between their columns.
    void copySelectedRows();
    /// Tells the other views which electrometer is looked at: the value "elmview_selected_parameter" of uiInfo().
    void selectParameter(QModelIndex newindex, QModelIndex oldindex);
    void activateChannel(QModelIndex index);
    void showSelectedPlots();

protected:
    void refreshSetup() override;
    void refreshRecord() override;

private:
    void setupTree();
    void sizeColumns();
    void fitNames();
    void takeWidths();
    void makeActions();
    QAction *addTreeAction(const QString &icon, const QString &text, void (ElectrometersView::*slot)());

    ElectrometersModel *m_model;
    QTreeView *m_treeView;
    bool m_hasOwnWidths = false; ///< the user's, which names don't change any more
    bool m_isFitting = false;
};

} // namespace RecordViews
