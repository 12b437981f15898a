#include "spectra/inverterfiles.h"

#include "log/logger.h"
#include "util/regularfile.h"
#include "util/textescape.h"
#include "util/zipreader.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace SpectMath {

namespace {

bool isInverterName(const QString &name)
{
    return name.endsWith(QLatin1String(".sinv")) || name.endsWith(QLatin1String(".inverter"));
}

/// Texts of numbers inflate to fewer times their bytes. Entries that inflate to more are read while they are little in
/// all, so that a pack of bombs costs no more than an honest one of its size.
constexpr qint64 honestRatio = 32;
constexpr qint64 mostDishonest = largestInverterText;

/// One walk over a chosen path.
class Walk {
public:
    Walk(const UnitTable &unitTable, QStringList *errors, const LoadingStep &step)
        : m_unitTable(unitTable), m_errors(errors), m_step(step)
    {
    }

    void visit(const QString &path);
    InverterList takeInverters() { return std::move(m_inverters); }

private:
    void visitMissing(const QString &path);
    void visitFolder(const QString &path);
    void visitMap(const QString &path);
    void visitPack(const QString &path, const QString &prefix);
    QByteArray readEntry(QZipReader &pack, const QZipReader::FileInfo &entry);
    void visitFile(const QString &path);
    void makeOne(const QByteArray &bytes, const QString &path);
    void complain(const char *pattern, const QString &path);
    /// Whether the path, or the entry of the pack there, is to be read: it is met for the first time, under whatever
    /// name, and the walk hasn't ended.
    bool enter(const QString &path, const QString &entryName = QString());

    const UnitTable &m_unitTable;
    QStringList *m_errors;
    const LoadingStep &m_step;
    bool m_isEnded = false;
    InverterList m_inverters;
    QSet<QString> m_met; ///< canonical paths, with an entry's name behind that of its pack
    qint64 m_inflation = 0;
    qint64 m_dishonest = 0; ///< part of it
};

void Walk::complain(const char *pattern, const QString &path)
{
    if (m_errors)
        *m_errors << fillMarkers(QString::fromUtf8(pattern), {path});
}

bool Walk::enter(const QString &path, const QString &entryName)
{
    if (m_isEnded)
        return false;
    QString key = QFileInfo(path).canonicalFilePath();
    if (key.isEmpty()) // nothing is there
        key = QFileInfo(path).absoluteFilePath();
    if (!entryName.isNull())
        key += QChar::Null + entryName;
    if (m_met.contains(key))
        return false;
    m_met.insert(key);
    m_isEnded = m_step && !m_step(entryName.isNull() ? path : path + QLatin1Char('/') + entryName);
    return !m_isEnded;
}

void Walk::visit(const QString &path)
{
    if (!enter(path))
        return;
    const QFileInfo info(path);
    if (!info.exists())
        visitMissing(path);
    else if (info.isDir())
        visitFolder(path);
    else if (path.endsWith(QLatin1String(".invmap")))
        visitMap(path);
    else if (path.endsWith(QLatin1String(".sinp")) || path.endsWith(QLatin1String(".zip")))
        visitPack(path, QString());
    else if (isInverterName(path))
        visitFile(path);
}

/// The path may go on inside a pack: the longest part of it that exists is a file then, and the rest an entry prefix.
void Walk::visitMissing(const QString &path)
{
    QStringList parts = QDir::fromNativeSeparators(path).split(QLatin1Char('/'));
    QStringList tail;
    while (parts.size() >= 2) {
        tail.prepend(parts.takeLast());
        const QFileInfo rest(parts.join(QLatin1Char('/')));
        if (!rest.exists())
            continue;
        if (rest.isFile()) {
            visitPack(rest.filePath(), tail.join(QLatin1Char('/')));
            return;
        }
        break;
    }
    complain("Path '%1' does not exist", path);
}

void Walk::visitFolder(const QString &path)
{
    const QDir folder(path);
    const QStringList names =
        folder.entryList(QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names)
        visit(folder.filePath(name));
}

void Walk::visitMap(const QString &path)
{
    const QStringList named = readInverterMap(path);
    for (const QString &one : named)
        visit(one);
}

void Walk::visitPack(const QString &path, const QString &prefix)
{
    QZipReader pack(path);
    if (pack.status() != QZipReader::NoError) {
        complain("Unable to open inverter pack '%1'", path);
        return;
    }
    bool kept = false;
    for (int i = 0; i < pack.count() && !m_isEnded; ++i) {
        const QZipReader::FileInfo entry = pack.entryInfoAt(i);
        if (entry.isDir || entry.isSymLink || !entry.filePath.startsWith(prefix) || !isInverterName(entry.filePath))
            continue;
        kept = true;
        if (!enter(path, entry.filePath))
            continue;
        const QString displayPath = path + QLatin1Char('/') + entry.filePath;
        if (entry.size > largestInverterText) {
            complain("File '%1' has bad structure", displayPath);
            continue;
        }
        const QByteArray bytes = readEntry(pack, entry);
        if (bytes.isEmpty())
            complain("Unable to read inverters from '%1'", displayPath);
        else
            makeOne(bytes, displayPath);
    }
    if (!kept)
        complain("Unable to read inverters from '%1'", prefix.isEmpty() ? path : path + QLatin1Char('/') + prefix);
}

/// The entry's bytes, or nothing once the walk has inflated too much.
QByteArray Walk::readEntry(QZipReader &pack, const QZipReader::FileInfo &entry)
{
    const qint64 before = pack.bytesInflated();
    const QByteArray bytes = pack.fileData(entry.filePath, mostInflation - m_inflation);
    const qint64 inflated = pack.bytesInflated() - before;
    m_inflation += inflated;
    if (inflated <= entry.compressedSize * honestRatio)
        return bytes;
    m_dishonest += inflated;
    return m_dishonest <= mostDishonest ? bytes : QByteArray();
}

void Walk::visitFile(const QString &path)
{
    QFile file(path);
    if (!openRegularFile(file)) {
        complain("Could not open file '%1'", path);
        return;
    }
    makeOne(readUpTo(file, largestInverterText + 1), path);
}

void Walk::makeOne(const QByteArray &bytes, const QString &path)
{
    try {
        m_inverters.push_back(readInverterText(bytes, path, m_unitTable));
    } catch (const InverterFileError &error) {
        if (m_errors)
            *m_errors << error.message();
    }
}

} // namespace

