#include "datafiles/reading/folderfollowing.h"

#include "datafiles/reading/filereader.h"
#include "datafiles/reading/folderwatch.h"
#include "util/postedcalls.h"
#include "util/workerthread.h"

#include <QElapsedTimer>

#include <algorithm>
#include <new>

namespace {

constexpr int regularLookMs = 5000;
constexpr int leastDistanceMs = 50; ///< between two looks
constexpr int lookShare = 10;       ///< looks take no more than this part of the time
constexpr int longestSliceMs = 8;   ///< the last rows of a slice take a moment more
constexpr int placingRetryMs = 100;
constexpr unsigned long patienceMs = 5000;

} // namespace

FolderFollowing::FolderFollowing(QObject *parent)
    : QObject(parent), m_logger(QStringLiteral("filereader")),
      m_placing(
          longestSliceMs, [this] { return placeSome(); }, [this] { placed(); })
{
    m_regularLook.setInterval(regularLookMs);
    m_nextLook.setSingleShot(true);
    m_nextLook.setInterval(leastDistanceMs);
    m_nextPlacing.setSingleShot(true);
    m_nextPlacing.setInterval(placingRetryMs);
    connect(&m_regularLook, &QTimer::timeout, this, &FolderFollowing::look);
    connect(&m_nextLook, &QTimer::timeout, this, &FolderFollowing::ask);
    connect(&m_nextPlacing, &QTimer::timeout, this, [this] { m_placing.start(); });
}

FolderFollowing::~FolderFollowing()
{
    stop();
    for (const QPointer<QThread> &thread : m_retired) {
        if (!thread)
            continue;
        thread->disconnect(thread, nullptr, thread, nullptr);
        if (thread->wait(patienceMs)) // deleting a thread that runs on would end the program
            delete thread;
    }
}

void FolderFollowing::start(std::shared_ptr<FileReader> reader, const QString &folder, FileFinder findFiles)
{
    stop();
    m_folder = folder;
    FolderFollower::Settings settings;
    settings.folder = folder;
    settings.findFiles = std::move(findFiles);
    settings.stretches = reader->stretches();
    settings.areHalfRowsAwaited = reader->areHalfRowsAwaited();
    settings.known = reader->makeForecast();
    QStringList paths;
    for (const FileStretch &stretch : settings.stretches)
        paths.append(stretch.path);
    m_follower = std::make_shared<FolderFollower>(std::move(settings));
    m_placer = std::make_unique<AppendedRowPlacer>(std::move(reader));
    m_placer->setFlagsTeller([this](const auto &flagged) { Q_EMIT flagsCame(flagged); });
    m_placer->setSpectrumFilter(m_isWanted);
    m_news = std::make_shared<Mailbox<News>>(this, "takeNews");

    startThread();
    watch(paths.mid(std::max(0, paths.size() - FolderWatch::mostFiles))); // the newest
    m_regularLook.start();
    look();
}

void FolderFollowing::stop()
{
    if (!isFollowing())
        return;
    m_regularLook.stop();
    m_nextLook.stop();
    m_nextPlacing.stop();
    m_placing.stop();
    disconnect(m_watch, nullptr, this, nullptr);
    m_news->detach();
    m_news.reset();
    m_follower.reset();
    m_placer.reset();
    m_thread->quit();
    m_retired.erase(std::remove(m_retired.begin(), m_retired.end(), nullptr), m_retired.end());
    m_retired.push_back(m_thread);
    m_thread = nullptr;
    m_watch = nullptr;
    m_calls = nullptr;
    m_isBusy = m_isLookDue = m_isLost = m_isPaused = m_isContradicted = false;
    m_busyMs = 0;
}

void FolderFollowing::setPaused(bool on)
{
    if (!isFollowing() || std::exchange(m_isPaused, on) == on)
        return;
    if (on) {
        m_nextLook.stop();
        m_nextPlacing.stop();
        m_placing.stop();
    } else if (m_placer->hasRows()) {
        startPlacing();
    } else if (m_isContradicted) {
        Q_EMIT contradicted();
    } else {
        look();
    }
}

