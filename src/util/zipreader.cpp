#include "util/zipreader.h"

#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace {

constexpr quint32 localSignature = 0x04034b50;
constexpr quint32 centralSignature = 0x02014b50;
constexpr quint32 endSignature = 0x06054b50;
constexpr int localHeaderSize = 30;
constexpr int centralHeaderSize = 46;
constexpr int endRecordSize = 22;
constexpr int longestComment = 65535;
constexpr qint64 mebibyte = qint64(1) << 20;
constexpr quint16 encryptedFlag = 1 << 0;
constexpr quint16 utf8Flag = 1 << 11;
constexpr quint16 methodStored = 0;
constexpr quint16 methodDeflated = 8;

template<typename T>
T number(const QByteArray &bytes, int position)
{
    return qFromLittleEndian<T>(bytes.constData() + position);
}

QZipReader::Status statusOf(QFileDevice::FileError error)
{
    switch (error) {
    case QFileDevice::NoError:
        return QZipReader::NoError;
    case QFileDevice::ReadError:
        return QZipReader::FileReadError;
    case QFileDevice::OpenError:
        return QZipReader::FileOpenError;
    case QFileDevice::PermissionsError:
        return QZipReader::FilePermissionsError;
    default:
        return QZipReader::FileError;
    }
}

QDateTime dosTime(quint16 time, quint16 date)
{
    return QDateTime(QDate((date >> 9) + 1980, (date >> 5) & 15, date & 31),
                     QTime(time >> 11, (time >> 5) & 63, (time & 31) * 2));
}

QFile::Permissions permissionsOf(quint32 unixMode)
{
    struct Pair {
        quint32 bit;
        QFile::Permissions permission;
    };
    static const Pair pairs[] = {
        {0400, QFile::ReadOwner | QFile::ReadUser},
        {0200, QFile::WriteOwner | QFile::WriteUser},
        {0100, QFile::ExeOwner | QFile::ExeUser},
        {0040, QFile::ReadGroup},
        {0020, QFile::WriteGroup},
        {0010, QFile::ExeGroup},
        {0004, QFile::ReadOther},
        {0002, QFile::WriteOther},
        {0001, QFile::ExeOther},
    };
    QFile::Permissions result;
    for (const Pair &pair : pairs)
        if (unixMode & pair.bit)
            result |= pair.permission;
    return result;
}

/// The kind of the entry, from the attributes of whichever system made it.
void setKind(QZipReader::FileInfo &info, quint16 madeBy, quint32 externalAttributes)
{
    constexpr int madeOnUnix = 3;
    constexpr quint32 typeMask = 0170000, linkType = 0120000, directoryType = 0040000;
    constexpr quint32 dosDirectory = 0x10;
    quint32 mode = 0;
    if ((madeBy >> 8) == madeOnUnix)
        mode = externalAttributes >> 16;
    info.isSymLink = (mode & typeMask) == linkType;
    info.isDir = !info.isSymLink && (info.filePath.endsWith(QLatin1Char('/')) || (externalAttributes & dosDirectory) ||
                                     (mode & typeMask) == directoryType);
    info.isFile = !info.isDir && !info.isSymLink;
    info.permissions = permissionsOf(mode);
}

