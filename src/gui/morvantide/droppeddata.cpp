#include "gui/morvantide/droppeddata.h"

#include "datafiles/reading/datafinder.h"
#include "log/logger.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegExp>

#include <algorithm>

namespace {

const QString folderName = QStringLiteral("folderName");
const QString variantKey = QStringLiteral("variant");
const QString legacyKey = QStringLiteral("legacyFiles");

bool isFoundBy(const QVariantMap &choice, const QString &file)
{
    return findDataFiles(choice).contains(file);
}

/// The choice in the folder of the file that finds it; one of the folder alone for other files.
QVariantMap choiceOfFile(const QFileInfo &file)
{
    const QString folder = file.absolutePath();
    QStringList variants{QString()};
    for (const QString &variant : folderContents(folder).variants)
        variants.prepend(QRegExp::escape(variant)); // the empty one finds spectra of all
    for (const QString &variant : qAsConst(variants)) {
        const QVariantMap choice{{folderName, folder}, {variantKey, variant}, {legacyKey, false}};
        if (isFoundBy(choice, file.fileName()))
            return choice;
    }
    const QVariantMap legacy{{folderName, folder}, {legacyKey, true}};
    return isFoundBy(legacy, file.fileName()) ? legacy : QVariantMap{{folderName, folder}};
}

void limitTo(const QVector<QDate> &days, QVariantMap &choice)
{
    if (days.isEmpty())
        return;
    const auto [first, last] = std::minmax_element(days.begin(), days.end());
    choice[QStringLiteral("limitBegin")] = choice[QStringLiteral("limitEnd")] = true;
    choice[QStringLiteral("beginTime")] = first->startOfDay();
    choice[QStringLiteral("endTime")] = last->startOfDay();
}

} // namespace

QVariantMap choiceOfFolder(const QString &folder)
{
    QVariantMap choice{{folderName, folder}};
    const FolderContents contents = folderContents(folder);
    if (!contents.variants.isEmpty() && !contents.variants.contains(QStringLiteral("block")))
        choice.insert(variantKey, contents.variants.first());
    else if (contents.variants.isEmpty() && contents.unmarkedFiles > 0)
        choice.insert(variantKey, QString());
    choice.insert(legacyKey, contents.variants.isEmpty() && contents.unmarkedFiles == 0 && contents.legacyFiles > 0);
    return choice;
}

QVariantMap choiceOfDropped(const QList<QUrl> &urls)
{
    const Log::Silence silence; // nothing is read yet
    QVector<QFileInfo> files;
    for (const QUrl &url : urls) {
        if (!url.isLocalFile())
            continue;
        const QFileInfo file(url.toLocalFile());
        if (file.isDir())
            return choiceOfFolder(file.absoluteFilePath());
        if (file.exists())
            files.append(file);
    }
    QVariantMap choice;
    QVector<QDate> days;
    for (const QFileInfo &file : qAsConst(files)) {
        if (choice.isEmpty() || !choice.contains(legacyKey))
            choice = choiceOfFile(file);
        const QDate day = dayOfDataFile(file.fileName());
        if (choice.contains(legacyKey) && day.isValid())
            days.append(day);
    }
    limitTo(days, choice);
    return choice;
}
