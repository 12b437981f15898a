#include "util/zipreader.h"

#include "util/regularfile.h"

#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <memory>

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

/// Raw inflate into a buffer that starts at the declared size and doubles up to the limit. What was inflated, in vain
/// too, is added to *inflatedBytes.
QByteArray inflateRaw(const QByteArray &compressed, qint64 declaredSize, qint64 limit, qint64 *inflatedBytes)
{
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        qWarning("QZip: Z_MEM_ERROR: Not enough memory");
        return {};
    }
    const std::unique_ptr<z_stream, int (*)(z_streamp)> ended(&stream, inflateEnd); // where memory runs out, too
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(compressed.constData()));
    stream.avail_in = uInt(compressed.size());

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
    *inflatedBytes += qint64(stream.total_out);
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
    return std::min(std::max(16 * mebibyte, declaredSize), QZipReader::longestInflation);
}

QZipReader::QZipReader(const QString &fileName, QIODevice::OpenMode mode) : m_file(fileName)
{
    const bool isOpen = whyNotRegularFile(fileName).isNull() && m_file.open(mode);
    m_status = statusOf(m_file.error());
    if (m_status == NoError && !isOpen)
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
    findEnds(position);
}

void QZipReader::readDirectory(int entryCount, qint64 position)
{
    for (int i = 0; i < entryCount; ++i) {
        Entry entry;
        if (!readEntry(entry, position))
            return;
        if (!m_indexes.contains(entry.info.filePath))
            m_indexes.insert(entry.info.filePath, int(m_entries.size()));
        m_entries.push_back(entry);
    }
}

/// No entry reaches into another one: entries that share bytes would let a small archive inflate without end, each of
/// them within its own bound, and one that lies about its size would cost those behind it.
void QZipReader::findEnds(qint64 directoryBegin)
{
    std::vector<qint64> begins{directoryBegin, m_file.size()};
    for (const Entry &entry : m_entries)
        begins.push_back(entry.begin);
    std::sort(begins.begin(), begins.end());
    QSet<qint64> taken;
    for (Entry &entry : m_entries) {
        const auto next = std::upper_bound(begins.begin(), begins.end(), entry.begin);
        const bool hasOwnHeader = next != begins.end() && !taken.contains(entry.begin);
        entry.end = hasOwnHeader ? *next : entry.begin;
        taken.insert(entry.begin);
        entry.info.compressedSize = std::min(entry.info.compressedSize, entry.end - entry.begin);
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
    entry.begin = number<quint32>(header, 42);
    entry.info.filePath = entry.flags & utf8Flag ? QString::fromUtf8(name) : QString::fromLocal8Bit(name);
    entry.info.filePath.replace(QLatin1Char('\\'), QLatin1Char('/'));
    setKind(entry.info, number<quint16>(header, 4), number<quint32>(header, 38));
    return true;
}

/// The entry's bytes as they are stored, null if it has none of its own. Sizes and method are the central directory's,
/// since streamed archives have none in the local header; only the lengths of name and extra field are the local ones.
QByteArray QZipReader::compressedBytes(const Entry &entry, qint64 mostBytes)
{
    const QByteArray local = readAt(entry.begin, localHeaderSize);
    if (local.size() != localHeaderSize || number<quint32>(local, 0) != localSignature)
        return {};
    const qint64 begin = entry.begin + localHeaderSize + number<quint16>(local, 26) + number<quint16>(local, 28);
    return readAt(begin, std::min(entry.end - begin, mostBytes));
}

int QZipReader::indexOf(const QString &fileName)
{
    scan();
    return m_indexes.value(fileName, -1);
}

QByteArray QZipReader::fileData(const QString &fileName, qint64 mostBytes)
{
    const int index = indexOf(fileName);
    if (index < 0)
        return {};
    const Entry &entry = m_entries[std::size_t(index)];
    const bool encrypted = entry.flags & encryptedFlag;
    if (encrypted || (entry.method != methodStored && entry.method != methodDeflated)) {
        qWarning("QZip: Unknown compression method");
        return {};
    }
    const bool isStored = entry.method == methodStored;
    const qint64 limit = std::min(inflationLimit(entry.info.size), mostBytes);
    if (limit < 1 || (isStored && std::min(entry.info.size, entry.end - entry.begin) > limit)) {
        qWarning("QZip: Z_MEM_ERROR: Not enough memory");
        return {};
    }
    // A stream that inflates to no more than the limit has about as many bytes at most.
    const QByteArray bytes = compressedBytes(entry, isStored ? entry.info.size : 2 * limit);
    if (bytes.isNull()) {
        qWarning("QZip: Z_DATA_ERROR: Input data is corrupted");
        return {};
    }
    return isStored ? bytes : inflateRaw(bytes, entry.info.size, limit, &m_bytesInflated);
}
