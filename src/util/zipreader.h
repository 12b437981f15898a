#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>

#include <vector>

/// Reads zip archives, as far as packs of inverter files need it: stored and deflated entries of a single-file archive.
/// Nothing in the file is believed beyond the bytes that are there, and inflation is bounded. Never throws; complaints
/// go out as Qt warnings. The checksum isn't looked at. One reader belongs to one thread.
class QZipReader {
public:
    struct FileInfo {
        QString filePath; ///< as stored, backslashes turned into slashes
        bool isDir = false;
        bool isFile = false;
        bool isSymLink = false;
        QFile::Permissions permissions;
        quint32 crc = 0;
        qint64 size = 0; ///< uncompressed, as the central directory declares it
        qint64 compressedSize = 0;
        QDateTime lastModified;
    };

    enum Status { NoError, FileReadError, FileOpenError, FilePermissionsError, FileError };

    explicit QZipReader(const QString &fileName, QIODevice::OpenMode mode = QIODevice::ReadOnly);

    /// Non-zero means that the archive can't be read.
    Status status() const { return m_status; }
    /// The number of entries. The first call scans the central directory.
    int count();
    /// The entry; a default one for an index out of range.
    FileInfo entryInfoAt(int index);
    /// The uncompressed bytes of the entry of exactly this name; empty for an unknown name or on failure.
    QByteArray fileData(const QString &fileName);

private:
    struct Entry {
        FileInfo info;
        quint16 flags = 0;
        quint16 method = 0;
        qint64 localHeaderOffset = 0;
        bool overlaps = false; ///< lies on the bytes of another entry, as no honest archive has it
    };

    void scan();
    qint64 findEndOfDirectory();
    void readDirectory(int entryCount, qint64 position);
    bool readEntry(Entry &entry, qint64 &position);
    void markOverlaps();
    QByteArray readAt(qint64 position, qint64 size);
    QByteArray compressedBytes(const Entry &entry);

    QFile m_file;
    Status m_status = NoError;
    bool m_scanned = false;
    std::vector<Entry> m_entries;
};

/// The greatest size that an entry of that declared size may inflate to: the greater of 16 MB and the declared size,
/// and never above 64 MB.
qint64 inflationLimit(qint64 declaredSize);
