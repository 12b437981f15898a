#include "gui/morvantide/opencommands.h"

#include "gui/common/iconhelp.h"
#include "gui/morvantide/droppeddata.h"
#include "gui/morvantide/emptywindow.h"
#include "gui/morvantide/recentfolders.h"

#include <QAction>
#include <QDropEvent>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QSettings>

#include <algorithm>

namespace {

constexpr int widestEntry = 80; // average characters

bool holdsFiles(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
}

} // namespace

OpenCommands::OpenCommands(QMainWindow *window)
    : QObject(window), m_window(window),
      m_folder(new QAction(namedIcon(QStringLiteral("open-folder")), tr("Open data folder..."), this)),
      m_files(new QAction(namedIcon(QStringLiteral("open-many-files")), tr("Manually select data files..."), this)),
      m_recent(new QMenu(tr("Recent folders"), window))
{
    m_folder->setIconText(tr("Open folder"));
    m_folder->setShortcut(Qt::CTRL + Qt::Key_O);
    m_files->setIconText(tr("Manually select files"));
    m_files->setShortcut(Qt::CTRL + Qt::SHIFT + Qt::Key_O);
    connect(m_folder, &QAction::triggered, this, [this] { askForFolder({}); });
    connect(m_files, &QAction::triggered, this, &OpenCommands::askForFiles);
    connect(m_recent, &QMenu::aboutToShow, this, &OpenCommands::fillRecent);
    m_window->setAcceptDrops(true);
    m_window->installEventFilter(this);
}

void OpenCommands::makeEmptyWindow()
{
    m_empty = new EmptyWindow(m_window->centralWidget(), {m_folder, m_files}, m_window);
    connect(m_empty, &EmptyWindow::offered, this, &OpenCommands::askForFolder);
    connect(m_empty, &EmptyWindow::chosen, this, &OpenCommands::open);
}

void OpenCommands::setSettings(QSettings *settings)
{
    m_settings = settings;
    setOpen(false);
}

void OpenCommands::setOpen(bool on)
{
    if (!on)
        m_empty->setRecent(RecentFolders(*m_settings).choices());
    m_empty->setShown(!on);
}

// ---- asking

FileChoices OpenCommands::choices() const
{
    return {m_settings, m_window};
}

void OpenCommands::askForFolder(const QVariantMap &firstChoice)
{
    if (const auto request = choices().askForFolder(firstChoice))
        Q_EMIT chosen(*request);
}

void OpenCommands::askForFiles()
{
    if (const auto request = choices().askForFiles())
        Q_EMIT chosen(*request);
}

void OpenCommands::open(const QVariantMap &choice)
{
    const bool isWhole = choice.contains(QStringLiteral("variant"));
    if (isWhole && QFileInfo(choice.value(QStringLiteral("folderName")).toString()).isDir())
        Q_EMIT chosen(choices().take(choice));
    else
        askForFolder(choice);
}

// ---- recent folders

void OpenCommands::fillRecent()
{
    m_recent->clear();
    const QVector<QVariantMap> recent = RecentFolders(*m_settings).choices();
    const QFontMetrics metrics = m_recent->fontMetrics();
    for (int i = 0; i < recent.size(); ++i) {
        const QString text =
            metrics.elidedText(recentFolderText(recent[i]), Qt::ElideMiddle, widestEntry * metrics.averageCharWidth());
        QString entry = QStringLiteral("%1  %2").arg(QString::number(i + 1), text);
        QAction *const action = m_recent->addAction(entry.replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, this, [this, choice = recent[i]] { open(choice); });
    }
    if (recent.isEmpty()) {
        m_recent->addAction(tr("None"))->setEnabled(false);
        return;
    }
    m_recent->addSeparator();
    connect(m_recent->addAction(tr("Forget them")), &QAction::triggered, this, [this] {
        RecentFolders(*m_settings).clear();
        m_empty->setRecent({});
    });
}

// ---- drops

QVariantMap OpenCommands::choiceOf(const QList<QUrl> &urls) const
{
    const QVariantMap choice = choiceOfDropped(urls);
    if (choice.contains(QStringLiteral("limitBegin")))
        return choice;
    for (const QVariantMap &known : RecentFolders(*m_settings).choices()) {
        if (known.value(QStringLiteral("folderName")) == choice.value(QStringLiteral("folderName")) &&
            known.contains(QStringLiteral("variant")))
            return known;
    }
    return choice;
}

bool OpenCommands::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop)
        return false;
    auto *const drop = static_cast<QDropEvent *>(event); // which an entering one is, too
    if (!holdsFiles(*drop->mimeData()))
        return false;
    drop->setDropAction(Qt::CopyAction); // nothing is moved from where it is
    drop->accept();
    if (event->type() == QEvent::Drop) {
        // Later: the program that the files come from waits for the end of this.
        QMetaObject::invokeMethod(
            this, [this, urls = drop->mimeData()->urls()] { askForFolder(choiceOf(urls)); }, Qt::QueuedConnection);
    }
    return true;
}
