#include "windowsetup/settingsformat.h"

#include "util/filecalls.h"

#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <cctype>
#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace WindowSetup {

namespace {

using Map = QSettings::SettingsMap;
using Keys = QSet<QString>;

Keys keysOf(const Map &map)
{
    const QStringList keys = map.keys();
    return {keys.begin(), keys.end()};
}

// ---- reading

/// By Qt's own reader, from a file in memory. False with an empty map if there is no memory.
bool parse(const QByteArray &text, Map *map)
{
    const int memory = ::memfd_create("settings", MFD_CLOEXEC);
    if (memory < 0)
        return false;
    FileCalls calls; // none of a disk
    const bool isWritten = writeAll(calls, memory, text.constData(), std::size_t(text.size()));
    // Qt keeps what it read from a path as long as size and time are the same.
    static time_t another = 0;
    const timespec time{++another, 0}, times[]{time, time};
    ::futimens(memory, times);
    if (isWritten) {
        const QSettings settings(QStringLiteral("/proc/self/fd/%1").arg(memory), QSettings::IniFormat);
        for (const QString &key : settings.allKeys())
            map->insert(key, settings.value(key));
    }
    calls.close(memory);
    return isWritten;
}

/// The keys by path that were read or written, which may so be removed.
QHash<QString, Keys> &knownKeys()
{
    static QHash<QString, Keys> known;
    return known;
}

bool readSettings(QIODevice &device, Map &map)
{
    const auto *const file = qobject_cast<QFileDevice *>(&device);
    const QByteArray text = device.readAll();
    if (!file || file->error() != QFileDevice::NoError || !parse(text, &map))
        return false;
    knownKeys()[file->fileName()] = keysOf(map);
    return true;
}

// ---- writing

bool isPlainInKey(QChar c)
{
    return c.unicode() < 0x80 && (std::isalnum(c.unicode()) != 0 || QStringLiteral("_-.").contains(c));
}

QByteArray keyText(const QString &key)
{
    QByteArray text;
    for (const QChar c : key) {
        if (isPlainInKey(c))
            text += c.toLatin1();
        else if (c == '/')
            text += '\\';
        else
            text += (c.unicode() > 0xff ? "%U" : "%") +
                    QByteArray::number(c.unicode(), 16).toUpper().rightJustified(c.unicode() > 0xff ? 4 : 2, '0');
    }
    return text;
}

QByteArray escaped(const QString &text)
{
    static const QHash<QChar, char> letters{{'\0', '0'}, {'\a', 'a'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'},
                                            {'\r', 'r'}, {'\t', 't'}, {'\v', 'v'}, {'"', '"'},  {'\\', '\\'}};
    QByteArray out;
    bool needsQuotes = text.startsWith(' ') || text.endsWith(' ');
    bool isBehindNumber = false; // which a further digit would belong to
    for (const QChar c : text) {
        needsQuotes = needsQuotes || c == ';' || c == ',' || c == '=';
        const bool isDigit = c.unicode() < 0x80 && std::isxdigit(c.unicode()) != 0;
        const auto letter = letters.constFind(c);
        const bool isNumber =
            letter == letters.constEnd() && (c.unicode() < 0x20 || c.unicode() > 0x7e || (isBehindNumber && isDigit));
        if (letter != letters.constEnd())
            out += QByteArray("\\") + *letter;
        else if (isNumber)
            out += "\\x" + QByteArray::number(c.unicode(), 16);
        else
            out += c.toLatin1();
        isBehindNumber = isNumber || c == QChar(0);
    }
    return needsQuotes ? '"' + out + '"' : out;
}

QString wide(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size()); // zeros among them, too
}

QString streamed(const QVariant &value)
{
    // The versions that Qt reads these with.
    const bool isTime = value.type() == QVariant::DateTime;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(isTime ? QDataStream::Qt_5_6 : QDataStream::Qt_4_0);
    stream << value;
    return (isTime ? QStringLiteral("@DateTime(") : QStringLiteral("@Variant(")) + wide(bytes) + ')';
}

QString textOf(const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::UnknownType:
        return QStringLiteral("@Invalid()");
    case QMetaType::QByteArray:
        return QStringLiteral("@ByteArray(") + wide(value.toByteArray()) + ')';
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double: {
        const QString text = value.toString();
        if (text.contains(QChar(0)))
            return QStringLiteral("@String(%1)").arg(text);
        return text.startsWith('@') ? '@' + text : text;
    }
    default:
        return streamed(value);
    }
}

QByteArray valueText(const QVariant &value)
{
    const QVariantList list = value.toList();
    if (value.type() != QVariant::StringList && (value.type() != QVariant::List || list.size() == 1))
        return escaped(textOf(value));
    QByteArray text;
    for (const QVariant &item : list)
        text += (text.isNull() ? "" : ", ") + escaped(textOf(item));
    return list.isEmpty() ? "@Invalid()" : text;
}

QByteArray settingsText(const Map &map)
{
    QMap<QByteArray, QByteArray> sections; // with their lines
    for (auto it = map.begin(); it != map.end(); ++it) {
        const int slash = it.key().indexOf('/');
        QByteArray section = keyText(it.key().left(std::max(slash, 0)));
        if (section.isEmpty() || section.toLower() == "general")
            section = section.isEmpty() ? "General" : "%General";
        sections[section] += keyText(it.key().mid(slash + 1)) + '=' + valueText(it.value()) + '\n';
    }
    QByteArray text;
    for (auto it = sections.begin(); it != sections.end(); ++it)
        text += (text.isEmpty() ? "[" : "\n[") + it.key() + "]\n" + it.value();
    return text;
}

/// Whether nothing goes with the file that stands there but what may go.
bool mayReplace(const QString &path, const Keys &newKeys)
{
    QFile old(path);
    if (!old.open(QIODevice::ReadOnly))
        return ::access(QFile::encodeName(path).constData(), F_OK) != 0 && errno == ENOENT;
    const QByteArray text = old.readAll();
    Map map;
    if (old.error() != QFileDevice::NoError || !parse(text, &map))
        return false;
    return (newKeys + knownKeys().value(path)).contains(keysOf(map));
}

bool writeSettings(QIODevice &device, const Map &map)
{
    auto *const file = qobject_cast<QFileDevice *>(&device);
    const Keys keys = keysOf(map);
    if (!file || !mayReplace(file->fileName(), keys))
        return false;
    const QByteArray text = settingsText(map);
    const bool isWritten =
        file->write(text) == text.size() && file->flush() && FileCalls::current().fsync(file->handle()) == 0;
    if (isWritten)
        knownKeys()[file->fileName()] += keys;
    return isWritten;
}

} // namespace

QSettings::Format settingsFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("ini"), readSettings, writeSettings, Qt::CaseSensitive);
    return format;
}

void removeNamelessLock(const QString &settingsFile)
{
    constexpr qint64 namingTime = 100; // ms; it takes microseconds
    constexpr int nameLines = 3;       // process, program, host, and others that may be left out
    constexpr qint64 longestName = 1024;
    const QFileInfo lock(settingsFile + QStringLiteral(".lock"));
    if (!lock.isFile() || lock.lastModified().msecsTo(QDateTime::currentDateTime()) <= namingTime)
        return;
    QFile file(lock.filePath());
    const QByteArray name = file.open(QIODevice::ReadOnly) ? file.read(longestName) : QByteArray();
    if (file.error() == QFile::NoError && (name.count('\n') < nameLines || !name.endsWith('\n')))
        file.remove();
}

} // namespace WindowSetup
