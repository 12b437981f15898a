#include "util/lockedfile.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace {

struct LockedFiles : testing::Test {
    QTemporaryDir directory;
    QString path = directory.filePath("day.records");
    LockedFile first{path};
    LockedFile second{path};

    void SetUp() override
    {
        ASSERT_TRUE(first.open(QIODevice::ReadWrite | QIODevice::Append));
        ASSERT_TRUE(second.open(QIODevice::ReadWrite | QIODevice::Append));
    }
};

TEST_F(LockedFiles, ASecondWriterIsRefused)
{
    EXPECT_TRUE(first.lock(LockedFile::WriteLock, false));
    EXPECT_TRUE(first.isLocked());
    EXPECT_FALSE(second.lock(LockedFile::WriteLock, false));
    EXPECT_FALSE(second.lock(LockedFile::ReadLock, false));
    EXPECT_FALSE(second.isLocked());
    first.unlock();
    EXPECT_TRUE(second.lock(LockedFile::WriteLock, false));
}

TEST_F(LockedFiles, AnotherProcessIsRefused)
{
    ASSERT_TRUE(first.lock(LockedFile::WriteLock, false));
    const pid_t child = fork();
    if (child == 0) {
        LockedFile other(path);
        const bool taken = other.open(QIODevice::Append) && other.lock(LockedFile::WriteLock, false);
        _exit(taken ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(LockedFiles, SurvivesTheClosingOfAnotherDescriptor)
{
    ASSERT_TRUE(first.lock(LockedFile::WriteLock, false));
    {
        QFile reader(path);
        ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    }
    EXPECT_FALSE(second.lock(LockedFile::WriteLock, false));
}

TEST_F(LockedFiles, ReadersShareAndARefusedUpgradeKeepsTheReadLock)
{
    EXPECT_TRUE(first.lock(LockedFile::ReadLock, false));
    EXPECT_TRUE(second.lock(LockedFile::ReadLock, false));
    EXPECT_FALSE(first.lock(LockedFile::WriteLock, false));
    second.unlock();
    LockedFile third(path);
    ASSERT_TRUE(third.open(QIODevice::Append));
    EXPECT_FALSE(third.lock(LockedFile::WriteLock, false));
    EXPECT_TRUE(first.lock(LockedFile::WriteLock, false));
}

TEST_F(LockedFiles, ClosingAndDestroyingUnlockWhatWasWritten)
{
    ASSERT_TRUE(first.lock(LockedFile::WriteLock, false));
    first.write("row\n");
    first.unlock();
    EXPECT_EQ(QFileInfo(path).size(), 4) << "flushed while locked";
    ASSERT_TRUE(first.lock(LockedFile::WriteLock, false));
    first.close();
    EXPECT_FALSE(first.isLocked());
    EXPECT_FALSE(first.lock(LockedFile::WriteLock, false)) << "not open";
    {
        LockedFile brief(path);
        ASSERT_TRUE(brief.open(QIODevice::Append));
        ASSERT_TRUE(brief.lock(LockedFile::WriteLock, false));
    }
    EXPECT_TRUE(second.lock(LockedFile::WriteLock, false));
}

TEST_F(LockedFiles, TouchSetsThePresentTime)
{
    ASSERT_TRUE(first.setFileTime(QDateTime::fromMSecsSinceEpoch(1000000), QFileDevice::FileModificationTime));
    const QDateTime before = QDateTime::currentDateTime().addSecs(-2);
    EXPECT_TRUE(first.touch());
    EXPECT_GT(QFileInfo(path).lastModified(), before);
    first.close();
    EXPECT_FALSE(first.touch());
}

} // namespace
