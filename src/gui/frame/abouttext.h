#pragma once

#include <QString>

/// The rich text of the about box: the program's name and description, its build and its platform. The
/// description is rich text itself.
QString aboutText(const QString &name, const QString &description);
