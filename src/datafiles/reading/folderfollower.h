#pragma once

#include "datafiles/reading/appendedrows.h"
#include "datafiles/reading/chunkparser.h"
#include "datafiles/reading/filestretch.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <map>

/// Finds what is appended to the files of a folder that was read, new files included, and parses it. A row without its
/// line feed waits for its rest. For one thread at a time; needs no event loop.
class FolderFollower {
public:
    struct Settings {
        QString folder;
        std::function<QStringList()> findFiles; ///< the paths of all files that a read would take now
        std::vector<FileStretch> stretches;     ///< what was read
        bool areHalfRowsAwaited = false;        ///< by that read
        KnownState known;                       ///< what it has learnt from headers
        std::size_t chunkBytes = 512 << 10;     ///< that are parsed at a time
    };
    enum class Found {
        nothing,
        rows,
        contradiction, ///< a file shrank, was replaced or has gone: only a read of all files tells what there is now
        lost           ///< the folder, or all that was in it; nothing that is there can be read
    };

    explicit FolderFollower(Settings settings);
    ~FolderFollower();

    /// The next rows in the order of the files' names; looks for new ones when all that was found is told.
    Found next(AppendedRows *rows);

private:
    struct File {
        FileStretch stretch;                        ///< all rows of which were told
        std::int64_t looked = 0;                    ///< the offset up to which there is no further end of a line
        bool isResumed = false;                     ///< the block at hand is known to whom is told
        std::shared_ptr<const BlockForecast> block; ///< of the next row; null if it isn't known
    };

    Found look();
    Found lookAt(const QString &path, File &file);
    Found parse(const QString &path, File &file, AppendedRows *rows);
    bool resume(const std::shared_ptr<const DataFile> &data, File &file, AppendedRows *rows);
    bool endsInHalfRow(const File &file) const;
    bool isHalfRowCompleted(const DataFile &data, const File &file) const;

    const Settings m_settings;
    RowForecasts m_rowForecasts;
    ChunkParser m_parser;
    std::map<QString, File> m_files;
    std::deque<QString> m_grown; ///< files with whole lines that weren't told
};
