#include "gui/morvantide/userguide.h"

#include "gui/morvantide/guidewindow.h"
#include "gui/morvantide/installedfiles.h"

#include <QAction>
#include <QCoreApplication>
#include <QMessageBox>

UserGuide::UserGuide(QWidget *window)
    : QObject(window), m_window(window), m_action(new QAction(tr("&User guide"), this))
{
    m_action->setShortcut(QKeySequence::HelpContents);
    connect(m_action, &QAction::triggered, this, &UserGuide::show);
}

void UserGuide::show()
{
    const QString page = InstalledFiles::userGuidePage(QCoreApplication::applicationDirPath());
    if (!m_guide && page.isEmpty()) {
        QMessageBox::information(m_window, tr("User guide"), tr("The user guide isn't installed."));
        return;
    }
    if (!m_guide)
        m_guide = new GuideWindow(page, m_window);
    m_guide->show();
    m_guide->raise();
    m_guide->activateWindow();
}
