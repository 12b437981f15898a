#include "gui/morvantide/recentfolders.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QSettings>

namespace {

const QString foldersKey = QStringLiteral("datachooserOldPaths");
const QString choicesKey = QStringLiteral("datachooserOldChoices");
const QString folderName = QStringLiteral("folderName");

struct Words {
    Q_DECLARE_TR_FUNCTIONS(RecentFolders)
};

QString spanText(const QVariantMap &choice)
{
    const auto limit = [&choice](const char *isSet, const char *time) {
        return choice.value(QString::fromLatin1(isSet)).toBool()
                   ? choice.value(QString::fromLatin1(time)).toDateTime().toString(QStringLiteral("yyyy-MM-dd"))
                   : QString();
    };
    const QString begin = limit("limitBegin", "beginTime"), end = limit("limitEnd", "endTime");
    if (begin.isEmpty())
        return end.isEmpty() ? QString() : Words::tr("until %1").arg(end);
    return end.isEmpty() ? Words::tr("from %1").arg(begin) : Words::tr("%1 to %2").arg(begin, end);
}

} // namespace

QStringList recentFoldersWith(QStringList folders, const QString &opened)
{
    constexpr int most = 20;
    if (folders.contains(opened)) {
        folders.removeAll(opened);
    } else {
        while (folders.size() >= most)
            folders.removeLast();
    }
    folders.prepend(opened);
    return folders;
}

QStringList RecentFolders::folders() const
{
    return m_settings.value(foldersKey).toStringList();
}

QVector<QVariantMap> RecentFolders::choices() const
{
    const QVariantList kept = m_settings.value(choicesKey).toList();
    QVector<QVariantMap> choices;
    for (const QString &folder : folders()) {
        QVariantMap choice{{folderName, folder}};
        for (const QVariant &one : kept) {
            if (one.toMap().value(folderName) == folder)
                choice = one.toMap();
        }
        choices.append(choice);
    }
    return choices;
}

void RecentFolders::add(const QVariantMap &choice)
{
    const QString folder = choice.value(folderName).toString();
    m_settings.setValue(foldersKey, recentFoldersWith(folders(), folder));
    QVariantList kept;
    for (const QVariantMap &one : choices())
        kept.append(one.value(folderName) == folder ? choice : one);
    m_settings.setValue(choicesKey, kept);
}

void RecentFolders::clear()
{
    m_settings.remove(foldersKey);
    m_settings.remove(choicesKey);
}

QString recentFolderText(const QVariantMap &choice)
{
    QStringList parts;
    if (choice.value(QStringLiteral("legacyFiles")).toBool())
        parts << Words::tr("old-style files");
    else
        parts << choice.value(QStringLiteral("variant")).toString();
    parts << spanText(choice);
    parts.removeAll(QString());
    const QString folder = QDir::toNativeSeparators(choice.value(folderName).toString());
    return parts.isEmpty() ? folder : QStringLiteral("%1 (%2)").arg(folder, parts.join(QStringLiteral(", ")));
}
