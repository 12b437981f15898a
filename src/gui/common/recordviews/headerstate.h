#pragma once

#include <QString>

class QHeaderView;

namespace RecordViews {

/// The widths and the order of a header's columns as hexadecimal text, the toolkit's own form.
QString headerStateText(const QHeaderView &header);
/// Brings back widths and order. A text that isn't sound, or is of another number of columns, changes nothing: the
/// toolkit itself would run out of its arrays on such a one.
bool restoreHeaderState(QHeaderView &header, const QString &text);

} // namespace RecordViews
