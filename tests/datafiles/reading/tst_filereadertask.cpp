#include "datafiles/reading/reading.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

const char header[] = "# Quilvane flags\n# \nbegin_time\tend_time\topmode\tflags\n";

QByteArray rowOfHour(int hour)
{
    const QByteArray day = "2019-09-12 " + QByteArray::number(hour).rightJustified(2, '0');
    return day + ":00:00\t" + day + ":10:00\tions\t\n";
}

class Task : public Reading {
protected:
    std::unique_ptr<FileReaderTask> makeTask(const QStringList &files)
    {
        reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
        auto task = std::make_unique<FileReaderTask>(reader, FileReaderSettings{files, folder.path()});
        QObject::connect(task.get(), &FileReaderTask::progress, task.get(),
                         [this](int count, const QString &text) { told.append(QString::number(count) + ' ' + text); });
        return task;
    }
    QStringList told;
};

TEST_F(Task, TellsWhatItDoes)
{
    write("b.flags", header + rowOfHour(1));
    write("a.flags", header + rowOfHour(2));
    const LogCatcher caught;
    auto task = makeTask({"b.flags", "B.flags", "a.flags"});
    qint64 done = 0, total = 0;
    QObject::connect(task.get(), &FileReaderTask::bytesProgress, [&](qint64 a, qint64 b) { done = a, total = b; });
    bool finished = false;
    QObject::connect(task.get(), &FileReaderTask::finished, [&] { finished = true; });
    task->run();
    EXPECT_TRUE(finished);
    EXPECT_EQ(told, QStringList({"0 Reading B.flags", "1 Reading a.flags", "2 Reading b.flags"}));
    EXPECT_EQ(caught.complaints(), QStringList("Failed to open '" + folder.filePath("B.flags") + "'"));
    EXPECT_EQ(recordCount(), 2);
    EXPECT_EQ(done, total);
    EXPECT_EQ(total, 2 * QByteArray(header + rowOfHour(1)).size());
    EXPECT_FALSE(task->wasCancelled());
    EXPECT_TRUE(caught.upTo(Log::Info).last().startsWith("Finished reading data"));
}

TEST_F(Task, StopsAtTheEndOfAFileAndSaysSo)
{
    for (const char *name : {"1.flags", "2.flags", "3.flags"})
        write(name, header + rowOfHour(name[0] - '0'));
    const LogCatcher caught;
    auto task = makeTask({"1.flags", "2.flags", "3.flags"});
    QObject::connect(task.get(), &FileReaderTask::progress, [&](int count, const QString &) {
        if (count == 1)
            task->setAborted();
    });
    task->run();
    EXPECT_EQ(recordCount(), 2);
    EXPECT_TRUE(task->wasCancelled());
    EXPECT_EQ(caught.complaints(), QStringList("Reading was cancelled after 2 of 3 files."));
}

TEST_F(Task, AWishToStopInTheLastFileLeavesNothingUnread)
{
    write("1.flags", header + rowOfHour(1));
    auto task = makeTask({"1.flags"});
    task->setAborted();
    task->run();
    EXPECT_FALSE(task->wasCancelled());
    EXPECT_EQ(recordCount(), 1);
}

TEST_F(Task, IsStoppedFromAnotherThread)
{
    QStringList files;
    for (int i = 0; i < 500; ++i) {
        files.append(QString::number(100 + i) + ".flags");
        write(files.last(), header + rowOfHour(i % 24));
    }
    auto task = makeTask(files);
    std::mutex mutex;
    std::condition_variable changed;
    int progressed = 0;
    QObject::connect(task.get(), &FileReaderTask::progress, [&](int count, const QString &) {
        const std::lock_guard<std::mutex> lock(mutex);
        progressed = count;
        changed.notify_one();
    });
    std::thread worker([&] { task->run(); });
    {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [&] { return progressed >= 5; });
    }
    task->setAborted();
    worker.join();
    EXPECT_GE(task->filesRead(), 5);
    EXPECT_EQ(recordCount(), std::min(task->filesRead(), 24));
    EXPECT_EQ(task->wasCancelled(), task->filesRead() < 500);
}

} // namespace
