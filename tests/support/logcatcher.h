#pragma once

#include "log/logger.h"

#include <mutex>

/// What the log gets while this lives, from any thread that ends before it does.
class LogCatcher : public QObject {
public:
    LogCatcher()
    {
        connect(
            &Log::RootLogger::instance(), &Log::RootLogger::newEntry, this,
            [this](const Log::Entry &entry) {
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_entries.append(entry);
            },
            Qt::DirectConnection);
    }
    QList<Log::Entry> entries() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_entries;
    }
    /// The messages of that level or worse.
    QStringList upTo(int level) const
    {
        QStringList texts;
        for (const Log::Entry &entry : entries())
            if (entry.level <= level)
                texts.append(entry.message);
        return texts;
    }
    QStringList complaints() const { return upTo(Log::Warning); }

private:
    mutable std::mutex m_mutex;
    QList<Log::Entry> m_entries;
};
