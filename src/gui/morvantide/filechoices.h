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
    QVariantMap choice;    ///< of the dialog, by which the files were found; empty for files picked by hand

    /// The same once more: with the files that the choice finds now.
    DataRequest again() const;
    /// The paths of the files that a read of it would take now. Logs nothing; any thread.
    QStringList pathsNow() const;
};

/// Asks the user for files and folders, and keeps the last choice in the settings. Both outlive it.
class FileChoices {
    Q_DECLARE_TR_FUNCTIONS(FileChoices)
public:
    FileChoices(QSettings *settings, QWidget *window) : m_settings(settings), m_window(window) {}

    /// Starts from that choice if it isn't empty, else from the last one. Nothing if the dialog isn't accepted.
    std::optional<DataRequest> askForFolder(const QVariantMap &firstChoice);
    std::optional<DataRequest> askForFiles();
    /// The data of a choice of that dialog, which becomes the last one.
    DataRequest take(const QVariantMap &choice);
    /// Empty if none was chosen. The first time the dialog begins in that folder.
    QStringList askForInverters(const QString &firstFolder);
    /// Where to save a layout, and which one to restore; empty if none was chosen. The first time the dialog begins in
    /// that folder.
    QString askForLayoutCopy(const QString &firstFolder);
    QString askForLayout(const QString &firstFolder);

private:
    QString askForLayout(const QString &title, const QString &firstFolder, bool toSave);

    QSettings *m_settings;
    QWidget *m_window;
};
