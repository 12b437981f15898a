#include "gui/common/seencontents.h"

#include <QDockWidget>
#include <QEvent>

SeenContents::SeenContents(QDockWidget *dock, std::function<void()> refresh)
    : QObject(dock), m_dock(dock), m_refresh(std::move(refresh))
{
    dock->installEventFilter(this);
    connect(dock, &QDockWidget::visibilityChanged, this, &SeenContents::mayHaveComeIntoSight);
    connect(dock, &QDockWidget::topLevelChanged, this, &SeenContents::mayHaveComeIntoSight);
}

bool SeenContents::areSeen() const
{
    // Neither isVisible() nor the last visibilityChanged() tells: a dock in a tab behind others is visible, and a
    // floating one was last told to be hidden.
    const QWidget *const contents = m_dock->widget();
    return contents && !contents->visibleRegion().isEmpty();
}

void SeenContents::setStale()
{
    m_areStale = true;
    refreshIfSeen();
}

void SeenContents::refreshNow()
{
    m_areStale = false;
    m_refresh();
}

void SeenContents::refreshIfSeen()
{
    if (m_areStale && areSeen())
        refreshNow();
}

bool SeenContents::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Resize:
    case QEvent::Move:
        mayHaveComeIntoSight();
        break;
    default:
        break;
    }
    return false;
}

void SeenContents::mayHaveComeIntoSight()
{
    // The dock may get its place only after this signal or event: then it is looked at again.
    if (m_areStale)
        QMetaObject::invokeMethod(this, &SeenContents::refreshIfSeen, Qt::QueuedConnection);
    refreshIfSeen();
}
