#include "log/consoleoutput.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace Log {

namespace {

constexpr int longestRepeated = 1000; // characters of the message that a count repeats

/// The line that tells the count, in pieces that a crash can still print: nothing is allocated or locked by then.
struct LastWords {
    std::atomic<qint64> count{0}; ///< the pieces change only while it is 0
    char before[4 * longestRepeated] = {};
    char behind[512] = {};
};
LastWords lastWords;

void print(const QByteArray &line)
{
    // One write for the whole line, so that the lines of two threads don't mix, and a flush, so that a crash loses
    // none.
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
    std::fflush(stdout);
}

QByteArray countLine(Entry entry, const QString &count)
{
    if (entry.message.size() > longestRepeated)
        entry.message = entry.message.left(longestRepeated) + QChar(0x2026);
    entry.message += QStringLiteral(" (%1 times more)").arg(count);
    return consoleLine(entry);
}

void copyCut(const QByteArray &text, char *place, std::size_t room)
{
    const std::size_t size = std::min(std::size_t(text.size()), room - 1);
    std::memcpy(place, text.constData(), size);
    place[size] = '\0';
}

void prepareLastWords(const Entry &entry)
{
    const QByteArray placeholder("\x01");
    const QByteArray line = countLine(entry, QString::fromLatin1(placeholder));
    const int at = line.lastIndexOf(placeholder);
    copyCut(line.left(at), lastWords.before, sizeof lastWords.before);
    copyCut(line.mid(at + placeholder.size()), lastWords.behind, sizeof lastWords.behind);
}

void writeAll(const char *bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes, size);
        if (written <= 0)
            return;
        bytes += written;
        size -= std::size_t(written);
    }
}

} // namespace

bool ConsoleOutput::put(const Entry &entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto now = std::chrono::steady_clock::now();
    if (!m_hasLast || !isRepeat(m_last, entry)) {
        printPending();
        m_last = entry;
        m_hasLast = true;
        print(entry.count > 1 ? countLine(entry, QString::number(entry.count)) : consoleLine(entry));
        return false;
    }
    m_last.time = entry.time;
    const bool begins = m_pending == 0;
    if (begins) {
        m_pendingSince = now;
        prepareLastWords(entry);
    }
    m_pending += entry.count;
    lastWords.count = m_pending;
    if (now - m_pendingSince < patience)
        return begins;
    printPending();
    return false;
}

void ConsoleOutput::flush()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    printPending();
}

void ConsoleOutput::printPending()
{
    if (m_pending == 0)
        return;
    const bool wasTold = lastWords.count.exchange(0) == 0; // by a crash of another thread
    if (!wasTold)
        print(m_pending == 1 ? consoleLine(m_last) : countLine(m_last, QString::number(m_pending)));
    m_pending = 0;
}

void writeCountAtCrash() noexcept
{
    qint64 count = lastWords.count.exchange(0);
    if (count <= 0)
        return;
    char digits[24];
    char *const end = digits + sizeof digits;
    char *first = end;
    for (; count > 0; count /= 10)
        *--first = char('0' + count % 10);
    writeAll(lastWords.before, std::strlen(lastWords.before));
    writeAll(first, std::size_t(end - first));
    writeAll(lastWords.behind, std::strlen(lastWords.behind));
}

} // namespace Log
