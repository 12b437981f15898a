#include "gui/morvantide/filechoices.h"

#include "datafiles/reading/datafinder.h"
#include "gui/common/filedialog.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/recentfolders.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {

const QString choiceKey = QStringLiteral("datachooser");
const QString pickedPathKey = QStringLiteral("lastpathpickfiles");
const QString layoutPathKey = QStringLiteral("windowsetuppath");
const QString inverterPathKey = QStringLiteral("lastreinvpath");

} // namespace

std::optional<DataRequest> FileChoices::askForFolder(const QVariantMap &firstChoice)
{
    DataChooserDialog dialog(m_window);
    dialog.setOldPaths(RecentFolders(*m_settings).folders());
    dialog.setChoice(firstChoice.isEmpty() ? m_settings->value(choiceKey).toMap() : firstChoice);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return take(dialog.choice());
}

DataRequest FileChoices::take(const QVariantMap &choice)
{
    const QString folder = choice.value(QStringLiteral("folderName")).toString();
    m_settings->setValue(choiceKey, choice);
    if (QFileInfo(folder).isDir())
        RecentFolders(*m_settings).add(choice);
    // Old-style files have no variant, whatever the box says.
    const bool isLegacy = choice.value(QStringLiteral("legacyFiles")).toBool();
    const QString variant = choice.value(QStringLiteral("variant")).toString();
    const QString assumedOpmode = isLegacy ? choice.value(QStringLiteral("assumedOpmode")).toString() : QString();
    return DataRequest{folder, findDataFiles(choice), isLegacy ? QStringLiteral("legacy") : variant, assumedOpmode,
                       choice};
}

DataRequest DataRequest::again() const
{
    DataRequest request = *this;
    if (!choice.isEmpty())
        request.files = findDataFiles(choice);
    return request;
}

QStringList DataRequest::pathsNow() const
{
    const QDir directory(folder);
    QStringList paths;
    for (const QString &name : choice.isEmpty() ? files : listDataFiles(choice)) {
        const QString path = directory.filePath(name);
        if (!choice.isEmpty() || QFileInfo::exists(path))
            paths.append(path);
    }
    return paths;
}

std::optional<DataRequest> FileChoices::askForFiles()
{
    const QVariant lastFolder = m_settings->value(choiceKey).toMap().value(QStringLiteral("folderName"));
    auto *const dialog = new FileDialog(FileDialog::Use::Read, m_window, tr("Select files"),
                                        m_settings->value(pickedPathKey, lastFolder).toString());
    dialog->setFileMode(QFileDialog::ExistingFiles);
    QString folder;
    QObject::connect(dialog, &QFileDialog::accepted, dialog, [&] { folder = dialog->directory().absolutePath(); });
    const QStringList files = FileDialog::ask(dialog);
    if (files.isEmpty())
        return {};
    m_settings->setValue(pickedPathKey, folder);
    return DataRequest{folder, files, {}, {}, {}};
}

QStringList FileChoices::askForInverters(const QString &firstFolder)
{
    auto *const dialog = new FileDialog(FileDialog::Use::Read, m_window, tr("Open inverters"),
                                        m_settings->value(inverterPathKey, firstFolder).toString(),
                                        tr("Inverters (*.inverter *.sinv *.sinp *.invmap *.zip);;All files (*)"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    const QStringList files = FileDialog::ask(dialog);
    if (!files.isEmpty())
        m_settings->setValue(inverterPathKey, QFileInfo(files.first()).absolutePath());
    return files;
}

QString FileChoices::askForLayoutCopy(const QString &firstFolder)
{
    return askForLayout(tr("Backup window setup"), firstFolder, true);
}

QString FileChoices::askForLayout(const QString &firstFolder)
{
    return askForLayout(tr("Restore window setup"), firstFolder, false);
}

QString FileChoices::askForLayout(const QString &title, const QString &firstFolder, bool toSave)
{
    auto *const dialog = new FileDialog(toSave ? FileDialog::Use::Write : FileDialog::Use::Read, m_window, title,
                                        m_settings->value(layoutPathKey, firstFolder).toString(),
                                        tr("Window setup file (*.windowsetup)\nAll files (*)"));
    dialog->setAcceptMode(toSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(toSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setDefaultSuffix(QStringLiteral("windowsetup"));
    const QString path = FileDialog::ask(dialog).value(0);
    if (path.isEmpty())
        return {};
    m_settings->setValue(layoutPathKey, QFileInfo(path).absolutePath());
    return path;
}
