#include "terminal/progressline.h"
#include "terminal/remainingtime.h"

#include <QString>
#include <QThread>

#include <gtest/gtest.h>

#include <poll.h>
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

/// The bytes that come out of a pipe or a terminal, which hands them over in parts, until it is quiet.
QByteArray readAll(int end)
{
    constexpr int quietMs = 100;
    QByteArray bytes;
    for (pollfd poller{end, POLLIN, 0}; poll(&poller, 1, quietMs) > 0;) {
        char some[4096];
        const ssize_t size = read(end, some, sizeof some);
        if (size <= 0)
            break;
        bytes.append(some, int(size));
    }
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
