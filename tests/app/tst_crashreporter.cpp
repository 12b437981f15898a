#include "app/crashreporter.h"
#include "app/signaltext.h"

#include "app/process.h"

#include <QElapsedTimer>
#include <QThread>

#include <csignal>
#include <cstring>
#include <limits>

namespace {

const QString probe = QStringLiteral(CRASH_PROBE);

struct Crash {
    const char *kind, *thread;
    int signal;
    const char *told; ///< in the report, such as a function; the caller of one that never returns may go unnamed
};

/// Runs the probe to its crash.
Ended runCrash(Process &process, const Crash &crash, int delayMs)
{
    process.start(probe,
                  {QString::fromLatin1(crash.kind), QString::fromLatin1(crash.thread), QString::number(delayMs), "1"});
    return process.wait();
}

QByteArray onlyReport(const Process &process)
{
    const QDir folder(process.path("crash_reports"));
    const QStringList reports = folder.entryList({"crash-*.txt"}, QDir::Files);
    EXPECT_EQ(reports.size(), 1);
    return reports.isEmpty() ? QByteArray() : contentOf(folder.filePath(reports.first()));
}

QByteArray waitForRestart(const Process &process)
{
    const QString path = process.path("restarted.txt");
    QElapsedTimer timer;
    timer.start();
    while (contentOf(path).count('\n') < 3 && timer.elapsed() < 30000)
        QThread::msleep(20);
    QThread::msleep(300); // time for a second one, which mustn't come
    return contentOf(path);
}

} // namespace

TEST(CrashReporter, AReportTellsWhereEachKindOfCrashWas)
{
    const Crash crashes[] = {
        {"null", "main", SIGSEGV, ", address 0x0\n"},
        {"null", "reading", SIGSEGV, "probeNull"},
        {"overflow", "main", SIGSEGV, "probeOverflow"},
        {"overflow", "reading", SIGSEGV, "probeOverflow"},
        {"overflow", "plain", SIGSEGV, "probeOverflow"},
        {"abort", "main", SIGABRT, "(abort+"},
        {"abort", "reading", SIGABRT, "(abort+"},
        {"throw", "main", SIGABRT, "St13runtime_error: no way out\n"},
        {"throw", "reading", SIGABRT, "St13runtime_error: no way out\n"},
        {"throw", "plain", SIGABRT, "St13runtime_error: no way out\n"},
        {"fatal", "reading", SIGABRT, "(abort+"},
        {"bus", "reading", SIGBUS, "probeBus"},
        {"ill", "main", SIGILL, "probeIllegal"},
        {"fpe", "main", SIGFPE, "probeDivide"},
#ifndef __SANITIZE_ADDRESS__
        {"heap", "main", SIGABRT, "probeBreakHeap"},
#endif
    };
    for (const Crash &crash : crashes) {
        SCOPED_TRACE(testing::Message() << crash.kind << " on " << crash.thread);
        Process process;
        const Ended ended = runCrash(process, crash, 0);
        EXPECT_TRUE(ended.crashed);
        EXPECT_EQ(ended.code, crash.signal);
        const QByteArray report = onlyReport(process);
        EXPECT_TRUE(report.startsWith("Probe vers 1 rev 2\nsignal: " + QByteArray::number(crash.signal)))
            << report.constData();
        EXPECT_TRUE(report.contains(crash.told)) << report.constData();
        EXPECT_EQ(report.contains(" reading\n"), QByteArray("reading") == crash.thread);
        EXPECT_TRUE(report.contains("[stack]")) << "the memory map is missing";
        EXPECT_TRUE(ended.errors.contains("crash_reports/crash-")) << ended.errors.constData();
        EXPECT_TRUE(process.names("restarted.txt").isEmpty()) << "started again before its time";
    }
}

