#pragma once

#include <QString>

/// The rich text of the about box: the program's name and description, what was built when, and what it runs on. The
/// description is rich text itself.
QString aboutText(const QString &name, const QString &description);
