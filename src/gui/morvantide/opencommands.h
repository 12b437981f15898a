#pragma once

#include "gui/morvantide/filechoices.h"

#include <QObject>
#include <QUrl>

class EmptyWindow;
class QAction;
class QMainWindow;
class QMenu;
class QSettings;

/// The ways to data: the commands of the menu, the recent folders, what is dropped on the window, and what the empty
/// window offers. All of them ask the user, or have been told before, and end with chosen(). Main thread only.
class OpenCommands : public QObject {
    Q_OBJECT
public:
    explicit OpenCommands(QMainWindow *window);

    QAction *folderAction() const { return m_folder; }
    QAction *filesAction() const { return m_files; }
    QMenu *recentMenu() const { return m_recent; }
    /// Lies upon the central widget as long as no data are open. To be called once that stands.
    void makeEmptyWindow();
    /// The last choices are kept there. The settings outlive this.
    void setSettings(QSettings *settings);

    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    /// Asks for a folder, starting from that choice if it isn't empty, else from the last one.
    void askForFolder(const QVariantMap &firstChoice);
    void askForFiles();
    /// Opens what was chosen before, or asks where not enough of it is known.
    void open(const QVariantMap &choice);
    /// Whether data are open.
    void setOpen(bool on);

Q_SIGNALS:
    void chosen(const DataRequest &request);

private:
    FileChoices choices() const;
    QVariantMap choiceOf(const QList<QUrl> &urls) const;
    void fillRecent();

    QMainWindow *m_window;
    QSettings *m_settings = nullptr;
    EmptyWindow *m_empty = nullptr;
    QAction *m_folder;
    QAction *m_files;
    QMenu *m_recent;
};
