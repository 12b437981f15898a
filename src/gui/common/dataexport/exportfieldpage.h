#pragma once

#include "gui/common/dataexport/exportfieldform.h"

#include <QWidget>

/// The form of one entry of a setup's list "fields".
class ExportFieldPage : public QWidget, public ExportFieldForm {
    Q_OBJECT
public:
    explicit ExportFieldPage(QWidget *parent = nullptr) : QWidget(parent) {}

    /// How the list of fields calls it.
    virtual QString treeItemText() const = 0;

Q_SIGNALS:
    void treeItemTextChanged();
    /// The settings are others.
    void changed();
};
