#include "datafiles/reading/folderwatch.h"

#include <QFileSystemWatcher>

QFileSystemWatcher &FolderWatch::watcher()
{
    if (!m_watcher) {
        m_watcher = new QFileSystemWatcher(this);
        m_watcher->addPath(m_folder);
        connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &FolderWatch::changed);
        connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &FolderWatch::changed);
    }
    return *m_watcher;
}

void FolderWatch::watch(const QString &path)
{
    if (!m_files.isEmpty() && m_files.last() == path)
        return;
    if (!m_files.removeOne(path))
        watcher().addPath(path);
    m_files.append(path);
    if (m_files.size() > mostFiles)
        watcher().removePath(m_files.takeFirst());
}

void FolderWatch::renew()
{
    watcher().addPath(m_folder);
    for (const QString &path : qAsConst(m_files))
        watcher().addPath(path);
}
