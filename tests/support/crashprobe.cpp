#include "app/crashreporter.h"
#include "log/consoleoutput.h"
#include "log/logger.h"
#include "util/alternatestack.h"
#include "util/workerthread.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <iterator>
#include <malloc.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

// crashprobe [held-]KIND THREAD DELAY_MS TIMEOUT_S: crashes in the way KIND on the THREAD "main", "reading" or "plain",
// so long after its start, with a crash reporter as the program has it; "held-": inside the lock of a preloaded
// allocator (heldmalloc.cpp). Started again by the reporter it writes what it was given into "restarted.txt", one
// argument a line, and then how often it has the file open that the crashed process held. The environment may ask for
// more:
//
//   CRASHPROBE_LIBRARY  what the kind "loading" loads
//   CRASHPROBE_AGAIN    started again, it crashes once more, in the way of these arguments, divided by spaces
//   CRASHPROBE_FLAW     a fault of the reporter: "none" isn't installed, "allocating" allocates first,
//                       "killing" ends the process by another signal, "looping" starts it again whenever it crashes

namespace {

volatile int depth = 0;
volatile bool goOn = true;
volatile int zero = 0;

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

/// Writes behind the end of a file that memory stands for.
[[gnu::noinline]] void probeBus()
{
    const int file = open("empty", O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    auto *bytes = static_cast<volatile char *>(mmap(nullptr, 1, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    *bytes = 1;
}

[[gnu::noinline, gnu::no_sanitize_undefined]] void probeDivide()
{
#if defined(__x86_64__)
    depth = 1000 / zero;
#else
    std::raise(SIGFPE);
#endif
}

[[gnu::noinline]] void probeIllegal()
{
#if defined(__x86_64__)
    asm volatile("ud2");
#else
    std::raise(SIGILL);
#endif
}

/// Writes one byte too many; the allocator finds it out in its own lock.
[[gnu::noinline]] void probeBreakHeap()
{
    auto *const block = static_cast<volatile char *>(std::malloc(2000));
    block[malloc_usable_size(const_cast<char *>(block))] = 0;
    std::free(const_cast<char *>(block));
}

[[gnu::noinline]] void probeFatal()
{
    qFatal("no way on");
}

/// Nobody reads what the process says.
[[gnu::noinline]] void probeUnheard()
{
    int ends[2];
    if (pipe2(ends, O_NONBLOCK) != 0)
        return;
    const char bytes[4096] = "";
    while (write(ends[1], bytes, sizeof bytes) > 0) {
    }
    fcntl(ends[1], F_SETFL, 0);
    dup2(ends[1], STDERR_FILENO);
    probeNull();
}

/// Another thread is loading a library for ever.
[[gnu::noinline]] void probeLoading()
{
    setenv("HELDMALLOC_LOADS", "1", 1);
    std::thread([] { dlopen(getenv("CRASHPROBE_LIBRARY"), RTLD_NOW); }).detach();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    probeNull();
}

[[gnu::noinline]] void probeLog()
{
    for (int i = 0; i < 1003; ++i)
        Log::Logger(QStringLiteral("probe")).log(Log::Error, QStringLiteral("said"));
    probeNull();
}

} // extern "C"

namespace {

const struct {
    const char *name;
    void (*crash)();
} kinds[] = {
    {"overflow", [] { probeOverflow(0); }},
    {"null", probeNull},
    {"abort", probeAbort},
    {"throw", probeThrow},
    {"bus", probeBus},
    {"ill", probeIllegal},
    {"fpe", probeDivide},
    {"heap", probeBreakHeap},
    {"fatal", probeFatal},
    {"unheard", probeUnheard},
    {"loading", probeLoading},
    {"logged", probeLog},
};

void crash(QString name)
{
    const QLatin1String held("held-");
    const bool isHeld = name.startsWith(held);
    if (isHeld)
        name.remove(0, held.size());
    const auto *const kind = std::find_if(std::begin(kinds), std::end(kinds),
                                          [&](const auto &each) { return name == QLatin1String(each.name); });
    if (kind == std::end(kinds))
        std::exit(2);
    if (isHeld) {
        auto *const hold = reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "holdAllocator"));
        if (!hold)
            std::exit(4);
        hold();
    }
    kind->crash();
}

struct sigaction reporting[NSIG];

void allocateFirst(int signal, siginfo_t *info, void *context)
{
    void *volatile memory = std::malloc(100);
    std::free(memory);
    reporting[signal].sa_sigaction(signal, info, context);
}

void killItself() noexcept
{
    kill(getpid(), SIGKILL);
}

bool installReporter(int timeout, const QByteArray &flaw)
{
    CrashReporter::Settings settings;
    settings.applicationName = QStringLiteral("Probe");
    settings.applicationVersion = QStringLiteral("vers 1 rev 2");
    settings.reportFolder = QStringLiteral("crash_reports");
    settings.restartArguments = QStringList{QStringLiteral("--recover"), QStringLiteral("a file.recovery")};
    settings.restartTimeoutSeconds = flaw == "looping" ? 0 : timeout;
    settings.lastWords = flaw == "killing" ? killItself : Log::writeCountAtCrash;
    if (flaw == "none")
        return true;
    if (!CrashReporter::install(settings))
        return false;
    if (flaw == "allocating") {
        for (int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS}) {
            sigaction(signal, nullptr, &reporting[signal]);
            struct sigaction action = reporting[signal];
            action.sa_sigaction = allocateFirst;
            sigaction(signal, &action, nullptr);
        }
    }
    return true;
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
    Log::installQtMessageHandler();
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--recover")) {
        if (!qEnvironmentVariableIsSet("CRASHPROBE_AGAIN"))
            return tellRestart(arguments);
        arguments = QStringList{arguments[0]} + qEnvironmentVariable("CRASHPROBE_AGAIN").split(QLatin1Char(' '));
    }
    if (arguments.size() != 5)
        return 2;
    if (!installReporter(arguments[4].toInt(), qgetenv("CRASHPROBE_FLAW")))
        return 3;
    open("held-open", O_RDWR | O_CREAT, 0666); // and without O_CLOEXEC

    const QString kind = arguments[1], place = arguments[2];
    const int delay = arguments[3].toInt();
    WorkerThread worker;
    worker.setObjectName(QStringLiteral("reading"));
    QObject onWorker;
    onWorker.moveToThread(&worker);
    worker.start();
    std::thread plain;
    if (place == QLatin1String("plain")) {
        plain = std::thread([=] {
            const AlternateStack signalStack;
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            crash(kind);
        });
    } else {
        QObject *const where = place == QLatin1String("reading") ? &onWorker : QCoreApplication::instance();
        QTimer::singleShot(delay, where, [kind] { crash(kind); });
    }
    return QCoreApplication::exec();
}
