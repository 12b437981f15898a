#include "gui/common/logdock.h"

#include "gui/common/logtext.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>

namespace {

constexpr int tickInterval = 30000; // ms
constexpr int patience = 2;         // ticks
constexpr qint64 hour = 3600;       // s

const char logStyle[] = "pre { font-family: monospace; } "
                        ".log-emergency { color: red; font-weight: bold; } "
                        ".log-alert { color: red; font-weight: bold; } "
                        ".log-critical { color: red; font-weight: bold; } "
                        ".log-error { color: red; } "
                        ".log-warning { color: darkred; } "
                        ".log-notice { font-weight: bold; } "
                        ".log-info { } "
                        ".log-debug { color: gray; } "
                        ".date { color: gray; }";

} // namespace

LogDock::LogDock(QWidget *parent) : QDockWidget(tr("Log"), parent), m_edit(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("logDock"));
    m_edit->setReadOnly(true);
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
    m_pending.push_back({LogText::html(entry, newDate), entry.count});
    m_pendingLines += LogText::lineCount(m_pending.back().html);
    while (m_pending.size() > 1 && m_pendingLines > greatestBlockCount) {
        m_pendingLines -= LogText::lineCount(m_pending.front().html);
        m_pending.pop_front();
    }
    m_lastEntry = std::move(entry);
    m_mayRepeat = true;
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
    for (const Paragraph &paragraph : m_pending) {
        m_edit->appendHtml(paragraph.html);
        m_shownLength = 0;
        showCount(paragraph.count);
    }
    m_pending.clear();
    m_pendingLines = 0;
    if (follow)
        scrollToEnd();
}

void LogDock::showCount(qint64 count)
{
    m_shownCount = count;
    if (count < 2)
        return;
    const QString text = QStringLiteral(" (%1 times)").arg(count);
    QTextCursor cursor(m_edit->document());
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, m_shownLength);
    cursor.insertText(text);
    m_shownLength = text.size();
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
        m_edit->appendHtml(QStringLiteral("<pre class='date'><b>[%1]</b> ----</pre>")
                               .arg(now.toString(QStringLiteral("yyyy-MM-dd hh:mm"))));
    }
    if (due || !m_nextHour.isValid())
        m_nextHour = now.date().startOfDay();
    while (m_nextHour <= now)
        m_nextHour = m_nextHour.addSecs(hour);
}
