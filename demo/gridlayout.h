#pragma once

#include <QString>

namespace Demo {

/// Writes the layouts of the variable grid for the campaign's variables beside its day files. False if it can't.
bool writeGridLayouts(const QString &folder);

} // namespace Demo
