#pragma once

class QWidget;

namespace RecordViews {

/// Whether that many plots are to be added at once; the user is asked where they are more than fit into a glance.
bool confirmPlots(QWidget *parent, int count);

} // namespace RecordViews
