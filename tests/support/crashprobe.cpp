#include "app/crashreporter.h"
#include "log/consoleoutput.h"
#include "log/logger.h"
#include "util/workerthread.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTimer>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>

// crashprobe KIND THREAD DELAY_MS TIMEOUT_S: crashes in the way KIND on the THREAD "main" or "reading", so long after
// its start, with a crash reporter as the program has it. Started again by that it writes what it was given into
// "restarted.txt", one argument a line, and then how often it has the file open that the crashed process held.

namespace {

volatile int depth = 0;
volatile bool goOn = true;

} // namespace

volatile int *volatile nowhere = nullptr;

// With names of their own, so that a report's stack shows them.
extern "C" {

int probeOverflow(int level)
{
    volatile char block[1024];
    block[0] = char(level);
    depth = level;
    return goOn ? probeOverflow(level + 1) + block[0] : block[0];
}

[[gnu::noinline, gnu::no_sanitize_undefined]] void probeNull()
{
    *nowhere = 1;
}

[[gnu::noinline]] void probeAbort()
{
    std::abort();
}

[[gnu::noinline]] void probeThrow()
{
    throw std::runtime_error("no way out");
}

[[gnu::noinline]] void probeRaise(int signal)
{
    std::raise(signal);
}

} // extern "C"

namespace {

void crash(const QString &kind)
{
    if (kind == QLatin1String("overflow"))
        probeOverflow(0);
    else if (kind == QLatin1String("null"))
        probeNull();
    else if (kind == QLatin1String("abort"))
        probeAbort();
    else if (kind == QLatin1String("throw"))
        [&]() noexcept { probeThrow(); }();
    else if (kind == QLatin1String("logged")) {
        for (int i = 0; i < 1003; ++i)
            Log::Logger(QStringLiteral("probe")).log(Log::Error, QStringLiteral("said"));
        probeNull();
    } else if (kind == QLatin1String("bus"))
        probeRaise(SIGBUS);
    else if (kind == QLatin1String("ill"))
        probeRaise(SIGILL);
    else if (kind == QLatin1String("fpe"))
        probeRaise(SIGFPE);
}

int tellRestart(const QStringList &arguments)
{
    int open = 0;
    for (const QFileInfo &info : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System))
        open += info.symLinkTarget().endsWith(QLatin1String("/held-open"));
    QFile file(QStringLiteral("restarted.txt"));
    file.open(QIODevice::Append);
    for (const QString &argument : arguments.mid(1))
        file.write(argument.toUtf8() + '\n');
    file.write(QByteArray::number(open) + '\n');
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--recover"))
        return tellRestart(arguments);
    if (arguments.size() != 5)
        return 2;

    CrashReporter::Settings settings;
    settings.applicationName = QStringLiteral("Probe");
    settings.applicationVersion = QStringLiteral("vers 1 rev 2");
    settings.reportFolder = QStringLiteral("crash_reports");
    settings.restartArguments = QStringList{QStringLiteral("--recover"), QStringLiteral("a file.recovery")};
    settings.restartTimeoutSeconds = arguments[4].toInt();
    settings.lastWords = Log::writeCountAtCrash;
    if (!CrashReporter::install(settings))
        return 3;
    open("held-open", O_RDWR | O_CREAT, 0666); // and without O_CLOEXEC

    WorkerThread thread;
    thread.setObjectName(QStringLiteral("reading"));
    QObject onThread;
    onThread.moveToThread(&thread);
    thread.start();
    const QString kind = arguments[1];
    QObject *const where = arguments[2] == QLatin1String("reading") ? &onThread : QCoreApplication::instance();
    QTimer::singleShot(arguments[3].toInt(), where, [kind] { crash(kind); });
    return QCoreApplication::exec();
}
