#pragma once

#include <QObject>
#include <QStringList>

class QFileSystemWatcher;

/// Has the system tell of changes in a folder. Used on one thread with an event loop, which isn't the main one: to
/// watch a file waits for its file system, for ever where a server is gone. Silent where the system can't tell.
class FolderWatch : public QObject {
    Q_OBJECT
public:
    static constexpr int mostFiles = 32;

    explicit FolderWatch(const QString &folder) : m_folder(folder) {}

    /// A file that is likely to grow: the folder's own notifications tell of new files alone. Of more than
    /// mostFiles those that were named last are watched.
    void watch(const QString &path);
    /// Watches all again, which had gone.
    void renew();

Q_SIGNALS:
    void changed();

private:
    QFileSystemWatcher &watcher();

    const QString m_folder;
    QFileSystemWatcher *m_watcher = nullptr; ///< a child, made on the thread that uses it
    QStringList m_files;                     ///< those that were named last at the end
};
