#include "datafiles/reading/datafinder.h"

#include "log/logger.h"
#include "util/filenamepart.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegExp>
#include <QSet>

#include <algorithm>

namespace {

const Log::Logger &logger()
{
    static const Log::Logger instance(QStringLiteral("gui"));
    return instance;
}

QString namePattern(const QVariantMap &choice)
{
    if (choice.value(QStringLiteral("legacyFiles")).toBool())
        return QStringLiteral("(\\d{4})-(\\d{2})-(\\d{2})(\\.sig|\\.log|\\..*\\.nds)");
    const QString variant = choice.value(QStringLiteral("variant")).toString();
    const QString date = QStringLiteral("(\\d{4})-?(\\d{2})-?(\\d{2})");
    const QString kinds = QStringLiteral("(\\.diagnostics|\\.currents|\\.flags|\\.records|-.*\\.spectra)");
    return variant.isEmpty() ? date + kinds : date + QLatin1Char('-') + variant + kinds;
}

/// The dates between which a file must lie. A file whose digits make no date begins before all of them.
struct DateSpan {
    bool hasBegin = false;
    bool hasEnd = false;
    QDate begin;
    QDate end;

    explicit DateSpan(const QVariantMap &choice)
        : hasBegin(choice.value(QStringLiteral("limitBegin")).toBool()),
          hasEnd(choice.value(QStringLiteral("limitEnd")).toBool()),
          begin(choice.value(QStringLiteral("beginTime")).toDateTime().date()),
          end(choice.value(QStringLiteral("endTime")).toDateTime().date())
    {
    }
    bool holds(QDate date) const { return !(hasBegin && date < begin) && !(hasEnd && date > end); }
};

QStringList setupNamesIn(const QDir &folder)
{
    return folder.entryList({QStringLiteral("*.windowsetup")}, QDir::Files | QDir::CaseSensitive);
}

/// The setup among the folder's files, with a debug line that tells why; null if there is no clear one.
QString setupIn(const QDir &folder)
{
    const QString standard = QStringLiteral("default.windowsetup");
    QStringList names = setupNamesIn(folder);
    const bool hasStandard = names.contains(standard);
    QString text = QStringLiteral("Found too many window setup files in '%1'");
    QString chosen;
    if (names.isEmpty()) {
        text = QStringLiteral("Found no window setup files in '%1'");
    } else if (names.size() == 1) {
        text = QStringLiteral("Found a single window setup file in '%1'. Using it.");
        chosen = names.first();
    } else if (names.size() == 2 && hasStandard) {
        text = QStringLiteral("Found two window setup files in '%1'. Using the one that is not 'default.windowsetup'.");
        names.removeOne(standard);
        chosen = names.first();
    } else if (hasStandard) {
        text = QStringLiteral("Found several window setup files in '%1'. Using 'default.windowsetup'.");
        chosen = standard;
    }
    logger().log(Log::Debug, text.arg(folder.path()));
    return chosen.isNull() ? QString() : folder.filePath(chosen);
}

} // namespace

QStringList findDataFiles(const QVariantMap &choice)
{
    logger().log(Log::Debug, QStringLiteral("Looking for files matching: %1").arg(namePattern(choice)));
    return listDataFiles(choice);
}

QStringList listDataFiles(const QVariantMap &choice)
{
    QRegExp name(namePattern(choice), Qt::CaseSensitive);
    const DateSpan span(choice);
    QStringList files;
    const QDir folder(choice.value(QStringLiteral("folderName")).toString());
    for (const QString &entry : folder.entryList(QDir::Files))
        if (name.exactMatch(entry) && span.holds(dayOfDataFile(entry)))
            files.append(entry);
    return files;
}

QDate dayOfDataFile(const QString &name)
{
    const int dash = name.midRef(4, 1) == QLatin1String("-") ? 1 : 0;
    const int secondDash = name.midRef(6 + dash, 1) == QLatin1String("-") ? 1 : 0;
    return {name.leftRef(4).toInt(), name.midRef(4 + dash, 2).toInt(), name.midRef(6 + dash + secondDash, 2).toInt()};
}

