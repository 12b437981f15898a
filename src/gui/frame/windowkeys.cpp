#include "gui/frame/windowkeys.h"

#include "gui/frame/keylist.h"
#include "gui/frame/menumnemonics.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize pageSize(620, 640);

QLineEdit *filterOf(const QDockWidget &dock)
{
    return dock.findChild<QLineEdit *>(QStringLiteral("filterLine"));
}

} // namespace

WindowKeys::WindowKeys(QMainWindow *window)
    : QObject(window), m_window(window), m_fullScreen(new QAction(tr("Full screen"), this)),
      m_filter(new QAction(tr("Go to filter"), this)), m_page(new QAction(tr("Keys and gestures"), this))
{
    m_fullScreen->setCheckable(true);
    m_fullScreen->setShortcut(Qt::Key_F11);
    m_filter->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_F));
    m_filter->setStatusTip(tr("To the filter line of the dock at hand"));
    connect(m_fullScreen, &QAction::triggered, m_window,
            [this](bool on) { m_window->setWindowState(m_window->windowState().setFlag(Qt::WindowFullScreen, on)); });
    connect(m_filter, &QAction::triggered, this, &WindowKeys::goToFilter);
    connect(m_page, &QAction::triggered, this, &WindowKeys::showPage);
    m_window->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::WindowStateChange)
        m_fullScreen->setChecked(m_window->isFullScreen()); // the window manager may have done it
    return false;
}

void WindowKeys::nameKeysInToolTips()
{
    for (QAction *action : m_window->findChildren<QAction *>()) {
        if (action->icon().isNull() || action->shortcut().isEmpty())
            continue;
        const QString key = action->shortcut().toString(QKeySequence::NativeText);
        if (!action->toolTip().contains(key))
            action->setToolTip(tr("%1 (%2)", "command and its key").arg(action->toolTip(), key));
    }
}

void WindowKeys::goToFilter()
{
    QList<QDockWidget *> docks = m_window->findChildren<QDockWidget *>();
    docks.erase(std::remove_if(docks.begin(), docks.end(), [](QDockWidget *dock) { return !filterOf(*dock); }),
                docks.end());
    if (docks.isEmpty())
        return;
    const QWidget *const focused = QApplication::focusWidget();
    const auto rank = [focused](const QDockWidget *dock) {
        return focused && dock->isAncestorOf(focused) ? 0
               : !dock->visibleRegion().isEmpty()     ? 1
               : !dock->isHidden()                    ? 2
                                                      : 3;
    };
    QDockWidget *const dock = *std::min_element(docks.begin(), docks.end(),
                                                [&rank](const auto *a, const auto *b) { return rank(a) < rank(b); });
    dock->show();
    dock->raise();
    filterOf(*dock)->setFocus(Qt::ShortcutFocusReason);
    filterOf(*dock)->selectAll();
}

void WindowKeys::showPage()
{
    auto *const dialog = new QDialog(m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(withoutMnemonic(m_page->text()));
    auto *const page = new QTextBrowser(dialog);
    page->setAccessibleName(dialog->windowTitle());
    page->setHtml(keyPage(keysOfCommands(*m_window) + gestures()));
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto *const layout = new QVBoxLayout(dialog);
    layout->addWidget(page);
    layout->addWidget(buttons);
    dialog->resize(pageSize.boundedTo(m_window->size()));
    dialog->show();
}