// ---- looking

/// The watch lives on the thread: whatever asks the folder's file system may wait for it.
void FolderFollowing::startThread()
{
    m_thread = new WorkerThread;
    m_thread->setObjectName(QStringLiteral("following"));
    m_watch = new FolderWatch(m_folder);
    m_calls = new PostedCalls(m_watch);
    m_watch->moveToThread(m_thread);
    connect(m_watch, &FolderWatch::changed, this, &FolderFollowing::look);
    connect(m_thread, &QThread::finished, m_watch, &QObject::deleteLater);
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start(QThread::LowPriority);
}

void FolderFollowing::watch(const QStringList &paths)
{
    m_calls->post([watch = m_watch, paths] {
        for (const QString &path : paths)
            watch->watch(path);
    });
}

void FolderFollowing::look()
{
    m_isLookDue = true;
    if (isFollowing() && !m_isPaused && !m_isBusy && !m_nextLook.isActive())
        m_nextLook.start();
}

void FolderFollowing::ask()
{
    m_isBusy = true;
    m_isLookDue = false;
    m_calls->post([follower = m_follower, box = m_news] {
        QElapsedTimer clock;
        clock.start();
        News news;
        try {
            news.found = follower->next(&news.rows);
        } catch (const std::bad_alloc &) { // a read tells it
            news = News();
            news.found = FolderFollower::Found::contradiction;
        }
        news.ms = int(clock.elapsed());
        box->put([&news](News &held) { held = std::move(news); });
    });
}

void FolderFollowing::takeNews()
{
    if (!m_news || !m_isBusy)
        return;
    News news = m_news->take();
    tellLoss(news.found == FolderFollower::Found::lost);
    m_busyMs += news.ms;
    m_isMoreFound = news.rows.isMoreFound;
    switch (news.found) {
    case FolderFollower::Found::rows:
        watch({news.rows.path});
        m_placer->take(std::move(news.rows));
        startPlacing();
        break;
    case FolderFollower::Found::contradiction:
        contradict();
        break;
    case FolderFollower::Found::nothing:
    case FolderFollower::Found::lost:
        rest();
        break;
    }
}

/// Until it is told of a change, and not before a while: rows may come all the time.
void FolderFollowing::rest()
{
    m_isBusy = false;
    m_nextLook.setInterval(std::max(leastDistanceMs, std::exchange(m_busyMs, 0) * lookShare));
    if (m_isLookDue)
        look();
    Q_EMIT caughtUp();
}

void FolderFollowing::tellLoss(bool isLost)
{
    if (std::exchange(m_isLost, isLost) == isLost)
        return;
    if (isLost) {
        m_logger.log(Log::Warning,
                     QStringLiteral("The folder '%1' can't be read. Following waits until it can.").arg(m_folder));
    } else {
        m_logger.log(Log::Info, QStringLiteral("The folder '%1' is back.").arg(m_folder));
        m_calls->post([watch = m_watch] { watch->renew(); });
    }
}

// ---- placing

void FolderFollowing::startPlacing()
{
    if (!m_isPaused)
        m_placing.start();
}

bool FolderFollowing::placeSome()
{
    if (!m_mayPlace || m_mayPlace())
        return m_placer->placeSome();
    m_nextPlacing.start();
    return false;
}

void FolderFollowing::placed()
{
    if (m_nextPlacing.isActive())
        return;
    if (m_placer->isContradicted()) {
        contradict();
    } else if (m_isMoreFound) {
        ask();
    } else {
        m_isLookDue = true; // more may have come, and not all files are watched
        rest();
    }
}

/// Stays busy: nothing more is looked for.
void FolderFollowing::contradict()
{
    m_isContradicted = true;
    m_logger.log(Log::Info, QStringLiteral("Files of '%1' have changed where they were read already.").arg(m_folder));
    if (!m_isPaused)
        Q_EMIT contradicted();
}
