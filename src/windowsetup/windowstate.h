#pragma once

#include <QByteArray>
#include <QSize>
#include <QStringList>

namespace WindowSetup {

/// Whether QMainWindow::restoreState() may be handed these bytes: they are a whole state of that version, no dock or
/// toolbar stands in it twice, and all places and sizes are such as a window can have. Where `knownNames` isn't empty,
/// all docks and toolbars must be among them, for bytes that nothing vouches for; others are harmless in bytes that are
/// as they were written.
bool isSoundWindowState(const QByteArray &state, int version, const QStringList &knownNames = {});

/// The size that the centre of the window had when that sound state was stored.
QSize centreOfWindowState(const QByteArray &state, int version);

} // namespace WindowSetup
