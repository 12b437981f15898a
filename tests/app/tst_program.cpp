#include "app/process.h"

#include <QThread>

#include <csignal>

// The real program, as a process on the offscreen platform.

namespace {

const QString program = QStringLiteral(PROGRAM);
const QString recoveryFiles = "*.recovery*";
const char started[] = "Program started";

const char recoveredText[] = "The program recovered from a crash!";

} // namespace

TEST(Program, QuitsOnASignalAndLeavesNothingBehind)
{
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        Process process;
        process.start(program, {});
        ASSERT_TRUE(process.waitForOutput(started));
        QStringList left;
        for (int i = 0; i < 3000 && left.isEmpty(); ++i) {
            left = process.names(recoveryFiles);
            QThread::msleep(10);
        }
        ASSERT_EQ(left.size(), 1);
        EXPECT_TRUE(left.first().startsWith(QString("quilvane-%1-").arg(process.process().processId())));
        ::kill(pid_t(process.process().processId()), signal);
        const Ended ended = process.wait();
        EXPECT_FALSE(ended.crashed);
        EXPECT_EQ(ended.code, 0);
        EXPECT_TRUE(ended.output.contains("Program finished")) << ended.output.constData();
        EXPECT_FALSE(ended.output.contains(recoveredText));
        EXPECT_TRUE(process.names(recoveryFiles).isEmpty()) << qPrintable(process.names(recoveryFiles).join(' '));
    }
}

TEST(Program, QuitsWhileItAsksForData)
{
    Process process;
    process.start(program, {".", "block"});
    ASSERT_TRUE(process.waitForOutput(started));
    QThread::msleep(1500); // the dialog stands in an event loop of its own
    process.process().terminate();
    EXPECT_EQ(process.wait().code, 0);
    EXPECT_TRUE(process.names(recoveryFiles).isEmpty());
}

TEST(Program, ABadRecoveryStartEndsInSilence)
{
    const struct {
        QStringList arguments;
        QByteArray content;
    } table[] = {
        {{"--recover"}, ""},
        {{"--recover", "not-there.recovery"}, ""},
        {{"--recover", "a.recovery"}, "# Quilvane recovery file v1\r\n"},
        {{"folder", "--recover", "a.recovery"}, "nonsense\n"},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(qPrintable(row.arguments.join(' ')));
        Process process;
        if (!row.content.isEmpty())
            writeFile(process.path("a.recovery"), row.content);
        process.start(program, row.arguments);
        const Ended ended = process.wait();
        EXPECT_FALSE(ended.crashed);
        EXPECT_EQ(ended.code, 255);
        EXPECT_FALSE(ended.output.contains(started));
        EXPECT_TRUE(process.names(recoveryFiles).isEmpty());
    }
}

TEST(Program, ARecoveredOneSaysSoAndForgetsItsCommandLine)
{
    Process process;
    writeFile(process.path("a.recovery"), "# Quilvane recovery file v1\n");
    process.start(program, {"folder", "--recover", "a.recovery"});
    ASSERT_TRUE(process.waitForOutput(recoveredText));
    EXPECT_FALSE(QFile::exists(process.path("a.recovery")));
    process.process().terminate();
    const Ended ended = process.wait();
    EXPECT_EQ(ended.code, 0);
    EXPECT_TRUE(ended.output.contains("\"crash_reports\" subfolder.")) << ended.output.constData();
    EXPECT_TRUE(process.names(recoveryFiles).isEmpty());
}

TEST(Program, RunsWhereNothingCanBeWritten)
{
    Process process;
    process.process().setWorkingDirectory("/proc");
    process.start(program, {});
    ASSERT_TRUE(process.waitForOutput(started));
    process.process().terminate();
    EXPECT_EQ(process.wait().code, 0);
}