QString findWindowSetup(QDir folder)
{
    const QString fallback = folder.filePath(QStringLiteral("default.windowsetup"));
    for (int round = 0; round < 2; ++round) {
        const QString found = setupIn(folder);
        if (!found.isNull())
            return found;
        if (!folder.cdUp())
            break;
    }
    return fallback;
}

QStringList windowSetupsFor(QDir folder)
{
    QStringList paths;
    for (int round = 0; round < 2; ++round) {
        for (const QString &name : setupNamesIn(folder))
            paths.append(folder.absoluteFilePath(name));
        if (!folder.cdUp())
            break;
    }
    return paths;
}

FolderContents folderContents(const QString &folder)
{
    FolderContents contents;
    QSet<QString> variants;
    QStringList spectra; // what stands between date and ending: a variant, "-" and a mode, each of which may hold "-"
    QRegExp legacy(namePattern({{QStringLiteral("legacyFiles"), true}}));
    QRegExp marked(QStringLiteral("\\d{4}-?\\d{2}-?\\d{2}-(.*)\\.(diagnostics|currents|flags|records|spectra)"));
    QRegExp unmarked(QStringLiteral("\\d{4}-?\\d{2}-?\\d{2}\\.(diagnostics|currents|flags|records)"));
    for (const QString &entry : QDir(folder).entryList(QDir::Files)) {
        if (legacy.exactMatch(entry))
            ++contents.legacyFiles;
        else if (unmarked.exactMatch(entry))
            ++contents.unmarkedFiles;
        else if (marked.exactMatch(entry) && marked.cap(2) == QLatin1String("spectra"))
            spectra.append(marked.cap(1));
        else if (marked.exactMatch(entry))
            variants.insert(marked.cap(1));
    }
    for (const QString &name : qAsConst(spectra)) {
        const bool known = std::any_of(variants.begin(), variants.end(), [&name](const QString &variant) {
            return name.startsWith(variant + QLatin1Char('-'));
        });
        const int dash = name.indexOf(QLatin1Char('-'));
        if (!known && dash > 0)
            variants.insert(name.left(dash));
        else if (!known)
            ++contents.unmarkedFiles;
    }
    contents.variants = variants.values();
    contents.variants.sort(Qt::CaseSensitive);
    return contents;
}

int dayFileCount(const QString &folder, const QString &variant, const QStringList &modes)
{
    const auto part = [](const QString &name) { return QRegExp::escape(fileNamePart(name)); };
    QStringList kinds{QStringLiteral("\\.(diagnostics|currents|flags|records)")};
    for (const QString &mode : modes)
        kinds.append(QStringLiteral("-%1\\.spectra").arg(part(mode)));
    QRegExp name(QStringLiteral("\\d{4}-?\\d{2}-?\\d{2}-%1(%2)").arg(part(variant), kinds.join(QLatin1Char('|'))));
    const QStringList entries = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    return int(std::count_if(entries.begin(), entries.end(),
                             [&name](const QString &entry) { return name.exactMatch(entry); }));
}

QString nothingMatchedText(const QString &folder, QChar between)
{
    if (!QFileInfo(folder).isDir())
        return QStringLiteral("No file matches the choice.%1There is no folder '%2'").arg(between, folder);
    const FolderContents contents = folderContents(folder);
    QStringList parts;
    if (!contents.variants.isEmpty())
        parts.append(QStringLiteral("averaging variants \"%1\"").arg(contents.variants.join(QStringLiteral("\", \""))));
    if (contents.unmarkedFiles > 0)
        parts.append(QStringLiteral("%1 day files without a variant").arg(contents.unmarkedFiles));
    if (contents.legacyFiles > 0)
        parts.append(QStringLiteral("%1 old-style files").arg(contents.legacyFiles));
    const QString holds = parts.isEmpty() ? QStringLiteral("no day files") : parts.join(QStringLiteral(", "));
    return QStringLiteral("No file matches the choice.%1The folder '%2'%1holds: %3").arg(between, folder, holds);
}
