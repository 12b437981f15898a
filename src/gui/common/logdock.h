#pragma once

#include "log/logger.h"

#include <QDateTime>
#include <QDockWidget>
#include <QHash>
#include <QTextCursor>
#include <QTimer>

#include <list>

class QPlainTextEdit;

/// Shows the last 1000 lines of the log; equal entries in a row are one, with their count behind it. So is a warning
/// that comes again after others: it stands where it came last. Of the files that are read one after the other the
/// last one stands, with their number. Main thread only; a burst of entries costs no more than the last 1000 of it.
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
    struct Paragraph {
        QString html;
        qint64 count;
        QString key; ///< of what stands once; empty for all else
    };
    using Paragraphs = std::list<Paragraph>;
    /// A paragraph in the view that stands once.
    struct Shown {
        QTextCursor whole; ///< selects it
        qint64 count;
    };

    void addParagraph(Paragraph paragraph);
    QString keyOf(const Log::Entry &entry) const;
    bool isOfRun(const QString &key) const;
    qint64 takeFormer(const QString &key);
    void dropOldest();
    void appendPending();
    void append(const Paragraph &paragraph);
    int removeShown(const QString &key);
    void showCount(qint64 count);
    void markHour(const QDateTime &now);

    QPlainTextEdit *m_edit;
    QDate m_lastDate;
    Log::Entry m_lastEntry;
    bool m_mayRepeat = false;                           ///< the last entry ends the text
    Paragraphs m_pending;                               ///< not yet shown
    QHash<QString, Paragraphs::iterator> m_pendingOnce; ///< those of them that stand once
    QHash<QString, Shown> m_shownOnce;
    qint64 m_repeats = 0;    ///< not yet shown, of the last paragraph shown
    qint64 m_shownCount = 0; ///< of the last paragraph shown
    int m_shownLength = 0;   ///< of the count's text behind it
    QString m_shownKey;      ///< of the last paragraph shown
    int m_pendingLines = 0;
    qint64 m_run = 0; ///< of files that are read one after the other
    QTimer m_flushTimer;
    QTimer m_tickTimer;
    QDateTime m_nextHour; ///< when the next mark is due
    int m_end = 0;        ///< of the scroll bar
    int m_lastPosition = 0;
    int m_stillTicks = 0;
};
