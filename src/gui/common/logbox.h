#pragma once

#include "log/logger.h"
#include "util/mailbox.h"

#include <QObject>

#include <deque>

/// The entries of all threads that wait for the main thread. It keeps the last 1000 of those that the log dock shows,
/// equal ones in a row as one, so that a reader that complains about every row costs neither memory nor a frozen
/// window. Made and destroyed on the main thread.
class LogBox : public QObject {
    Q_OBJECT
public:
    static constexpr int capacity = 1000;

    /// Begins to collect the entries of the root logger.
    explicit LogBox(QObject *parent = nullptr);
    ~LogBox() override;

    /// Takes an entry, on any thread.
    void put(const Log::Entry &entry);

Q_SIGNALS:
    /// Emitted on the main thread, in order.
    void newEntry(Log::Entry entry);

private Q_SLOTS:
    void deliver();

private:
    Mailbox<std::deque<Log::Entry>> m_entries;
};
