#pragma once

#include <QString>

namespace Tsb {

/// A name out of the data as the text of a tool tip, or as the informative text of a message box. It is shown letter by
/// letter: text that looks like markup is escaped. Lines stay lines.
QString plainToolTip(const QString &text);

} // namespace Tsb
