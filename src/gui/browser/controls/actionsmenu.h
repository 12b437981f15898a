#pragma once

class QWidget;

namespace Tsb {

/// Gives the widget a context menu of its actions, which goes with the widget if that is deleted meanwhile: the
/// toolkit's own, of Qt::ActionsContextMenu, would be deleted twice then.
void offerActionsMenu(QWidget *widget);

} // namespace Tsb
