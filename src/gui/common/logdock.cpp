#include "gui/common/logdock.h"

#include "gui/common/logtext.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

namespace {

constexpr int tickInterval = 30000; // ms
constexpr int patience = 2;         // ticks
constexpr qint64 hour = 3600;       // s
constexpr int mostOnce = 200;       // paragraphs that are told again; each costs something at every change

const char logStyle[] = "pre { font-family: monospace; } "
                        ".log-emergency { color: red; font-weight: bold; } "
                        ".log-alert { color: red; font-weight: bold; } "
                        ".log-critical { color: red; font-weight: bold; } "
                        ".log-error { color: red; } "
                        ".log-warning { color: darkred; font-style: italic; } "
                        ".log-notice { font-weight: bold; } "
                        ".log-info { } "
                        ".log-debug { color: gray; } "
                        ".date { color: gray; }";

} // namespace

LogDock::LogDock(QWidget *parent) : QDockWidget(tr("Log"), parent), m_edit(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("logDock"));
    m_edit->setReadOnly(true);
    m_edit->setAccessibleName(tr("Log"));
    m_edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_edit->setMaximumBlockCount(greatestBlockCount);
    m_edit->document()->setDefaultStyleSheet(QString::fromLatin1(logStyle));
    setWidget(m_edit);
    connect(m_edit->verticalScrollBar(), &QScrollBar::rangeChanged, this, &LogDock::keepEndInSight);

    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(0);
    connect(&m_flushTimer, &QTimer::timeout, this, &LogDock::appendPending);
    connect(&m_tickTimer, &QTimer::timeout, this, [this] { tick(QDateTime::currentDateTime()); });
    m_tickTimer.start(tickInterval);
}

void LogDock::addEntry(Log::Entry entry)
{
    if (!LogText::isShown(entry))
        return;
    if (!m_flushTimer.isActive())
        m_flushTimer.start();
    if (m_mayRepeat && Log::isRepeat(m_lastEntry, entry)) {
        (m_pending.empty() ? m_repeats : m_pending.back().count) += entry.count;
        return;
    }
    const bool newDate = entry.time.date() != m_lastDate;
    m_lastDate = entry.time.date();
    addParagraph({LogText::html(entry, newDate), entry.count, keyOf(entry)});
    m_lastEntry = std::move(entry);
    m_mayRepeat = true;
}

/// What stands once has a key: a warning its source and text, and the files of one run the same.
QString LogDock::keyOf(const Log::Entry &entry) const
{
    if (LogText::isOfReading(entry))
        return QStringLiteral("reading %1").arg(m_run);
    return entry.level == Log::Warning ? entry.source + QLatin1Char('\n') + entry.message : QString();
}

void LogDock::addParagraph(Paragraph paragraph)
{
    const qint64 before = paragraph.key.isEmpty() ? 0 : takeFormer(paragraph.key);
    const bool isReading = isOfRun(paragraph.key);
    if (before == 0 && !isReading)
        ++m_run; // a warning that has come before ends none: each file of a run may bring it
    paragraph.count += before;
    m_pendingLines += LogText::lineCount(paragraph.html);
    m_pending.push_back(std::move(paragraph));
    if (!m_pending.back().key.isEmpty())
        m_pendingOnce.insert(m_pending.back().key, std::prev(m_pending.end()));
    while (m_pending.size() > 1 && m_pendingLines > greatestBlockCount)
        dropOldest();
}

bool LogDock::isOfRun(const QString &key) const
{
    return key.startsWith(QLatin1String("reading ")) && !key.contains(QLatin1Char('\n'));
}

/// How often it has come. A paragraph that isn't shown yet goes at once, the one in the view with the next flush.
qint64 LogDock::takeFormer(const QString &key)
{
    const auto pending = m_pendingOnce.find(key);
    if (pending == m_pendingOnce.end())
        return m_shownOnce.value(key).count;
    const qint64 count = (*pending)->count;
    m_pendingLines -= LogText::lineCount((*pending)->html);
    m_pending.erase(*pending);
    m_pendingOnce.erase(pending);
    return count;
}

void LogDock::dropOldest()
{
    m_pendingLines -= LogText::lineCount(m_pending.front().html);
    m_pendingOnce.remove(m_pending.front().key);
    m_pending.pop_front();
}

void LogDock::scrollToEnd()
{
    QScrollBar *bar = m_edit->verticalScrollBar();
    bar->setValue(bar->maximum());
}

