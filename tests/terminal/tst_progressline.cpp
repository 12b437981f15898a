#include "terminal/progressline.h"
#include "terminal/remainingtime.h"

#include <QString>
#include <QThread>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

namespace {

/// Standard error goes to `end` as long as this lives.
class StandardError {
public:
    explicit StandardError(int end) : m_former(dup(STDERR_FILENO)) { dup2(end, STDERR_FILENO); }
    ~StandardError()
    {
        dup2(m_former, STDERR_FILENO);
        close(m_former);
    }

private:
    int m_former;
};

/// The bytes that wait in a pipe or a terminal.
QByteArray readAll(int end)
{
    fcntl(end, F_SETFL, O_NONBLOCK);
    QByteArray bytes(4096, 0);
    const ssize_t size = read(end, bytes.data(), std::size_t(bytes.size()));
    bytes.truncate(std::max(int(size), 0));
    return bytes;
}

void showThree()
{
    ProgressLine::show("First 0 %", 0);
    QThread::msleep(150);
    ProgressLine::show(QStringLiteral("Second 50 % of a line that is too long for it"), 0.5);
    ProgressLine::show("Third 51 %", 0.51);
    ProgressLine::show("Anew 0 %", 0);
    ProgressLine::clear();
    ProgressLine::clear();
}

} // namespace

TEST(ProgressLine, StandsOnATerminalAlone)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    {
        const StandardError toPipe(ends[1]);
        showThree();
    }
    EXPECT_EQ(readAll(ends[0]), "");

    int master = 0;
    int terminal = 0;
    const winsize size{24, 21, 0, 0};
    ASSERT_EQ(openpty(&master, &terminal, nullptr, nullptr, &size), 0);
    {
        const StandardError toTerminal(terminal);
        showThree();
    }
    const QByteArray begin("\r\x1b[K");
    EXPECT_EQ(readAll(master), begin + "First 0 %" + begin + "Second 50 % of a lin" + begin + "Anew 0 %" + begin);
    for (int end : {ends[0], ends[1], master, terminal})
        close(end);
}

TEST(RemainingTime, IsRoundedAsPeopleSayIt)
{
    const struct {
        double done, seconds;
        const char *text;
    } table[] = {
        {0.5, 1, ""},
        {0.001, 100, ""},
        {1, 100, ""},
        {0, 100, ""},
        {0.011, 50000, ""},
        {0.5, 2, "about 2 s left"},
        {0.5, 11, "about 15 s left"},
        {0.25, 18, "about 55 s left"},
        {0.5, 56, "about 1 min left"},
        {0.5, 61, "about 2 min left"},
        {0.5, 3600, "about 1 h 0 min left"},
        {0.01, 100, "about 2 h 45 min left"},
    };
    for (const auto &row : table)
        EXPECT_EQ(remainingTimeText(row.done, row.seconds).toStdString(), row.text) << row.done << ' ' << row.seconds;
}
