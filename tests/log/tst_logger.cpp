#include "log/logger.h"

#include "support/files.h"
#include "support/logcatcher.h"
#include "support/shortmemory.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdlib>
#include <thread>

#include <unistd.h>

namespace {

Log::Entry entry(int level, const QString &source, const QString &message)
{
    return {level, source, message, QDateTime({2019, 9, 12}, {12, 16, 52, 7})};
}

TEST(ConsoleLine, Table)
{
    const QString blanks(32, ' ');
    const struct {
        Log::Entry entry;
        QString line;
    } table[] = {
        {entry(5, "main", "Program started"), "[12:16:52.007 N] Program started [main            ]\n"},
        {entry(0, "", "x"), "[12:16:52.007 G] x [                ]\n"},
        {entry(-1, "gui", "x"), "[12:16:52.007 ] x [gui             ]\n"},
        {entry(8, "gui", "x"), "[12:16:52.007 ] x [gui             ]\n"},
        {entry(4, "qt.:x:42", "x"), "[12:16:52.007 W] x [x:42            ]\n"},
        {entry(4, "Qt.:x:42", "x"), "[12:16:52.007 W] x [Qt.:x:42        ]\n"},
        {entry(3, "a_source_longer_than_16", "x"), "[12:16:52.007 E] x [a_source_longer_than_16]\n"},
        {entry(6, "main", "a\nb %s %1\nc"),
         "[12:16:52.007 I] a\n" + blanks + "b %s %1\n" + blanks + "c [main            ]\n"},
        {entry(7, "main", "\u00b5m"), "[12:16:52.007 D] \u00b5m [main            ]\n"},
    };
    for (const auto &[given, line] : table)
        EXPECT_EQ(QString::fromUtf8(Log::consoleLine(given)), line);
}

TEST(Levels, NamesAreReadBack)
{
    for (int level = 0; level < 8; ++level)
        EXPECT_EQ(Log::levelFromName(Log::levelName(level), -7), level);
    EXPECT_EQ(Log::levelFromName("Error", 5), 5);
}

struct Logging : testing::Test {
    ~Logging() override { Log::RootLogger::instance().setFilter(nullptr); }