TEST(CrashReporter, WhatTheConsoleWasYetToTellIsTold)
{
    Process process;
    const Ended ended = runCrash(process, {"logged", "main", SIGSEGV, "probeNull"}, 0);
    EXPECT_TRUE(ended.crashed);
    EXPECT_EQ(ended.output.count("said"), 2) << ended.output.constData();
    EXPECT_TRUE(ended.output.contains("E] said (1002 times more) [probe           ]\n")) << ended.output.constData();
}

TEST(CrashReporter, AProcessOfSomeAgeIsStartedAgainOnce)
{
    for (const Crash &crash : {Crash{"null", "main", SIGSEGV, ""}, Crash{"overflow", "reading", SIGSEGV, ""},
                               Crash{"throw", "reading", SIGABRT, ""}}) {
        SCOPED_TRACE(testing::Message() << crash.kind << " on " << crash.thread);
        Process process;
        EXPECT_EQ(runCrash(process, crash, 1200).code, crash.signal);
        EXPECT_EQ(waitForRestart(process).toStdString(), "--recover\na file.recovery\n0\n");
        onlyReport(process);
    }
}

TEST(CrashReporter, WithoutAFolderTheReportGoesToStandardError)
{
    Process process;
    writeFile(process.path("crash_reports"), "in the way");
    const Ended ended = runCrash(process, {"null", "main", SIGSEGV, ""}, 1200);
    EXPECT_EQ(ended.code, SIGSEGV);
    EXPECT_TRUE(ended.errors.contains("probeNull")) << ended.errors.constData();
    EXPECT_TRUE(waitForRestart(process).startsWith("--recover\n"));
}

TEST(CrashReporter, WhereWordsWaitForEverTheReportIsWholeAndTheEndComesInFiveSeconds)
{
    qputenv("CRASHPROBE_LIBRARY", HELD_MALLOC);
    for (const Crash &crash : {Crash{"unheard", "main", SIGSEGV, "probeNull"},
                               Crash{"loading", "reading", SIGSEGV, "stack addresses: 0x"}}) {
        SCOPED_TRACE(crash.kind);
        Process process;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(runCrash(process, crash, 1200).code, crash.signal);
        EXPECT_LT(timer.elapsed(), 1200 + 300 + 5000);
        const QByteArray report = onlyReport(process);
        EXPECT_TRUE(report.contains(crash.told)) << report.constData();
        EXPECT_TRUE(report.contains("[stack]")) << report.constData();
        EXPECT_TRUE(waitForRestart(process).startsWith("--recover\n"));
    }
}

TEST(CrashReporter, InstallsOnceAndFailsWithWords)
{
    CrashReporter::Settings settings;
    ASSERT_TRUE(CrashReporter::install(settings));
    EXPECT_FALSE(CrashReporter::install(settings));
    EXPECT_FALSE(CrashReporter::lastError().isEmpty());
    CrashReporter::uninstall();
    struct sigaction action {};
    ASSERT_EQ(sigaction(SIGBUS, nullptr, &action), 0);

    settings.applicationVersion = QString(100000, 'x');
    EXPECT_FALSE(CrashReporter::install(settings));
    settings.applicationVersion.clear();
    EXPECT_TRUE(CrashReporter::install(settings));
    CrashReporter::uninstall();
    struct sigaction after {};
    ASSERT_EQ(sigaction(SIGBUS, nullptr, &after), 0);
    EXPECT_EQ(after.sa_handler, action.sa_handler);
}

TEST(SignalText, PutsNumbersIntoDigits)
{
    SignalText text;
    text.decimal(0).text(" ").decimal(-42).text(" ").decimal(std::numeric_limits<long long>::min());
    text.text(" ").hexadecimal(0).text(" ").hexadecimal(std::uintptr_t(0xdeadbeef09)).text(nullptr);
    EXPECT_STREQ(text.c_str(), "0 -42 -9223372036854775808 0x0 0xdeadbeef09");
    for (int i = 0; i < 1000; ++i)
        text.text("0123456789");
    EXPECT_EQ(text.size(), std::strlen(text.c_str()));
    EXPECT_LT(text.size(), 10000U);
}
