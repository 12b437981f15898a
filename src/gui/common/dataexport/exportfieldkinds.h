#pragma once

#include "gui/common/uiinfo.h"

#include <QString>

#include <memory>
#include <vector>

class ExportFieldPage;
class QWidget;

/// A type of a setup's fields that a form can edit.
struct ExportFieldKind {
    QString type;    ///< the word in a setup
    QString command; ///< adds such a field
    ExportFieldPage *(*make)(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent);
};

/// All of them, in the order of the menu.
const std::vector<ExportFieldKind> &exportFieldKinds();
/// Null for an unknown type.
const ExportFieldKind *exportFieldKind(const QString &type);
