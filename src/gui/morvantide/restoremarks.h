#pragma once

#include <QStringList>

class QSettings;

/// The layouts that are being restored just now, noted in the settings: one that is still there at the next start has
/// brought the program down. The settings outlive it.
class RestoreMarks {
public:
    /// Finds what an earlier run left.
    explicit RestoreMarks(QSettings &settings);

    bool hasCrashed(const QString &path) const { return m_crashed.contains(path); }
    /// Notes a layout on the disk, before anything of it is applied.
    void begin(const QString &path);
    /// All that began came to its end.
    void finish();
    /// The layout is another one now.
    void forget(const QString &path);

private:
    void write();

    QSettings &m_settings;
    QStringList m_crashed;
    QStringList m_begun;
};
