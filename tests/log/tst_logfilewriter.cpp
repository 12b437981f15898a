#include "log/logfilewriter.h"

#include "log/logger.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "util/buildinfo.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTemporaryDir>

#include <unistd.h>

namespace {

struct LogFiles : testing::Test {
    Log::Entry entry(int day, int level, const QString &message) const
    {
        return {level, "main", message, QDateTime({2019, 9, day}, {12, 16, 52, 7})};
    }
    QString content(const QString &name) const { return QString::fromUtf8(contentOf(folder + "/" + name)); }

    QTemporaryDir directory;
    QString folder = directory.filePath("new/logs");
    QString header = "# Quilvane program log\n#   program path: " + QCoreApplication::applicationFilePath() +
                     ", pid: " + QString::number(QCoreApplication::applicationPid()) +
                     "\n#   software version: " + BuildInfo::version() + ", revision: " + BuildInfo::revision() +
                     ", build time: " + BuildInfo::buildTime() + "\n#   system architecture: " + QSysInfo::buildAbi() +
                     ", os: " + QSysInfo::prettyProductName() + ", kernel: " + QSysInfo::kernelType() + " " +
                     QSysInfo::kernelVersion() + "\n";
};

TEST_F(LogFiles, OneADayEachWithAHeader)
{
    Log::LogFileWriter writer(folder);
    writer.write(entry(12, 5, "a\nb\nc %1"));
    writer.write(entry(12, 0, "x"));
    writer.write(entry(12, 8, "x"));
    writer.write(entry(13, 1, "x"));
    EXPECT_EQ(content("20190912.log"), header + "2019-09-12 12:16:52.007\tnotice\tmain\ta\n\tb\n\tc %1\n"
                                                "2019-09-12 12:16:52.007\tunknown\tmain\tx\n"
                                                "2019-09-12 12:16:52.007\tunknown\tmain\tx\n");
    EXPECT_EQ(content("20190913.log"), header + "2019-09-13 12:16:52.007\talert\tmain\tx\n");
}

TEST_F(LogFiles, OpeningAgainAddsASecondHeader)
{
    Log::LogFileWriter(folder).write(entry(12, 6, "x"));
    Log::LogFileWriter(folder).write(entry(12, 6, "x"));
    const QString part = header + "2019-09-12 12:16:52.007\tinfo\tmain\tx\n";
    EXPECT_EQ(content("20190912.log"), part + part);
}

TEST_F(LogFiles, AFailureGoesToStandardErrorAndIsTriedAgain)
{
    writeFile(directory.filePath("new")); // in the way
    Log::LogFileWriter writer(folder);
    testing::internal::CaptureStderr();
    writer.write(entry(12, 6, "lost"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Failed to create log file destination dir\n");

    ASSERT_TRUE(QFile::remove(directory.filePath("new")));
    ASSERT_TRUE(QDir(directory.path()).mkpath("new/logs/20190912.log"));
    testing::internal::CaptureStderr();
    writer.write(entry(12, 6, "lost"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Failed to open log file for appending\n");

    ASSERT_TRUE(QDir(folder).rmdir("20190912.log"));
    writer.write(entry(12, 6, "kept"));
    EXPECT_EQ(content("20190912.log"), header + "2019-09-12 12:16:52.007\tinfo\tmain\tkept\n");
}

TEST_F(LogFiles, WhatAFullDiskRefusesIsToldAndNotWrittenLater)
{
    Log::LogFileWriter writer(folder);
    testing::internal::CaptureStderr();
    {
        const FullDisk disk(header.toUtf8().size());
        writer.write(entry(12, 6, "lost"));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Failed to write into log file\n");
    writer.write(entry(12, 6, "kept"));
    EXPECT_EQ(content("20190912.log"), header + header + "2019-09-12 12:16:52.007\tinfo\tmain\tkept\n");
}

TEST_F(LogFiles, AnEntryOfInvalidTimeIsLostAndLocksNothing)
{
    EXPECT_EXIT(
        {
            alarm(10);
            Log::installQtMessageHandler();
            Log::RootLogger::instance().setLogDirectory(folder);
            Log::RootLogger::instance().post({6, "main", "lost", QDateTime()});
            Log::RootLogger::instance().post(entry(12, 6, "kept"));
            Log::RootLogger::instance().post({6, "main", "lost", QDateTime()});
            Log::RootLogger::instance().post(entry(12, 6, "kept"));
            Log::RootLogger::instance().closeLogFile();
            _exit(content("20190912.log").count("# Quilvane") == 1 && content("20190912.log").count("kept") == 2 ? 0
                                                                                                                 : 1);
        },
        testing::ExitedWithCode(0), "Failed to open log file for appending");
}

} // namespace
