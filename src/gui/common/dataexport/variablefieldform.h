#pragma once

#include "gui/common/dataexport/exportfieldpage.h"
#include "gui/common/uiinfo.h"

#include <memory>

class QLineEdit;
class QListWidget;
class QListWidgetItem;

/// A field of type "variable": diagnostic variables, by name. Names that the present data don't have stay chosen.
class VariableFieldForm : public ExportFieldPage {
    Q_OBJECT
public:
    explicit VariableFieldForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent = nullptr);

    QVariantMap settings() const override;
    void setSettings(const QVariantMap &settings) override;
    QString treeItemText() const override;

private:
    void listVariables();
    void filter(const QString &text);
    void itemChanged(const QListWidgetItem *item);
    void showChecks();

    std::shared_ptr<const UiInfo> m_uiInfo;
    QLineEdit *m_filter;
    QListWidget *m_list;
    QStringList m_names; ///< of the rows
    QStringList m_chosen;
};
