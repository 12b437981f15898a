#pragma once

#include <QVariantMap>

class QHeaderView;

namespace RecordViews {

/// Puts the widths and the order of a header's columns into a view's setup, in the toolkit's own form and sealed.
void storeHeaderState(QVariantMap &setup, const QHeaderView &header);
/// Brings back widths and order. Without a state, or with one that isn't sound or is of another number of columns,
/// nothing changes: the toolkit itself would run out of its arrays on such a one.
bool restoreHeaderState(QHeaderView &header, const QVariantMap &setup);

} // namespace RecordViews
