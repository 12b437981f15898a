#include "log/logger.h"

#include "log/consoleoutput.h"
#include "log/logfilewriter.h"

#include <QCoreApplication>
#include <QScopedValueRollback>

#include <cstdio>
#include <cstdlib>
#include <new>

namespace Log {

namespace {

// The alignment is for mold 1.10: it begins the pages that are made read-only at thread-local memory, of which a single
// byte may lie on the page before, and nothing starts.
alignas(void *) thread_local int silences = 0;

int levelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return Debug;
    case QtInfoMsg:
        return Info;
    case QtWarningMsg:
        return Warning;
    case QtCriticalMsg:
        return Critical;
    case QtFatalMsg:
        return Alert;
    }
    return -1;
}

/// The file's name without its folders, whichever way the compiler's platform writes them.
QString bareFileName(const char *file)
{
    const QString path = QString::fromUtf8(file);
    return path.mid(std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1);
}

/// Qt calls it in destructors, which no exception may leave.
void handleQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &message) noexcept
{
    try {
        const QString source =
            QStringLiteral("qt.%1:%2:%3")
                .arg(QString::fromUtf8(context.category), bareFileName(context.file), QString::number(context.line));
        RootLogger::instance().post({levelOf(type), source, message, QDateTime::currentDateTime()});
    } catch (const std::bad_alloc &) {
        std::fputs("Not enough memory for a message\n", stderr);
    }
}

} // namespace

// ---- RootLogger

RootLogger &RootLogger::instance()
{
    // Never destroyed, since other static objects may still log while the process ends.
    static RootLogger *const root = [] {
        qRegisterMetaType<Log::Entry>("Log::Entry");
        auto *made = new RootLogger;
        if (QCoreApplication::instance()) // whose thread is sure to turn an event loop
            made->moveToThread(QCoreApplication::instance()->thread());
        return made;
    }();
    return *root;
}

RootLogger::RootLogger() : m_console(std::make_unique<ConsoleOutput>()), m_consoleTimer(new QTimer(this))
{
    m_consoleTimer->setSingleShot(true);
    m_consoleTimer->setInterval(ConsoleOutput::patience);
    connect(m_consoleTimer, &QTimer::timeout, this, [this] { m_console->flush(); });
    std::atexit([] { instance().m_console->flush(); });
}

RootLogger::~RootLogger() = default;

void RootLogger::post(const Entry &entry)
{
    if (silences > 0 || (m_filter && !m_filter(entry)))
        return;
    if (m_console->put(entry))
        QMetaObject::invokeMethod(this, "flushConsoleSoon", Qt::QueuedConnection);
    Q_EMIT newEntry(entry);
    // Then Qt complains of the writer itself, which holds the lock.
    alignas(void *) static thread_local bool isWriting = false;
    if (m_fileOutput && !isWriting) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const QScopedValueRollback<bool> writing(isWriting, true);
        if (m_writer)
            m_writer->write(entry);
    }
}

void RootLogger::flushConsoleSoon()
{
    if (!m_consoleTimer->isActive())
        m_consoleTimer->start();
}

void RootLogger::setLogDirectory(const QString &directory)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_writer = std::make_unique<LogFileWriter>(directory);
    m_fileOutput = true;
}

void RootLogger::closeLogFile()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_fileOutput = false;
    m_writer.reset();
}

void RootLogger::setFilter(std::function<bool(const Entry &)> filter)
{
    m_filter = std::move(filter);
}

// ---- Logger

Logger::Logger(const QString &area) : m_area(area) {}

void Logger::log(int level, const QString &message) const
{
    RootLogger::instance().post({level, m_area, message, QDateTime::currentDateTime()});
}

void Logger::post(Entry entry) const
{
    if (!m_area.isEmpty() && !entry.source.isEmpty())
        entry.source = m_area + QLatin1Char('.') + entry.source;
    else if (!m_area.isEmpty())
        entry.source = m_area;
    RootLogger::instance().post(entry);
}

Silence::Silence()
{
    ++silences;
}

Silence::~Silence()
{
    --silences;
}

void installQtMessageHandler()
{
    qInstallMessageHandler(handleQtMessage);
}

} // namespace Log
