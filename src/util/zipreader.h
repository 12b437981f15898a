#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QString>

#include <vector>

/// Reads zip archives, as far as packs of inverter files need it: stored and deflated entries of a single-file archive.
/// Nothing in the file is believed beyond the bytes that are there: an entry ends where the next local header, the
/// directory or the file does, whichever size it declares. Inflation is bounded. Complaints go out as Qt warnings, and
/// nothing is thrown but std::bad_alloc. The checksum isn't looked at. One reader belongs to one thread.
class QZipReader {
public:
    struct FileInfo {
        QString filePath; ///< as stored, backslashes turned into slashes
        bool isDir = false;
        bool isFile = false;
        bool isSymLink = false;
        QFile::Permissions permissions;
        quint32 crc = 0;
        qint64 size = 0;           ///< uncompressed, as the central directory declares it
        qint64 compressedSize = 0; ///< likewise, but at most the bytes there are
        QDateTime lastModified;
    };

    enum Status { NoError, FileReadError, FileOpenError, FilePermissionsError, FileError };

    /// Opens regular files alone.
    explicit QZipReader(const QString &fileName, QIODevice::OpenMode mode = QIODevice::ReadOnly);

    /// Non-zero means that the archive can't be read.
    Status status() const { return m_status; }
    /// The number of entries. The first call scans the central directory.
    int count();
    /// The entry; a default one for an index out of range.
    FileInfo entryInfoAt(int index);
    /// The entry of exactly this name, the first of several; -1 for an unknown name.
    int indexOf(const QString &fileName);
    /// The uncompressed bytes of that entry; empty for an unknown name or on failure, and where it inflates to more
    /// than `mostBytes`.
    QByteArray fileData(const QString &fileName, qint64 mostBytes = longestInflation);
    /// The number of bytes that fileData() has inflated so far, failures included.
    qint64 bytesInflated() const { return m_bytesInflated; }

    static constexpr qint64 longestInflation = qint64(64) << 20;

private:
    struct Entry {
        FileInfo info;
        quint16 flags = 0;
        quint16 method = 0;
        qint64 begin = 0; ///< of the local header
        qint64 end = 0;   ///< of the bytes that may be its own; the begin for an entry on the header of another
    };

    void scan();
    qint64 findEndOfDirectory();
    void readDirectory(int entryCount, qint64 position);
    bool readEntry(Entry &entry, qint64 &position);
    void findEnds(qint64 directoryBegin);
    QByteArray readAt(qint64 position, qint64 size);
    QByteArray compressedBytes(const Entry &entry, qint64 mostBytes);

    QFile m_file;
    Status m_status = NoError;
    bool m_scanned = false;
    std::vector<Entry> m_entries;
    QHash<QString, int> m_indexes; ///< of the first entry of each name
    qint64 m_bytesInflated = 0;
};

/// The greatest size that an entry of that declared size may inflate to: the greater of 16 MB and the declared size,
/// and never above 64 MB.
qint64 inflationLimit(qint64 declaredSize);
