#include "gui/frame/dockstate.h"

#include "gui/frame/docklayout.h"
#include "log/logger.h"
#include "windowsetup/sealedstate.h"
#include "windowsetup/setupkeys.h"
#include "windowsetup/windowstate.h"

#include <QApplication>
#include <QDockWidget>
#include <QLayout>
#include <QMainWindow>
#include <QMouseEvent>
#include <QToolBar>

namespace {

constexpr int stateVersion = 2;

template<class Widget>
void appendNames(QStringList &names, const QMainWindow &window)
{
    for (const auto *child : window.findChildren<Widget *>(QString(), Qt::FindDirectChildrenOnly))
        names.append(child->objectName());
}

QStringList namesOfParts(const QMainWindow &window)
{
    QStringList names;
    appendNames<QDockWidget>(names, window);
    appendNames<QToolBar>(names, window);
    return names;
}

/// Restores while nothing lays out the window. The toolkit shows the tab bars of docks one by one, and each lays out a
/// window that has changed, by which the very set of bars that it goes through is replaced.
bool restoreWithoutLayout(QMainWindow &window, const QByteArray &bytes)
{
    QLayout *const layout = window.layout();
    if (!window.isVisible()) // then it shows none
        return window.restoreState(bytes, stateVersion);
    layout->setEnabled(false);
    const bool isRestored = window.restoreState(bytes, stateVersion);
    layout->setEnabled(true);
    layout->activate();
    return isRestored;
}

} // namespace

void endDrags(QMainWindow &window)
{
    const auto letGo = [](QWidget *part) {
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(part, &release);
    };
    for (QDockWidget *dock : window.findChildren<QDockWidget *>())
        letGo(dock);
    for (QToolBar *bar : window.findChildren<QToolBar *>())
        letGo(bar);
}

void storeDockState(QVariantMap &map, const QMainWindow &window)
{
    WindowSetup::seal(map, WindowSetup::Keys::state, window.saveState(stateVersion));
}

QString restoreDockState(QMainWindow &window, const QVariantMap &map)
{
    const WindowSetup::State state = WindowSetup::unseal(map, WindowSetup::Keys::state);
    if (!state.complaint.isNull())
        return state.complaint;
    const bool isSound = state.isSealed
                             ? WindowSetup::isSoundWindowState(state.bytes, stateVersion)
                             : WindowSetup::isSoundWindowState(state.bytes, stateVersion, namesOfParts(window));
    if (!state.bytes.isEmpty() && !isSound)
        return QStringLiteral("\"%1\" is no arrangement of this window's docks").arg(WindowSetup::Keys::state);
    endDrags(window);
    if (state.bytes.isEmpty() || !restoreWithoutLayout(window, state.bytes))
        Log::Logger(QStringLiteral("gui")).log(Log::Debug, QStringLiteral("Failed to restore window state. "));
    setDockCorners(window); // the toolkit stores them too
    setStoredCentre(window, WindowSetup::centreOfWindowState(state.bytes, stateVersion));
    leaveRoomForCentre(window);
    return {};
}
