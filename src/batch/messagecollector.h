#pragma once

#include "log/logger.h"

#include <QList>

namespace Batch {

/// Keeps the warnings, and worse, that the log gets while it lives, in place of the console: standard output belongs to
/// the results. One at a time; the program has one thread.
class MessageCollector {
public:
    static constexpr int most = 1000;

    /// Sources whose warnings count. The toolkit's warnings while it draws are no complaints about the data.
    enum Sources { All, AllButToolkit };

    /// With `echo` each message goes to standard error as well. One that is repeated at once is told once more, with
    /// the number of repeats, before the next line.
    explicit MessageCollector(bool echo, Sources sources = All);
    ~MessageCollector();
    MessageCollector(const MessageCollector &) = delete;
    MessageCollector &operator=(const MessageCollector &) = delete;

    /// The first ones, `most` of them.
    const QList<Log::Entry> &entries() const { return m_entries; }
    qint64 omitted() const { return m_omitted; }
    bool isEmpty() const { return m_entries.isEmpty(); }

private:
    friend void tell(const QString &text);

    void take(const Log::Entry &entry);
    void tellRepeats();

    bool m_echo;
    Sources m_sources;
    Log::Entry m_last; ///< told last
    qint64 m_repeats = 0;
    QList<Log::Entry> m_entries;
    qint64 m_omitted = 0;
};

/// A line to standard error, behind the repeats of the message before it and with the progress line out of its way.
void tell(const QString &text);

} // namespace Batch