    LogCatcher log;
};

TEST_F(Logging, AreasArePutBeforeSources)
{
    const Log::Logger logger("filereader"), root("");
    logger.log(Log::Notice, "text");
    for (const char *source : {"unit", ""}) {
        logger.post(entry(3, source, "a"));
        root.post(entry(3, source, "a"));
    }
    const QList<Log::Entry> entries = log.entries();
    QStringList sources;
    for (const Log::Entry &e : entries)
        sources += e.source;
    EXPECT_EQ(sources, QStringList({"filereader", "filereader.unit", "unit", "filereader", ""}));
    EXPECT_EQ(entries[0].level, 5);
    EXPECT_LT(std::abs(entries[0].time.msecsTo(QDateTime::currentDateTime())), 10000);
    EXPECT_EQ(entries[1].time.time().hour(), 12) << "a ready entry keeps its time";
}

TEST_F(Logging, TheFilterComesBeforeEverything)
{
    QTemporaryDir directory;
    Log::RootLogger::instance().setFilter([](const Log::Entry &e) { return e.level < Log::Info; });
    Log::RootLogger::instance().setLogDirectory(directory.path());
    testing::internal::CaptureStdout();
    Log::Logger("main").log(Log::Debug, "dropped");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    Log::RootLogger::instance().closeLogFile();
    EXPECT_TRUE(log.entries().isEmpty());
    EXPECT_TRUE(QDir(directory.path()).isEmpty());
}

/// What the console gets of these words, one entry each: "AREA LEVEL MESSAGE".
QStringList consoleOf(const std::function<void()> &log)
{
    testing::internal::CaptureStdout();
    log();
    QStringList lines;
    for (const QString &line :
         QString::fromStdString(testing::internal::GetCapturedStdout()).split('\n', Qt::SkipEmptyParts))
        lines << line.mid(14).simplified();
    return lines;
}

TEST_F(Logging, TheConsoleGetsARunOfEqualEntriesWithItsCount)
{
    const Log::Logger a("a"), b("b");
    const auto logRun = [](const Log::Logger &logger, const QString &message, int count) {
        for (int i = 0; i < count; ++i)
            logger.log(Log::Error, message);
    };
    EXPECT_EQ(consoleOf([&] {
                  logRun(a, "x", 1000);
                  logRun(b, "x", 1);
                  logRun(b, "y", 2);
                  b.log(Log::Warning, "y");
                  logRun(a, "1%2", 3);
                  logRun(a, "line\nline", 3);
                  logRun(b, "end", 1);
              }),
              (QStringList{"E] x [a ]", "E] x (999 times more) [a ]", "E] x [b ]", "E] y [b ]", "E] y [b ]",
                           "W] y [b ]", "E] 1%2 [a ]", "E] 1%2 (2 times more) [a ]", "E] line", "line [a ]", "E] line",
                           "line (2 times more) [a ]", "E] end [b ]"}));
    EXPECT_EQ(log.entries().size(), 1011) << "everybody else gets each";

    const QStringList given = consoleOf([&] {
        Log::Entry counted = entry(3, "c", "given");
        counted.count = 5;
        b.post(counted);
        b.post(counted);
        b.log(Log::Info, QString(5000, 'l'));
        b.log(Log::Info, QString(5000, 'l'));
        b.log(Log::Info, QString(5000, 'l'));
        b.log(Log::Info, "end");
    });
    ASSERT_EQ(given.size(), 5);
    EXPECT_EQ(given[0], "E] given (5 times more) [b.c ]");
    EXPECT_EQ(given[1], given[0]);
    EXPECT_LT(given[3].size(), 1100) << "what was printed in full isn't printed so again";
}

TEST_F(Logging, ACountDoesNotWaitForLong)
{
    const Log::Logger a("a");
    QElapsedTimer timer;
    QStringList lines = consoleOf([&] {
        for (int i = 0; i < 3; ++i)
            a.log(Log::Error, "idle");
        timer.start();
        while (timer.elapsed() < 1300)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    });
    EXPECT_EQ(lines, (QStringList{"E] idle [a ]", "E] idle (2 times more) [a ]"})) << "an event loop tells it";

    qint64 count = 0;
    lines = consoleOf([&] { // without one the run itself does
        timer.start();
        for (; timer.elapsed() < 2300; ++count)
            a.log(Log::Error, "busy");
        a.log(Log::Error, "end");
    });
    EXPECT_GE(lines.size(), 4);
    EXPECT_LE(lines.size(), 6);
    qint64 told = 1;
    for (const QString &line : lines)
        told += line.section('(', 1).section(' ', 0, 0).toLongLong();
    EXPECT_EQ(told, count);
}

TEST_F(Logging, AnExitLosesNoCount)
{
    EXPECT_EXIT(
        {
            std::fflush(stdout);
            dup2(STDERR_FILENO, STDOUT_FILENO);
            for (int i = 0; i < 7; ++i)
                Log::Logger("a").log(Log::Error, "last");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "last \\(6 times more\\)");
}

TEST_F(Logging, EntriesReachAQueuedReceiverOfAnotherThread)
{
    QString received;
    QObject::connect(
        &Log::RootLogger::instance(), &Log::RootLogger::newEntry, &log,
        [&received](const Log::Entry &entry) { received = entry.message; }, Qt::QueuedConnection);
    std::thread([] { Log::Logger("inversion").log(Log::Info, "from a worker"); }).join();
    EXPECT_EQ(received, "");
    QCoreApplication::processEvents();
    EXPECT_EQ(received, "from a worker");
}

TEST_F(Logging, QtMessages)
{
    Log::installQtMessageHandler();
    QMessageLogger("/folder/of/x.cpp", 42, "f", "cat").warning("w");
    QMessageLogger("C:\\folder\\x.cpp", 43, "f").critical("c");
    QMessageLogger(nullptr, 0, nullptr, nullptr).debug("d");
    QMessageLogger("x", 1, nullptr, nullptr).info("i");
    qInstallMessageHandler(nullptr);
    QStringList told;
    for (const Log::Entry &e : log.entries())
        told += QString::number(e.level) + ' ' + e.source;
    EXPECT_EQ(told.join('|').toStdString(), "4 qt.cat:x.cpp:42|2 qt.default:x.cpp:43|7 qt.::0|6 qt.:x:1");
}

TEST_F(Logging, ThreadsWriteWholeLines)
{
    QTemporaryDir directory;
    Log::RootLogger::instance().setLogDirectory(directory.path());
    testing::internal::CaptureStdout();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            for (int k = 0; k < 200; ++k)
                Log::Logger("inversion").log(Log::Info, QString(60, QChar('a' + i)) + QString::number(k));
        });
    for (std::thread &thread : threads)
        thread.join();
    const QStringList lines =
        QString::fromStdString(testing::internal::GetCapturedStdout()).split('\n', Qt::SkipEmptyParts);
    Log::RootLogger::instance().closeLogFile();
    EXPECT_EQ(log.entries().size(), 800);
    EXPECT_EQ(lines.size(), 800);
    for (const QString &line : lines)
        ASSERT_TRUE(line.mid(17).startsWith(QString(60, line[17])) && line.endsWith(" [inversion       ]"));
    int rows = 0;
    for (const QString &name : filesIn(directory.path()))
        rows += contentOf(directory.filePath(name)).count("\tinfo\tinversion\t");
    EXPECT_EQ(rows, 800);
}

TEST_F(Logging, AQtMessageForWhichThereIsNoMemoryThrowsNothing)
{
    if (!ShortMemory::isPossible)
        GTEST_SKIP() << "the sanitizer has an allocator of its own";
    Log::installQtMessageHandler();
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    for (int nth = 1, failures = 0; failures == 0; ++nth) {
        const QString text = QString::number(nth);
        ShortMemory::letFail(false, nth, 1);
        EXPECT_NO_THROW(handler(QtWarningMsg, {}, text));
        failures = ShortMemory::failures.exchange(0);
    }
}

} // namespace
