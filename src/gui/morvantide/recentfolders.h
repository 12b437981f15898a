#pragma once

#include <QStringList>
#include <QVariantMap>
#include <QVector>

class QSettings;

/// The list of recent folders, newest first, once the folder is opened: it stands first, once; a newcomer to a full
/// list of 20 pushes out the oldest.
QStringList recentFoldersWith(QStringList folders, const QString &opened);

/// The recent folders in the settings, each with what was chosen along with it. The settings outlive it.
class RecentFolders {
public:
    explicit RecentFolders(QSettings &settings) : m_settings(settings) {}

    /// Newest first.
    QStringList folders() const;
    /// The choices of the data dialog, newest first. One that an older version has kept has nothing but "folderName".
    QVector<QVariantMap> choices() const;
    void add(const QVariantMap &choice);
    void clear();

private:
    QSettings &m_settings;
};

/// A choice for the user to recognise: its folder, and behind it its variant and its span.
QString recentFolderText(const QVariantMap &choice);
