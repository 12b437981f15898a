#pragma once

#include "datafiles/reading/chunkparser.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <thread>

/// Reads and parses a list of files ahead of the thread that puts their rows together, on threads of its own and on
/// that thread while it waits. No more is ahead than 56 MB, and eight chunks for each thread.
///
/// A file whose chunk isn't whole, for whatever reason, is to be read as one from that chunk on: the owner of the rows
/// does as it would without this class, and meets the same fault, if there still is one.
class ReadAhead {
public:
    struct Settings {
        int threads = 2;            ///< with the caller's
        std::size_t chunkBytes = 0; ///< 0: as suits the threads
        /// Is called on a parsing thread whenever it has parsed a chunk, before that is handed over. May be empty.
        std::function<void()> parsed;
    };

    ReadAhead(const QStringList &paths, const Settings &settings, std::unique_ptr<const FileReaderState> known);
    ~ReadAhead();
    ReadAhead(const ReadAhead &) = delete;
    ReadAhead &operator=(const ReadAhead &) = delete;

    // ---- for one thread, the one that places the rows
    /// Goes to the next chunk of the file of that index, which has one, and lets go of the one before; earlier files
    /// are passed over. False for a file that couldn't be opened. Throws std::bad_alloc.
    bool next(int file);
    /// That chunk, and the open file of it.
    ParsedChunk &present() { return *m_present->chunk; }
    const std::shared_ptr<const DataFile> &dataFile() const { return m_present->file->data; }
    /// Passes over all chunks of files before that one.
    void skipTo(int file);
    /// Tells what the headers have told so far, for guesses at those that come.
    void setKnown(std::unique_ptr<const FileReaderState> known);
    /// Looks at the present chunk, whose rows are in their places, for guesses at the rows that come.
    void learn();

private:
    struct File {
        int index = 0;
        std::shared_ptr<const DataFile> data;
        FileForecast forecast;
    };
    struct Job {
        std::shared_ptr<File> file;
        std::unique_ptr<ParsedChunk> chunk;
        std::size_t memory = 0; ///< that it is taken to hold
        bool isDone = false;
        bool isDropped = false;
    };

    void work();
    std::shared_ptr<Job> takeJob();
    void openNextFile();
    void doJob(Job &job, ChunkParser &parser, std::unique_lock<std::mutex> &lock);
    void release(Job &job);

    const QStringList m_paths;
    const Settings m_settings;
    const std::size_t m_chunkBytes;
    const std::size_t m_chunkMemory;
    const std::size_t m_mostJobs;
    RowForecasts m_rowForecasts;
    bool m_hasLearnt = false;       ///< the caller's
    ChunkParser m_parser;           ///< of the caller's thread
    std::shared_ptr<Job> m_present; ///< whose chunk the caller has

    std::mutex m_mutex; ///< guards all that follows
    std::condition_variable m_hasRoom;
    std::condition_variable m_isDone;
    bool m_isEnding = false;
    KnownState m_known;
    std::deque<std::shared_ptr<Job>> m_jobs; ///< in the order of files and rows
    std::size_t m_memory = 0;                ///< of all jobs
    int m_nextFile = 0;
    std::shared_ptr<File> m_file; ///< which the next chunk is of; null at the end of a file
    std::int64_t m_nextBegin = 0;
    std::vector<std::unique_ptr<ParsedChunk>> m_spare;
    std::vector<std::thread> m_threads;
};
