#pragma once

#include "log/logger.h"

#include <QDateTime>
#include <QDockWidget>
#include <QTimer>

#include <deque>

class QPlainTextEdit;

/// Shows the last 1000 lines of the log; equal entries in a row are one, with their count behind it. Main thread only;
/// a burst of entries costs no more than the last 1000 of it.
class LogDock : public QDockWidget {
    Q_OBJECT
public:
    static constexpr int greatestBlockCount = 1000;

    explicit LogDock(QWidget *parent = nullptr);

    QPlainTextEdit *textEdit() const { return m_edit; }

public Q_SLOTS:
    /// The text appears when the event loop runs next.
    void addEntry(Log::Entry entry);
    void scrollToEnd();
    /// The work of every 30 s: a view left alone for two rounds goes back to the end, and a new hour is marked.
    void tick(const QDateTime &now);

private:
    bool isAtEnd() const;
    void keepEndInSight(int begin, int newEnd);
    void appendPending();
    void showCount(qint64 count);
    void markHour(const QDateTime &now);

    QPlainTextEdit *m_edit;
    struct Paragraph {
        QString html;
        qint64 count;
    };

    QDate m_lastDate;
    Log::Entry m_lastEntry;
    bool m_mayRepeat = false;        ///< the last entry ends the text
    std::deque<Paragraph> m_pending; ///< not yet shown
    qint64 m_repeats = 0;            ///< not yet shown, of the last paragraph shown
    qint64 m_shownCount = 0;         ///< of the last paragraph shown
    int m_shownLength = 0;           ///< of the count's text behind it
    int m_pendingLines = 0;
    QTimer m_flushTimer;
    QTimer m_tickTimer;
    QDateTime m_nextHour; ///< when the next mark is due
    int m_end = 0;        ///< of the scroll bar
    int m_lastPosition = 0;
    int m_stillTicks = 0;
};
