#include "datafiles/reading/readahead.h"

#include "util/alternatestack.h"

#include <algorithm>
#include <system_error>

#include <malloc.h>

namespace {

constexpr std::size_t mostMemory = std::size_t(56) << 20;
constexpr std::size_t spareChunks = 64;
constexpr std::size_t chunksOfThread = 8; // ahead at most: of small files each is an open one

std::size_t chunkBytesFor(const ReadAhead::Settings &settings)
{
    if (settings.chunkBytes > 0)
        return settings.chunkBytes;
    return std::size_t(settings.threads <= 8 ? 512 : 128) << 10;
}

/// The most that one chunk may take: what takes more are few bytes a line, which aren't rows with numbers.
std::size_t chunkMemoryFor(std::size_t bytes)
{
    return std::max(8 * bytes, std::size_t(1) << 20);
}

} // namespace

ReadAhead::ReadAhead(const QStringList &paths, const Settings &settings, std::unique_ptr<const FileReaderState> known)
    : m_paths(paths), m_settings(settings), m_chunkBytes(chunkBytesFor(settings)),
      m_chunkMemory(chunkMemoryFor(m_chunkBytes)), m_mostJobs(chunksOfThread * std::size_t(settings.threads)),
      m_parser(m_rowForecasts), m_known(std::move(known))
{
    m_spare.reserve(spareChunks);
    try {
        for (int i = 1; i < settings.threads; ++i)
            m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error &) { // fewer do as well
    } catch (const std::bad_alloc &) {
    }
}

ReadAhead::~ReadAhead()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
        m_hasRoom.notify_all();
    }
    for (std::thread &thread : m_threads)
        thread.join();
    m_present.reset();
    m_jobs.clear();
    m_spare.clear();
    malloc_trim(0); // what the threads have freed stays with their arenas else
}

void ReadAhead::work()
{
    const AlternateStack signalStack;
    ChunkParser parser(m_rowForecasts);
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        std::shared_ptr<Job> job;
        try {
            job = takeJob();
        } catch (const std::bad_alloc &) { // the caller's thread tells it, if it comes to that
        }
        if (job)
            doJob(*job, parser, lock);
        else
            m_hasRoom.wait(lock);
    }
}

/// The next chunk, with the mutex locked; null if there is no room for more, or no more.
std::shared_ptr<ReadAhead::Job> ReadAhead::takeJob()
{
    if (!m_jobs.empty() && (m_memory + m_chunkMemory > mostMemory || m_jobs.size() >= m_mostJobs))
        return nullptr;
    if (!m_file && m_nextFile == m_paths.size())
        return nullptr;
    if (!m_file)
        openNextFile();
    const std::int64_t size = m_file->data ? m_file->data->size() : 0;
    const std::int64_t end = std::min(size, m_nextBegin + std::int64_t(m_chunkBytes));
    auto job = std::make_shared<Job>();
    job->file = m_file;
    if (m_spare.empty()) {
        job->chunk = std::make_unique<ParsedChunk>(m_nextBegin, end, end == size);
    } else {
        job->chunk = std::move(m_spare.back());
        m_spare.pop_back();
        job->chunk->start(m_nextBegin, end, end == size);
    }
    m_jobs.push_back(job);
    job->memory = m_chunkMemory;
    m_memory += job->memory;
    m_nextBegin = end;
    if (end == size)
        m_file.reset();
    return job;
}

void ReadAhead::openNextFile()
{
    auto file = std::make_shared<File>();
    file->index = m_nextFile;
    file->data = DataFile::open(m_paths[m_nextFile]);
    m_file = std::move(file);
    m_nextBegin = 0;
    ++m_nextFile;
}

/// The mutex is unlocked meanwhile.
void ReadAhead::doJob(Job &job, ChunkParser &parser, std::unique_lock<std::mutex> &lock)
{
    const KnownState known = m_known;
    lock.unlock();
    if (job.file->data)
        parser.parse(*job.chunk, *job.file->data, job.file->forecast, known, m_chunkMemory);
    if (m_settings.parsed)
        m_settings.parsed();
    lock.lock();
    job.isDone = true;
    m_memory -= job.memory;
    job.memory = job.chunk->memory();
    m_memory += job.memory;
    if (job.isDropped)
        release(job);
    else if (!m_jobs.empty() && m_jobs.front().get() == &job)
        m_isDone.notify_one();
}

/// Gives back what a job that is done holds, with the mutex locked.
void ReadAhead::release(Job &job)
{
    m_memory -= job.memory;
    job.memory = 0;
    job.chunk->clear();
    if (m_spare.size() < spareChunks && job.chunk->memory() < m_chunkMemory / 2)
        m_spare.push_back(std::move(job.chunk));
    m_hasRoom.notify_one();
}

bool ReadAhead::next(int file)
{
    skipTo(file);
    if (m_present)
        m_present->chunk->clear(); // not while others wait
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_present) {
        release(*m_present);
        m_present.reset();
    }
    while (m_jobs.empty() || !m_jobs.front()->isDone) {
        if (const auto job = takeJob())
            doJob(*job, m_parser, lock);
        else
            m_isDone.wait(lock);
    }
    m_present = m_jobs.front();
    m_jobs.pop_front();
    return m_present->file->data != nullptr;
}

void ReadAhead::skipTo(int file)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (!m_jobs.empty() && m_jobs.front()->file->index < file) {
        Job &job = *m_jobs.front();
        job.isDropped = true;
        if (job.isDone)
            release(job);
        m_jobs.pop_front();
    }
    if (m_file && m_file->index < file)
        m_file.reset();
    m_nextFile = std::max(m_nextFile, file);
}

void ReadAhead::setKnown(std::unique_ptr<const FileReaderState> known)
{
    std::shared_ptr<const FileReaderState> shared(std::move(known));
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_known = std::move(shared);
}

void ReadAhead::learn()
{
    const ParsedChunk &chunk = *m_present->chunk;
    if (chunk.blocks.empty() || !chunk.blocks.back()->parser())
        return;
    if (!m_hasLearnt) // as a rule, rows of one kind alone make records
        for (RowForecast &forecast : m_rowForecasts)
            forecast.newRecord = false;
    m_hasLearnt = true;
    RowForecast &forecast = m_rowForecasts[std::size_t(chunk.blocks.back()->parser()->layout().kind)];
    forecast.newRecord = 2 * chunk.rows.newRecords >= chunk.rows.rows.size();
    forecast.newNumbers = 2 * chunk.rows.newNumbers >= chunk.rows.rows.size();
}
