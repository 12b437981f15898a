#pragma once

#include "log/logger.h"
#include "util/filereplacement.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class FileCalls;

namespace DataExport {

/// Files that grow line by line and come into being together. Until commit() each is called "NAME.unfinished" (with
/// six random letters before the ending where that name is taken); before that, and after any other end, what stood
/// there stands as it was, and nothing new does. At most 64 of them are open at any time. One thread at a time.
///
/// A file that can't be opened costs its own lines and one message. A file that can't be written costs all: lines are
/// lost from then on, and commit() fails.
class ExportFiles {
public:
    /// `head` is the beginning of every file.
    ExportFiles(const QByteArray &head, ExistingFile existing);
    ~ExportFiles(); ///< cancels
    ExportFiles(const ExportFiles &) = delete;
    ExportFiles &operator=(const ExportFiles &) = delete;

    /// Appends to the file of that path, which is begun with its head, and with its folder if need be. False if the
    /// line is lost.
    bool append(const QString &path, const char *bytes, std::size_t size);

    /// Moves all files into place, once all of them are on the disk. False, with a message, if not all of them stand
    /// there: those that took no other's place are taken back then.
    bool commit();
    /// Whether the names of the files that stand there are on the disk, too; if not, that was told.
    bool areNamesOnDisk() const { return m_areNamesOnDisk; }
    /// Removes all files, and the folders that were made for them.
    void cancel();

    /// Paths of the files that lines went into, sorted.
    QStringList paths() const;

private:
    struct File;
    using FilePointer = std::shared_ptr<File>;

    FilePointer fileFor(const QString &path);
    FilePointer begin(const QString &path);
    bool makeFolder(const QString &folder);
    QString obstacleAt(const QString &path) const;
    bool create(File &file);
    bool reopen(File &file);
    bool flush(File &file);
    bool close(File &file);
    void makeRoom();
    bool fail(const File &file, int systemError);
    void tellUnopened(const QString &path, const QString &reason);
    bool syncAll(const std::vector<FilePointer> &files);
    bool moveAll(const std::vector<FilePointer> &files);
    std::vector<FilePointer> begunFiles() const;

    Log::Logger m_logger;
    FileCalls &m_calls;
    QByteArray m_head;
    ExistingFile m_existing;
    QHash<QString, FilePointer> m_files; ///< by path, those that couldn't be opened too
    std::vector<FilePointer> m_open;     ///< the one used last at the end
    QStringList m_madeFolders;           ///< the outermost first
    QString m_toldFolder;                ///< of which it was told that it can't be made
    bool m_failed = false;
    bool m_areNamesOnDisk = true;
};

} // namespace DataExport
