#include "gui/frame/followcommand.h"

#include "datafiles/reading/filereader.h"

#include <QAction>

#include <algorithm>

namespace {

constexpr int retryMs = 500;
constexpr int readShare = 10; ///< reads take no more than this part of the time

} // namespace

FollowCommand::FollowCommand(QObject *parent, int leastDistanceMs)
    : QObject(parent), m_leastDistanceMs(leastDistanceMs), m_action(new QAction(tr("Follow folder"), this))
{
    m_action->setCheckable(true);
    m_action->setEnabled(false);
    m_action->setToolTip(tr("Takes in what is appended to the files, and the files of new days"));
    connect(m_action, &QAction::toggled, this, &FollowCommand::setOn);
    m_readAgain.setSingleShot(true);
    connect(&m_readAgain, &QTimer::timeout, this, &FollowCommand::readAgainIfPossible);
    connect(&m_following, &FolderFollowing::contradicted, this, &FollowCommand::readAgainSoon);
}

bool FollowCommand::isOn() const
{
    return m_action->isChecked();
}

void FollowCommand::setMayChange(std::function<bool()> mayChange)
{
    m_mayChange = mayChange;
    m_following.setMayPlace(std::move(mayChange));
}

void FollowCommand::setData(std::shared_ptr<FileReader> reader, const QString &folder,
                            FolderFollowing::FileFinder findFiles)
{
    m_reader = std::move(reader);
    m_folder = folder;
    m_findFiles = std::move(findFiles);
    m_action->setEnabled(true);
    if (isOn())
        setOn(true);
}

void FollowCommand::closeData(bool isReadAgain)
{
    noteReadEnd();
    m_readAgain.stop();
    m_isReadWanted = false;
    m_following.stop();
    m_reader.reset();
    m_action->setEnabled(false);
    if (!isReadAgain)
        m_action->setChecked(false);
}

void FollowCommand::setOn(bool on)
{
    if (on && m_following.isFollowing()) {
        m_following.setPaused(false);
    } else if (on && m_reader) {
        m_following.start(m_reader, m_folder, m_findFiles);
    } else {
        m_readAgain.stop();
        m_isReadWanted = false;
        m_following.setPaused(true);
    }
    Q_EMIT changed(on);
}

// ---- where the files contradict what was read

void FollowCommand::readAgainSoon()
{
    m_isReadWanted = true;
    const qint64 distance = std::max<qint64>(m_leastDistanceMs, m_readMs * readShare);
    const qint64 left = m_sinceRead.isValid() ? distance - m_sinceRead.elapsed() : 0;
    m_readAgain.start(int(std::max<qint64>(left, 0)));
}

void FollowCommand::readAgainIfPossible()
{
    if (m_mayChange && !m_mayChange()) {
        m_readAgain.start(retryMs);
        return;
    }
    m_sinceRead.start();
    m_isReading = true;
    Q_EMIT readAgainWanted();
}

void FollowCommand::noteReadEnd()
{
    if (m_isReading)
        m_readMs = m_sinceRead.elapsed();
    m_isReading = false;
}

void FollowCommand::readFailed(bool cancelled)
{
    if (!m_isReadWanted)
        return;
    noteReadEnd();
    if (cancelled)
        m_action->setChecked(false);
    else
        readAgainSoon();
}
