#include "datafiles/reading.h"

#include <QCoreApplication>
#include <QThread>

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

TEST_F(Task, tells_what_it_does)
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

TEST_F(Task, stops_at_the_end_of_a_file_and_says_so)
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

TEST_F(Task, a_wish_to_stop_in_the_last_file_leaves_nothing_unread)
{
    write("1.flags", header + rowOfHour(1));
    auto task = makeTask({"1.flags"});
    task->setAborted();
    task->run();
    EXPECT_FALSE(task->wasCancelled());
    EXPECT_EQ(recordCount(), 1);
}

TEST_F(Task, works_on_a_thread_of_its_own)
{
    for (int i = 0; i < 20; ++i)
        write(QString::number(100 + i) + ".flags", header + rowOfHour(i));
    QStringList files = QDir(folder.path()).entryList(QDir::Files);
    auto task = makeTask(files);
    FileReaderTask *worker = task.release();
    QThread thread;
    worker->moveToThread(&thread);
    int progressed = 0;
    QObject here;
    QObject::connect(worker, &FileReaderTask::progress, &here, [&](int count, const QString &) {
        progressed = count;
        if (count == 5)
            worker->setAborted();
    });
    bool finished = false;
    QObject::connect(worker, &FileReaderTask::finished, &here, [&] {
        finished = true;
        thread.quit();
    });
    thread.start();
    QMetaObject::invokeMethod(worker, &FileReaderTask::run, Qt::QueuedConnection);
    QObject::connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
    while (!finished)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    ASSERT_TRUE(thread.wait(10000));
    EXPECT_GE(recordCount(), 1);
    EXPECT_GE(progressed, 5);
}

} // namespace
