#include "terminal/progressline.h"

#include "terminal/remainingtime.h"

#include <chrono>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace ProgressLine {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double leastPause = 0.1; ///< s between two lines
constexpr int usualWidth = 80;     ///< of terminals that don't tell theirs

/// The piece of work at hand.
struct Work {
    double firstDone = 0;
    double lastDone = 2; ///< more than any share: the first begins a piece
    Clock::time_point begin;
    Clock::time_point lastShown;
};

Work work;
bool isShown = false;

double secondsSince(Clock::time_point time)
{
    return std::chrono::duration<double>(Clock::now() - time).count();
}

int terminalWidth()
{
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

void print(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
}

} // namespace

void show(const QString &text, double done)
{
    if (isatty(STDERR_FILENO) != 1)
        return;
    const bool begins = done < work.lastDone;
    if (begins)
        work = {done, done, Clock::now(), {}};
    work.lastDone = done;
    if (!begins && secondsSince(work.lastShown) < leastPause)
        return;
    work.lastShown = Clock::now();
    const double share = work.firstDone < 1 ? (done - work.firstDone) / (1 - work.firstDone) : 1;
    const QString remaining = remainingTimeText(share, secondsSince(work.begin));
    QString line = remaining.isEmpty() ? text : text + QStringLiteral(", ") + remaining;
    line.truncate(terminalWidth() - 1);     // a line that breaks could not be taken away as a whole
    print("\r\x1b[K" + line.toLocal8Bit()); // back to the line's begin, and blank to its end
    isShown = true;
}

void clear()
{
    if (isShown)
        print("\r\x1b[K");
    isShown = false;
}

} // namespace ProgressLine
