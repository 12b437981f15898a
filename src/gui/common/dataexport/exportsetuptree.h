#pragma once

#include "gui/common/uiinfo.h"

#include <QVariantMap>
#include <QWidget>

#include <memory>
#include <vector>

class ExportFieldPage;
class GeneralExportSettingsForm;
class QAction;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;
struct ExportFieldKind;

/// A setup as a tree of pages: the general settings, and the fields, which can be added, moved and removed. Owns the
/// forms.
class ExportSetupTree : public QWidget {
    Q_OBJECT
public:
    /// Of a setup that is loaded; further ones are left out.
    static constexpr std::size_t mostFields = 200;

    explicit ExportSetupTree(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent = nullptr);

    GeneralExportSettingsForm *general() const { return m_general; }
    QVariantList fields() const;
    /// Puts others in the place of all. Fields of unknown types are left out.
    void setFields(const QVariantList &fields);
    /// Behind the others, and shows the first of them.
    void addFields(const QVariantList &fields);
    void showGeneral();
    /// In which the forms needn't be scrolled from side to side.
    int wantedWidth() const;

Q_SIGNALS:
    void changed();
    void requestPlotFields();
    /// Its widgets are the last in the order of Tab.
    void pageAdded();

private:
    struct Field {
        QTreeWidgetItem *item;
        ExportFieldPage *form;
        QWidget *page; ///< in the stack
    };

    QWidget *makeTreeSide();
    void makeActions();
    QWidget *addPage(QWidget *form);
    void append(const QVariantList &fields);
    void addField(const ExportFieldKind &kind, const QVariantMap &map);
    void updateFieldItemText(const ExportFieldPage *form);
    void showCurrent();
    int currentField() const;
    void moveCurrent(int steps);
    void removeCurrent();

    std::shared_ptr<const UiInfo> m_uiInfo;
    QTreeWidget *m_tree;
    QStackedWidget *m_stack;
    GeneralExportSettingsForm *m_general;
    QWidget *m_generalPage;
    QWidget *m_fieldsPage;
    QTreeWidgetItem *m_generalItem;
    QTreeWidgetItem *m_fieldsItem;
    std::vector<Field> m_fields; ///< in the order of the items
    QList<QAction *> m_addActions;
    QAction *m_up;
    QAction *m_down;
    QAction *m_remove;
};