InverterList loadInverters(const QString &path, const UnitTable &unitTable, QStringList *errors,
                           const LoadingStep &step)
{
    Walk walk(unitTable, errors, step);
    walk.visit(path);
    return walk.takeInverters();
}

InverterList loadInverters(const QStringList &paths, const UnitTable &unitTable, QStringList *errors)
{
    InverterList all;
    for (const QString &path : paths) {
        InverterList some = loadInverters(path, unitTable, errors);
        all.insert(all.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
    }
    return all;
}

InverterList loadChosenInverters(const QStringList &paths, const UnitTable &unitTable, QStringList *errors,
                                 const LoadingStep &step)
{
    InverterList all;
    bool isEnded = false;
    const LoadingStep watched = [&step, &isEnded](const QString &path) {
        isEnded = isEnded || (step && !step(path));
        return !isEnded;
    };
    for (const QString &path : paths) {
        QString error;
        try {
            const InverterList some = loadInverters(path, unitTable, errors, watched);
            all.insert(all.end(), some.begin(), some.end());
            continue;
        } catch (const InverterFileError &thrown) {
            error = thrown.message();
        } catch (const UnitParsingError &thrown) {
            error = thrown.message();
        }
        if (errors)
            *errors << error;
    }
    return all;
}

void tellLoadingErrors(const Log::Logger &log, const QStringList &errors, bool othersAreUsed)
{
    if (errors.isEmpty())
        return;
    log.log(Log::Error, QStringLiteral("Errors reading inverters:\n") + errors.join(QLatin1Char('\n')));
    if (othersAreUsed)
        log.log(Log::Warning, QStringLiteral("Using the inverters that were loaded successfully."));
}

} // namespace SpectMath
