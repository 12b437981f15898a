#include "gui/frame/docklayout.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QStyle>
#include <QToolBar>
#include <QVariant>

#include <algorithm>

namespace {

enum Relation { Alone, Below, TabOf };

/// Where a dock goes: into an area, alone in it or beside another dock that came before.
struct Place {
    const char *name;
    Qt::DockWidgetArea area;
    Relation relation;
    const char *other;
};

// What stands below another dock goes before that one's tabs: a dock that is split off one in tabs would be one more
// tab.
const Place places[] = {
    {"currentrecordform", Qt::LeftDockWidgetArea, Alone, nullptr},
    {"spectraView", Qt::LeftDockWidgetArea, Below, "currentrecordform"},
    {"electrometersPlotView", Qt::LeftDockWidgetArea, TabOf, "spectraView"},
    {"electrometersView", Qt::RightDockWidgetArea, Alone, nullptr},
    {"diagnosticStatus", Qt::RightDockWidgetArea, Below, "electrometersView"},
    {"diagnosticsView", Qt::RightDockWidgetArea, TabOf, "electrometersView"},
    {"varGridView", Qt::RightDockWidgetArea, TabOf, "electrometersView"},
    {"commentList", Qt::RightDockWidgetArea, TabOf, "diagnosticStatus"},
    {"logDock", Qt::BottomDockWidgetArea, Alone, nullptr},
    {"reportView", Qt::BottomDockWidgetArea, TabOf, "logDock"},
    {"measuringDock", Qt::BottomDockWidgetArea, TabOf, "logDock"},
};

constexpr int formCharacters = 40, tableCharacters = 50;
constexpr int formLines = 16, logLines = 7;
constexpr char storedCentre[] = "storedCentre"; // a property of the window

QDockWidget *dockOf(const QMainWindow &window, const char *name)
{
    return name ? window.findChild<QDockWidget *>(QString::fromLatin1(name), Qt::FindDirectChildrenOnly) : nullptr;
}

void place(QMainWindow &window, QDockWidget *dock, const Place &place)
{
    QDockWidget *const other = dockOf(window, place.other);
    window.addDockWidget(place.area, dock);
    if (other && place.relation == Below)
        window.splitDockWidget(other, dock, Qt::Vertical);
    else if (other && place.relation == TabOf)
        window.tabifyDockWidget(other, dock);
}

} // namespace

void arrangeDocks(QMainWindow &window)
{
    QList<QDockWidget *> unknown = window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const bool inTabs : {false, true}) { // what is split from a dock in a tab would become another tab
        for (const Place &each : places) {
            QDockWidget *const dock = dockOf(window, each.name);
            if (!dock || (each.relation == TabOf) != inTabs)
                continue;
            place(window, dock, each);
            unknown.removeOne(dock);
        }
    }
    for (QDockWidget *dock : qAsConst(unknown))
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
    for (const Place &each : places) { // of docks in tabs the first is seen
        if (QDockWidget *dock = dockOf(window, each.name); dock && each.relation != TabOf)
            dock->raise();
    }
}

void setDockCorners(QMainWindow &window)
{
    window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
}

void resetDocks(QMainWindow &window)
{
    setDockCorners(window);
    for (QToolBar *bar : window.findChildren<QToolBar *>(QString(), Qt::FindDirectChildrenOnly)) {
        window.addToolBar(Qt::TopToolBarArea, bar);
        bar->show();
    }
    for (QDockWidget *dock : window.findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        dock->setFloating(false);
        dock->show();
    }
    arrangeDocks(window);
    sizeDocks(window);
}

void sizeDocks(QMainWindow &window)
{
    const QFontMetrics metrics = window.fontMetrics();
    const auto wanted = [&window, &metrics](int characters) {
        return qMax(metrics.averageCharWidth() * characters, window.width() / 6);
    };
    // Both sides together leave half of the width to the centre.
    const int free = window.width() / 2 - 2 * window.style()->pixelMetric(QStyle::PM_DockWidgetSeparatorExtent);
    const QDockWidget *const form = dockOf(window, "currentrecordform");
    const int left = qMax(qMin(wanted(formCharacters), free / 2), form ? form->minimumSizeHint().width() : 0);
    const auto resize = [&window](const char *name, int size, Qt::Orientation orientation) {
        if (QDockWidget *dock = dockOf(window, name))
            window.resizeDocks({dock}, {qMax(size, 1)}, orientation); // a very narrow window has nothing left for some
    };
    resize("currentrecordform", left, Qt::Horizontal);
    resize("electrometersView", qMin(wanted(tableCharacters), free - left), Qt::Horizontal);
    resize("logDock", metrics.lineSpacing() * logLines, Qt::Vertical);
    // In a low window, or with large letters, the plot below it needs the height more.
    resize("currentrecordform", qMin(metrics.lineSpacing() * formLines, window.height() / 3), Qt::Vertical);
}

void setStoredCentre(QMainWindow &window, QSize size)
{
    window.setProperty(storedCentre, size);
}

void leaveRoomForCentre(QMainWindow &window)
{
    const QWidget *const centre = window.centralWidget();
    const QSize stored = window.property(storedCentre).toSize();
    if (!centre || !centre->isVisible() || !stored.isValid())
        return;
    const bool isNarrow = centre->width() < std::min(stored.width(), window.width() / 4);
    const bool isLow = centre->height() < std::min(stored.height(), window.height() / 4);
    if (isNarrow || isLow)
        sizeDocks(window);
}
