#include "spectra/inverterfiles.h"

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

/// One walk over a chosen path.
class Walk {
public:
    Walk(const UnitTable &unitTable, QStringList *errors) : m_unitTable(unitTable), m_errors(errors) {}

    void visit(const QString &path);
    InverterList takeInverters() { return std::move(m_inverters); }

private:
    void visitMissing(const QString &path);
    void visitFolder(const QString &path);
    void visitMap(const QString &path);
    void visitPack(const QString &path, const QString &prefix);
    void visitFile(const QString &path);
    void makeOne(const QByteArray &bytes, const QString &path);
    void complain(const char *pattern, const QString &path);
    /// Runs `body` unless the map or folder is being walked already: a map may name its own folder.
    template<typename Body>
    void guarded(const QString &path, Body body);

    const UnitTable &m_unitTable;
    QStringList *m_errors;
    InverterList m_inverters;
    QSet<QString> m_open; ///< canonical paths of the maps and folders being walked
};

void Walk::complain(const char *pattern, const QString &path)
{
    if (m_errors)
        *m_errors << fillMarkers(QString::fromUtf8(pattern), {path});
}

template<typename Body>
void Walk::guarded(const QString &path, Body body)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (m_open.contains(canonical))
        return;
    m_open.insert(canonical);
    body();
    m_open.remove(canonical);
}

void Walk::visit(const QString &path)
{
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
    guarded(path, [&] {
        const QDir folder(path);
        const QStringList names =
            folder.entryList(QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot, QDir::Unsorted);
        for (const QString &name : names)
            visit(folder.filePath(name));
    });
}

void Walk::visitMap(const QString &path)
{
    guarded(path, [&] {
        const QStringList named = readInverterMap(path);
        for (const QString &one : named)
            visit(one);
    });
}

void Walk::visitPack(const QString &path, const QString &prefix)
{
    QZipReader pack(path);
    if (pack.status() != QZipReader::NoError) {
        complain("Unable to open inverter pack '%1'", path);
        return;
    }
    // Text of numbers doesn't compress without end. What does is read while it is little in all, so that a pack of bombs
    // costs no more than an honest one of its size.
    constexpr qint64 honestRatio = 32;
    qint64 allowance = largestInverterText;
    bool kept = false;
    for (int i = 0; i < pack.count(); ++i) {
        const QZipReader::FileInfo entry = pack.entryInfoAt(i);
        if (entry.isDir || entry.isSymLink || !entry.filePath.startsWith(prefix) || !isInverterName(entry.filePath))
            continue;
        kept = true;
        const QString displayPath = path + QLatin1Char('/') + entry.filePath;
        if (entry.size > largestInverterText) {
            complain("File '%1' has bad structure", displayPath);
            continue;
        }
        QByteArray bytes = pack.fileData(entry.filePath);
        if (bytes.size() > entry.compressedSize * honestRatio) {
            allowance -= bytes.size();
            if (allowance < 0)
                bytes.clear();
        }
        if (bytes.isEmpty())
            complain("Unable to read inverters from '%1'", displayPath);
        else
            makeOne(bytes, displayPath);
    }
    if (!kept)
        complain("Unable to read inverters from '%1'", prefix.isEmpty() ? path : path + QLatin1Char('/') + prefix);
}

void Walk::visitFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        complain("Could not open file '%1'", path);
        return;
    }
    makeOne(file.read(largestInverterText + 1), path);
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

InverterList loadInverters(const QString &path, const UnitTable &unitTable, QStringList *errors)
{
    Walk walk(unitTable, errors);
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

InverterList loadChosenInverters(const QStringList &paths, const UnitTable &unitTable, QStringList *errors)
{
    InverterList all;
    for (const QString &path : paths) {
        QString error;
        try {
            const InverterList some = loadInverters(path, unitTable, errors);
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

} // namespace SpectMath
