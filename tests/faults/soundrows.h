#pragma once

#include "datafiles/reading/filereader.h"
#include "faults/damagedfile.h"

#include <QHash>
#include <QSet>

#include <map>

namespace Faults {

/// Reads files of a folder by that many threads, in chunks of that many bytes. *complaints (may be null) get what the
/// log was told.
std::shared_ptr<FileReader> readFiles(const QString &folder, const QStringList &files, int threads,
                                      std::size_t chunkBytes, QString *complaints);

/// Tells whether the rows of a damaged folder that are sound still were read to the bit. A row is sound if its line
/// and the whole of its header are untouched, and no changed line has its time. The judge finds that out with a rule of
/// its own, which doesn't know how files are read.
class SoundRows {
public:
    /// The sound folder, whose files are read one by one.
    explicit SoundRows(const QString &folder);

    const std::vector<DamagedFile> &files() const { return m_files; }
    /// The first fault; empty if there is none. `files` are all files of the folder, `reader` has read them.
    QString faultOf(const std::vector<DamagedFile> &files, const FileReader &reader);
    /// Sound rows that the last call has compared.
    int comparedRows() const { return m_compared; }

private:
    struct Row {
        int file;
        qint64 time;
        QStringList flags; ///< definitions
        bool flagsKnown = false;
        bool electrometersKnown = false; ///< no changed header comes before that might tell of others
    };
    struct SoundFile {
        std::shared_ptr<FileReader> reader; ///< has read it alone
        std::vector<int> headerOf;          ///< for each line, the number of its header; equal headers have one
    };

    void walk(int file, const DamagedFile &damaged);
    void noteChanged(int file, QByteArray line);
    QString faultOf(const Row &row, const FileReader &reader) const;
    const Record *soundRecord(int file, qint64 time) const;

    std::vector<DamagedFile> m_files;
    std::vector<SoundFile> m_sound;

    // of one folder
    std::vector<Row> m_rows;
    std::map<int, QSet<qint64>> m_changed; ///< times of changed rows, by the parts of a record that a file may write
    QSet<qint64> m_times;                  ///< all that there may be
    QHash<qint64, const Record *> m_found;
    bool m_headersWhole = true;
    int m_compared = 0;
};

} // namespace Faults
