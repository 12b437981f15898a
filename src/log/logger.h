#pragma once

#include "log/logentry.h"

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

/// One process-wide logger. Entries go to the console and to the signal newEntry; a daily log file can be switched on.
namespace Log {

class ConsoleOutput;
class LogFileWriter;

/// The one root of all logging. The console gets a run of equal entries as the first of them and the number of the
/// others; the signal and the files get each. Every operation may be called from any thread; newEntry is emitted on the
/// poster's thread, so receivers connect queued.
class RootLogger : public QObject {
    Q_OBJECT
public:
    static RootLogger &instance();

    void post(const Entry &entry);
    /// Starts writing day files into the directory, in place of any earlier one.
    void setLogDirectory(const QString &directory);
    void closeLogFile();
    /// Entries for which the filter is false are dropped. Set it before other threads log.
    void setFilter(std::function<bool(const Entry &)> filter);

Q_SIGNALS:
    void newEntry(Log::Entry entry);

private Q_SLOTS:
    void flushConsoleSoon();

private:
    RootLogger();
    ~RootLogger() override;

    std::unique_ptr<ConsoleOutput> m_console;
    QTimer *m_consoleTimer; ///< on this object's thread, the application's
    std::mutex m_mutex;     ///< guards m_writer and its files
    std::unique_ptr<LogFileWriter> m_writer;
    std::atomic<bool> m_fileOutput{false};
    std::function<bool(const Entry &)> m_filter;
};

/// The handle by which a module logs under its own area. A value, cheap to copy.
class Logger {
public:
    explicit Logger(const QString &area);

    void log(int level, const QString &message) const;
    /// Hands on a ready entry, with this logger's area put in front of its source.
    void post(Entry entry) const;
    const QString &area() const { return m_area; }

private:
    QString m_area;
};

/// While it lives, what its thread logs is dropped, Qt's messages included: of work that looks ahead at what will be
/// told later.
class Silence {
public:
    Silence();
    ~Silence();
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;
};

/// Sends Qt's own messages to the root logger.
void installQtMessageHandler();

} // namespace Log

Q_DECLARE_METATYPE(Log::Entry)
