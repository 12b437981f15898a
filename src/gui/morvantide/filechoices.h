#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QVariantMap>

#include <optional>

class QSettings;
class QWidget;

/// Data to open.
struct DataRequest {
    QString folder;
    QStringList files;     ///< names in the folder, or whole paths
    QString variant;       ///< averaging variant; empty for files picked by hand
    QString assumedOpmode; ///< of old-style records whose files tell none; empty: unknown
};

/// Asks the user for files and folders, and keeps the last choice in the settings. Both outlive it.
class FileChoices {
    Q_DECLARE_TR_FUNCTIONS(FileChoices)
public:
    FileChoices(QSettings *settings, QWidget *window) : m_settings(settings), m_window(window) {}

    /// Starts from that choice if it isn't empty, else from the last one. Nothing if the dialog isn't accepted.
    std::optional<DataRequest> askForFolder(const QVariantMap &firstChoice);
    std::optional<DataRequest> askForFiles();
    /// Empty if none was chosen.
    QStringList askForInverters();
    /// Where to save a layout, and which one to restore; empty if none was chosen. The first time the dialog begins in
    /// that folder.
    QString askForLayoutCopy(const QString &firstFolder);
    QString askForLayout(const QString &firstFolder);

private:
    QString askForLayout(const QString &title, const QString &firstFolder, bool toSave);

    QSettings *m_settings;
    QWidget *m_window;
};
