#pragma once

#include <QString>

/// One line on standard error that tells how far the work is, when that is a terminal; otherwise nothing.
namespace Batch::ProgressLine {

void show(const QString &text);
void clear();

} // namespace Batch::ProgressLine