/// Raw inflate into a buffer that starts at the declared size and doubles up to the limit.
QByteArray inflateRaw(const QByteArray &compressed, qint64 declaredSize)
{
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        qWarning("QZip: Z_MEM_ERROR: Not enough memory");
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(compressed.constData()));
    stream.avail_in = uInt(compressed.size());

    const qint64 limit = inflationLimit(declaredSize);
    // A declared size is a hint. What is really there can't be more than 1032 times its compressed bytes.
    const qint64 possible = qint64(compressed.size()) * 1032 + 64;
    QByteArray out(int(std::clamp<qint64>(std::min(declaredSize, possible), 1, limit)), Qt::Uninitialized);
    const char *failure = nullptr;
    for (;;) {
        stream.next_out = reinterpret_cast<Bytef *>(out.data()) + stream.total_out;
        stream.avail_out = uInt(out.size() - int(stream.total_out));
        const int result = inflate(&stream, Z_FINISH);
        if (result == Z_STREAM_END)
            break;
        if (result == Z_MEM_ERROR) {
            failure = "QZip: Z_MEM_ERROR: Not enough memory";
            break;
        }
        const bool needsRoom = (result == Z_OK || result == Z_BUF_ERROR) && stream.avail_out == 0;
        if (!needsRoom) { // broken, or the input ends before the stream does
            failure = "QZip: Z_DATA_ERROR: Input data is corrupted";
            break;
        }
        if (out.size() >= limit) {
            failure = "QZip: Z_MEM_ERROR: Not enough memory";
            break;
        }
        out.resize(int(std::min<qint64>(qint64(out.size()) * 2, limit)));
    }
    inflateEnd(&stream);
    if (failure) {
        qWarning("%s", failure);
        return {};
    }
    out.resize(int(stream.total_out));
    return out;
}

} // namespace

qint64 inflationLimit(qint64 declaredSize)
{
    return std::min(std::max(16 * mebibyte, declaredSize), 64 * mebibyte);
}

QZipReader::QZipReader(const QString &fileName, QIODevice::OpenMode mode) : m_file(fileName)
{
    // A device or a pipe that only looks like a pack would block or never end.
    if (m_file.open(mode) && m_file.isSequential())
        m_file.close();
    m_status = statusOf(m_file.error());
    if (m_status == NoError && !m_file.isOpen())
        m_status = FileOpenError;
}

int QZipReader::count()
{
    scan();
    return int(m_entries.size());
}

QZipReader::FileInfo QZipReader::entryInfoAt(int index)
{
    scan();
    return index >= 0 && index < int(m_entries.size()) ? m_entries[std::size_t(index)].info : FileInfo();
}

QByteArray QZipReader::readAt(qint64 position, qint64 size)
{
    if (position < 0 || size < 0 || position > m_file.size() || size > m_file.size() - position ||
        !m_file.seek(position))
        return {};
    return m_file.read(size);
}

/// The position of the end-of-directory record, or -1: the last one whose comment fits, searched from the file's end.
qint64 QZipReader::findEndOfDirectory()
{
    const qint64 size = m_file.size();
    const qint64 tailBegin = std::max<qint64>(0, size - endRecordSize - longestComment);
    const QByteArray tail = readAt(tailBegin, size - tailBegin);
    for (int i = tail.size() - endRecordSize; i >= 0; --i)
        if (number<quint32>(tail, i) == endSignature)
            return tailBegin + i;
    return -1;
}

void QZipReader::scan()
{
    if (m_scanned || m_status != NoError)
        return;
    m_scanned = true;
    const QByteArray start = readAt(0, 4);
    if (start.size() != 4 || number<quint32>(start, 0) != localSignature) {
        qWarning("QZip: not a zip file!");
        return;
    }
    const qint64 end = findEndOfDirectory();
    if (end < 0) {
        qWarning("QZip: EndOfDirectory not found");
        return;
    }
    const QByteArray record = readAt(end, endRecordSize);
    const int entryCount = number<quint16>(record, 10);
    qint64 position = number<quint32>(record, 16);
    if (position > m_file.size()) {
        qWarning("QZip: failed to parse zip file.");
        return;
    }
    readDirectory(entryCount, position);
    markOverlaps();
}

void QZipReader::readDirectory(int entryCount, qint64 position)
{
    for (int i = 0; i < entryCount; ++i) {
        Entry entry;
        if (!readEntry(entry, position))
            return;
        m_entries.push_back(entry);
    }
}

/// Entries that share bytes let a small archive inflate without end, each of them within its own bound.
void QZipReader::markOverlaps()
{
    std::vector<Entry *> byPlace;
    for (Entry &entry : m_entries)
        byPlace.push_back(&entry);
    std::stable_sort(byPlace.begin(), byPlace.end(),
                     [](const Entry *a, const Entry *b) { return a->localHeaderOffset < b->localHeaderOffset; });
    qint64 end = 0;
    for (Entry *entry : byPlace) {
        entry->overlaps = entry->localHeaderOffset < end;
        end = std::max(end, entry->localHeaderOffset + localHeaderSize + entry->info.compressedSize);
    }
}