/// In a dock that became smaller the text would stay where it begins.
void LogDock::keepEndInSight(int, int newEnd)
{
    const bool wasAtEnd = m_edit->verticalScrollBar()->value() >= m_end;
    m_end = newEnd;
    if (wasAtEnd)
        scrollToEnd();
}

bool LogDock::isAtEnd() const
{
    const QScrollBar *bar = m_edit->verticalScrollBar();
    return bar->value() >= bar->maximum();
}

void LogDock::appendPending()
{
    const bool isLeftAlone = m_stillTicks >= patience && m_edit->verticalScrollBar()->value() == m_lastPosition;
    const bool follow = isAtEnd() || isLeftAlone;
    if (m_repeats > 0)
        showCount(m_shownCount + m_repeats);
    m_repeats = 0;
    int above = 0; // lines that go above what the user reads
    for (const Paragraph &paragraph : m_pending) {
        above += removeShown(paragraph.key);
        append(paragraph);
    }
    m_pending.clear();
    m_pendingOnce.clear();
    m_pendingLines = 0;
    if (follow)
        scrollToEnd();
    else if (above > 0)
        m_edit->verticalScrollBar()->setValue(m_edit->verticalScrollBar()->value() - above);
}

void LogDock::append(const Paragraph &paragraph)
{
    m_edit->appendHtml(paragraph.html);
    m_shownLength = 0;
    m_shownKey = paragraph.key;
    showCount(paragraph.count);
    if (paragraph.key.isEmpty())
        return;
    if (m_shownOnce.size() >= mostOnce)
        m_shownOnce.clear();
    QTextCursor whole(m_edit->document());
    whole.movePosition(QTextCursor::End);
    whole.movePosition(QTextCursor::StartOfBlock);
    whole.movePosition(QTextCursor::PreviousBlock, QTextCursor::MoveAnchor, LogText::lineCount(paragraph.html) - 1);
    whole.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    whole.setKeepPositionOnInsert(true); // what is appended is no part of it
    m_shownOnce.insert(paragraph.key, {whole, paragraph.count});
}

/// Returns how many lines went above the first one that is seen.
int LogDock::removeShown(const QString &key)
{
    const auto found = m_shownOnce.find(key);
    if (key.isEmpty() || found == m_shownOnce.end())
        return 0;
    QTextCursor whole = found->whole;
    m_shownOnce.erase(found);
    if (!whole.hasSelection())
        return 0; // it has left the view
    const QTextDocument &document = *m_edit->document();
    const int first = document.findBlock(whole.selectionStart()).blockNumber();
    const int lines = document.findBlock(whole.selectionEnd()).blockNumber() - first + 1;
    const bool isAbove = first < m_edit->verticalScrollBar()->value();
    whole.removeSelectedText();
    if (whole.atEnd())
        whole.deletePreviousChar(); // the end of the line before
    else
        whole.deleteChar();
    return isAbove ? lines : 0;
}

void LogDock::showCount(qint64 count)
{
    m_shownCount = count;
    if (count < 2)
        return;
    const QString text =
        isOfRun(m_shownKey) ? QStringLiteral(" (the last of %1)").arg(count) : QStringLiteral(" (%1 times)").arg(count);
    QTextCursor cursor(m_edit->document());
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, m_shownLength);
    cursor.insertText(text);
    m_shownLength = text.size();
    if (const auto shown = m_shownOnce.find(m_shownKey); shown != m_shownOnce.end()) {
        shown->count = count;
        shown->whole.setPosition(shown->whole.selectionStart());
        shown->whole.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    }
}

void LogDock::tick(const QDateTime &now)
{
    const int position = m_edit->verticalScrollBar()->value();
    if (position != m_lastPosition) {
        m_lastPosition = position;
        m_stillTicks = 0;
    } else if (m_stillTicks < patience && ++m_stillTicks == patience) {
        scrollToEnd();
        m_lastPosition = m_edit->verticalScrollBar()->value();
    }
    markHour(now);
}

void LogDock::markHour(const QDateTime &now)
{
    const bool due = m_nextHour.isValid() && now >= m_nextHour;
    if (due) {
        appendPending(); // what was logged before stands before
        m_mayRepeat = false;
        m_shownKey.clear();
        ++m_run;
        m_edit->appendHtml(QStringLiteral("<pre class='date'><b>[%1]</b> ----</pre>")
                               .arg(now.toString(QStringLiteral("yyyy-MM-dd hh:mm"))));
    }
    if (due || !m_nextHour.isValid())
        m_nextHour = now.date().startOfDay();
    while (m_nextHour <= now)
        m_nextHour = m_nextHour.addSecs(hour);
}
