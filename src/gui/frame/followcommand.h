#pragma once

#include "datafiles/reading/folderfollowing.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

class QAction;

/// The command that follows the folder of the open data, until it is chosen again or other data are opened. Where the
/// files contradict what was read, it asks for another read and goes on behind that, at once the first time, and then
/// with some distance, so that reads take no more than a tenth of the time. Main thread only.
class FollowCommand : public QObject {
    Q_OBJECT
public:
    explicit FollowCommand(QObject *parent, int leastDistanceMs = 15000);

    QAction *action() const { return m_action; }
    bool isOn() const;
    FolderFollowing &following() { return m_following; }
    /// False while records must not change, and data not be replaced. It is asked often.
    void setMayChange(std::function<bool()> mayChange);

    /// The data that are open now, and the paths of all files that a read of them would take at a later moment: the
    /// finder is called on another thread. Goes on if it is on.
    void setData(std::shared_ptr<FileReader> reader, const QString &folder, FolderFollowing::FileFinder findFiles);
    /// The data go; it stays on if they are only read again.
    void closeData(bool isReadAgain);
    /// The read that was asked for was cancelled, or has found nothing.
    void readFailed(bool cancelled);

Q_SIGNALS:
    void changed(bool on);
    void readAgainWanted();

private:
    void setOn(bool on);
    void readAgainSoon();
    void readAgainIfPossible();
    void noteReadEnd();

    const int m_leastDistanceMs; ///< from one read to the next
    QAction *m_action;
    FolderFollowing m_following;
    std::function<bool()> m_mayChange;
    std::shared_ptr<FileReader> m_reader; ///< of the open data
    QString m_folder;
    FolderFollowing::FileFinder m_findFiles;
    QTimer m_readAgain; ///< runs from a contradiction to the read
    bool m_isReadWanted = false;
    bool m_isReading = false;  ///< as it was asked for
    QElapsedTimer m_sinceRead; ///< that was asked for
    qint64 m_readMs = 0;       ///< that it took
};