/// Reads one entry of the central directory and moves the position behind it; false, with a warning, if it isn't whole.
bool QZipReader::readEntry(Entry &entry, qint64 &position)
{
    const QByteArray header = readAt(position, centralHeaderSize);
    if (header.size() != centralHeaderSize) {
        qWarning("QZip: Failed to read complete header, index may be incomplete");
        return false;
    }
    if (number<quint32>(header, 0) != centralSignature) {
        qWarning("QZip: invalid header signature, index may be incomplete");
        return false;
    }
    const int nameLength = number<quint16>(header, 28);
    const int extraLength = number<quint16>(header, 30);
    const int commentLength = number<quint16>(header, 32);
    const QByteArray name = readAt(position + centralHeaderSize, nameLength);
    if (name.size() != nameLength) {
        qWarning("QZip: Failed to read filename from zip index, index may be incomplete");
        return false;
    }
    const qint64 behindExtra = position + centralHeaderSize + nameLength + extraLength;
    if (behindExtra > m_file.size()) {
        qWarning("QZip: Failed to read extra field in zip file, skipping file, index may be incomplete");
        return false;
    }
    if (behindExtra + commentLength > m_file.size()) {
        qWarning(
            "QZip: Failed to read read file comment, index may be incomplete"); // doubled word: known by these words
        return false;
    }
    position = behindExtra + commentLength;

    entry.flags = number<quint16>(header, 8);
    entry.method = number<quint16>(header, 10);
    entry.info.lastModified = dosTime(number<quint16>(header, 12), number<quint16>(header, 14));
    entry.info.crc = number<quint32>(header, 16);
    entry.info.compressedSize = number<quint32>(header, 20);
    entry.info.size = number<quint32>(header, 24);
    entry.localHeaderOffset = number<quint32>(header, 42);
    entry.info.filePath = entry.flags & utf8Flag ? QString::fromUtf8(name) : QString::fromLocal8Bit(name);
    entry.info.filePath.replace(QLatin1Char('\\'), QLatin1Char('/'));
    setKind(entry.info, number<quint16>(header, 4), number<quint32>(header, 38));
    return true;
}

/// The entry's bytes as they are stored. Sizes and method are the central directory's, since streamed archives have
/// none in the local header; only the lengths of name and extra field are the local ones.
QByteArray QZipReader::compressedBytes(const Entry &entry)
{
    const QByteArray local = readAt(entry.localHeaderOffset, localHeaderSize);
    if (local.size() != localHeaderSize || number<quint32>(local, 0) != localSignature)
        return {};
    const qint64 begin =
        entry.localHeaderOffset + localHeaderSize + number<quint16>(local, 26) + number<quint16>(local, 28);
    const qint64 available = std::max<qint64>(0, m_file.size() - begin);
    return readAt(begin, std::min(entry.info.compressedSize, available));
}

QByteArray QZipReader::fileData(const QString &fileName)
{
    scan();
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&fileName](const Entry &entry) { return entry.info.filePath == fileName; });
    if (found == m_entries.end())
        return {};
    const bool encrypted = found->flags & encryptedFlag;
    if (encrypted || (found->method != methodStored && found->method != methodDeflated)) {
        qWarning("QZip: Unknown compression method");
        return {};
    }
    // Inflation stops at 64 MB in any case, which no more than that many compressed bytes are needed for.
    if (found->info.compressedSize > inflationLimit(found->info.size) * 2) {
        qWarning("QZip: Z_MEM_ERROR: Not enough memory");
        return {};
    }
    if (found->overlaps) {
        qWarning("QZip: Z_DATA_ERROR: Input data is corrupted");
        return {};
    }
    const QByteArray bytes = compressedBytes(*found);
    if (found->method == methodStored)
        return bytes.left(int(std::min<qint64>(bytes.size(), found->info.size)));
    return inflateRaw(bytes, found->info.size);
}
