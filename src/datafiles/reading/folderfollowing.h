#pragma once

#include "datafiles/reading/appendedrowplacer.h"
#include "datafiles/reading/folderfollower.h"
#include "log/logger.h"
#include "util/mailbox.h"
#include "util/slicedwork.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QThread>
#include <QTimer>

#include <functional>
#include <memory>

class FileReader;
class FolderWatch;
class PostedCalls;

/// Follows the folder of the open data: what is appended to its files is parsed on a thread and comes into the store in
/// slices. The system tells of changes, and every 5 s there is a look for file systems that don't. Main thread only.
class FolderFollowing : public QObject {
    Q_OBJECT
public:
    using FileFinder = std::function<QStringList()>;

    explicit FolderFollowing(QObject *parent = nullptr);
    /// Waits at most 5 s for a look that is under way; a thread that takes longer is left behind.
    ~FolderFollowing() override;

    /// Goes on with a read, which is over. The finder is called on another thread for the paths of all files that a
    /// read would take by then.
    void start(std::shared_ptr<FileReader> reader, const QString &folder, FileFinder findFiles);
    /// What isn't in the store by now doesn't come any more. A start behind this must be with another read: the rows
    /// of this one would come twice.
    void stop();
    /// Nothing is looked for, and rows that were found wait, until this is undone.
    void setPaused(bool on);
    bool isFollowing() const { return m_placer != nullptr; }
    /// Rows wait while this is false: records and names don't change then. It is asked often.
    void setMayPlace(std::function<bool()> mayPlace) { m_mayPlace = std::move(mayPlace); }
    /// From the next start on.
    void setSpectrumFilter(AppendedRowPlacer::SpectrumFilter isWanted) { m_isWanted = std::move(isWanted); }
    /// Looks as soon as it can.
    void look();
    /// Rows that came into the store since the start, headers and comments among them.
    int rowsPlaced() const { return m_placer ? m_placer->rowsPlaced() : 0; }

Q_SIGNALS:
    /// All rows that were found are in the store.
    void caughtUp();
    /// Only another read tells what there is now. Following goes on only after that.
    void contradicted();
    /// Flags came to a record that was there: its head, and these flags alone.
    void flagsCame(const Spectrometer::FullRecordPointer &flagged);

private Q_SLOTS:
    void takeNews();

private:
    struct News {
        FolderFollower::Found found = FolderFollower::Found::nothing;
        AppendedRows rows;
        int ms = 0; ///< that it took
    };

    void startThread();
    void watch(const QStringList &paths);
    void ask();
    void rest();
    bool placeSome();
    void startPlacing();
    void placed();
    void tellLoss(bool isLost);
    void contradict();

    const Log::Logger m_logger;
    std::function<bool()> m_mayPlace;
    AppendedRowPlacer::SpectrumFilter m_isWanted;
    QString m_folder;
    QPointer<QThread> m_thread;                 ///< null while nothing is followed
    FolderWatch *m_watch = nullptr;             ///< lives on the thread, and goes with it
    PostedCalls *m_calls = nullptr;             ///< of that thread, a child of the watch
    std::shared_ptr<FolderFollower> m_follower; ///< the worker's alone
    std::shared_ptr<Mailbox<News>> m_news;
    std::unique_ptr<AppendedRowPlacer> m_placer; ///< null while nothing is followed
    SlicedWork m_placing;
    QTimer m_regularLook;
    QTimer m_nextLook;     ///< runs while a look is due but for its distance from the last one
    QTimer m_nextPlacing;  ///< runs while rows have to wait
    int m_busyMs = 0;      ///< of the thread, since the last rest
    bool m_isBusy = false; ///< from a look to the last of its rows in the store
    bool m_isLookDue = false;
    bool m_isMoreFound = false; ///< than the rows at hand
    bool m_isLost = false;
    bool m_isPaused = false;
    bool m_isContradicted = false;
    std::vector<QPointer<QThread>> m_retired; ///< that were told to end
};
