#include "batch/progressline.h"

#include <cstdio>
#include <unistd.h>

namespace Batch::ProgressLine {

namespace {
bool shown = false;

bool isTerminal()
{
    static const bool answer = isatty(STDERR_FILENO) == 1;
    return answer;
}

void print(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
}
} // namespace

void show(const QString &text)
{
    if (!isTerminal())
        return;
    print("\r\x1b[K" + text.toLocal8Bit()); // back to the line's begin, and blank to its end
    shown = true;
}

void clear()
{
    if (shown)
        print("\r\x1b[K");
    shown = false;
}

} // namespace Batch::ProgressLine
