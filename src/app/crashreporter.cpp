#include "app/crashreporter.h"

#include "app/crashreport.h"
#include "util/alternatestack.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <cxxabi.h>
#include <exception>
#include <optional>
#include <sys/syscall.h>
#include <typeinfo>
#include <unistd.h>

namespace {

constexpr int crashSignals[] = {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS};
constexpr int crashSignalCount = int(sizeof crashSignals / sizeof *crashSignals);
constexpr unsigned reportPatience = 4; // seconds, for a report that hangs
constexpr int mostArguments = 8;
constexpr int highestDescriptor = 65536;

/// What the handler reads. It lies in static memory, out of the way of a heap gone wrong.
struct Prepared {
    char texts[16384];
    std::size_t textSize = 0;
    const char *program = nullptr;
    const char *folder = nullptr;
    char *arguments[mostArguments + 2] = {}; ///< ended by null; empty: no restart
    int restartTimeout = 0;                  ///< seconds
    void (*lastWords)() noexcept = nullptr;
    timespec start{};
    char reason[512] = ""; ///< of std::terminate
};
Prepared prepared;

/// What install changed.
struct Installed {
    AlternateStack stack;
    struct sigaction actions[crashSignalCount];
    struct sigaction alarmAction;
    std::terminate_handler terminateHandler = nullptr;
};
std::optional<Installed> installed;
QString error;

std::atomic<pid_t> reportingThread{0};
std::atomic<int> crashSignal{0};
std::atomic<bool> restartTried{false};
static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

// ---- in the moment of a crash: nothing here allocates or locks

long long secondsRunning()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const long long seconds = now.tv_sec - prepared.start.tv_sec;
    return now.tv_nsec < prepared.start.tv_nsec ? seconds - 1 : seconds;
}

/// Standard input and outputs alone go over to the new process.
void closeOthersOnExec()
{
    constexpr unsigned closeOnExec = 1U << 2; // CLOSE_RANGE_CLOEXEC
    if (syscall(SYS_close_range, 3U, ~0U, closeOnExec) == 0)
        return;
    for (int descriptor = 3; descriptor < highestDescriptor; ++descriptor)
        close(descriptor); // an older kernel; this process has no other use for them
}

void restartOnce()
{
    if (restartTried.exchange(true) || !prepared.arguments[0] || secondsRunning() < prepared.restartTimeout)
        return;
    // Not fork: that one takes the heap's locks, which the crashed thread may hold.
    if (_Fork() != 0)
        return;
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    closeOthersOnExec();
    execve("/proc/self/exe", prepared.arguments, environ);
    _exit(127);
}

[[noreturn]] void endBy(int signal)
{
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, signal);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    raise(signal);
    _exit(128 + signal);
}

void handleCrash(int signal, siginfo_t *info, void *context)
{
    const auto self = pid_t(syscall(SYS_gettid));
    pid_t reporting = 0;
    if (reportingThread.compare_exchange_strong(reporting, self)) {
        crashSignal = signal;
        alarm(reportPatience);
        CrashReport::write(prepared.folder,
                           {prepared.program, prepared.reason, signal, info, context, secondsRunning()});
        if (prepared.lastWords)
            prepared.lastWords();
    } else if (reporting != self) {
        for (;;)
            pause(); // the process ends with the thread that crashed first
    }
    // A crash while reporting comes here at once.
    restartOnce();
    endBy(crashSignal);
}

void handleHangingReport(int)
{
    restartOnce();
    endBy(crashSignal ? crashSignal.load() : SIGABRT);
}

// ---- before it

void copyReason(const char *text)
{
    const std::size_t used = std::strlen(prepared.reason);
    std::strncat(prepared.reason, text, sizeof prepared.reason - used - 1);
}

[[noreturn]] void handleTerminate()
{
    copyReason("std::terminate");
    if (const std::type_info *type = abi::__cxa_current_exception_type()) {
        copyReason(", uncaught exception of type ");
        copyReason(type->name());
        try {
            throw;
        } catch (const std::exception &exception) {
            copyReason(": ");
            copyReason(exception.what());
        } catch (...) {
        }
    }
    std::abort();
}

/// A copy in static memory; null if there is no room for it.
char *keep(const QByteArray &text)
{
    const auto size = std::size_t(text.size()) + 1;
    if (sizeof prepared.texts - prepared.textSize < size)
        return nullptr;
    char *place = prepared.texts + prepared.textSize;
    std::memcpy(place, text.constData(), size);
    prepared.textSize += size;
    return place;
}

bool prepareArguments(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return true;
    if (arguments.size() > mostArguments)
        return false;
    int count = 0;
    prepared.arguments[count++] = keep(QFile::encodeName(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))));
    for (const QString &argument : arguments)
        prepared.arguments[count++] = keep(QFile::encodeName(argument));
    for (int i = 0; i < count; ++i) {
        if (!prepared.arguments[i])
            return false;
    }
    return true;
}

bool prepareTexts(const CrashReporter::Settings &settings)
{
    prepared = Prepared();
    prepared.restartTimeout = settings.restartTimeoutSeconds;
    prepared.lastWords = settings.lastWords;
    prepared.program = keep((settings.applicationName + QLatin1Char(' ') + settings.applicationVersion).toLocal8Bit());
    prepared.folder = keep(QFile::encodeName(settings.reportFolder));
    clock_gettime(CLOCK_MONOTONIC, &prepared.start);
    return prepared.program && prepared.folder && prepareArguments(settings.restartArguments);
}

struct sigaction crashAction()
{
    struct sigaction action {};
    action.sa_sigaction = handleCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER; // a crash while reporting is to come here again
    sigfillset(&action.sa_mask);
    for (int signal : crashSignals)
        sigdelset(&action.sa_mask, signal);
    sigdelset(&action.sa_mask, SIGALRM);
    return action;
}

bool installHandlers(Installed &old)
{
    struct sigaction hanging {};
    hanging.sa_handler = handleHangingReport;
    hanging.sa_flags = SA_ONSTACK;
    if (sigaction(SIGALRM, &hanging, &old.alarmAction) != 0)
        return false;
    const struct sigaction action = crashAction();
    for (int i = 0; i < crashSignalCount; ++i) {
        if (sigaction(crashSignals[i], &action, &old.actions[i]) == 0)
            continue;
        const int reason = errno;
        while (--i >= 0)
            sigaction(crashSignals[i], &old.actions[i], nullptr);
        sigaction(SIGALRM, &old.alarmAction, nullptr);
        errno = reason;
        return false;
    }
    old.terminateHandler = std::set_terminate(handleTerminate);
    return true;
}

} // namespace

bool CrashReporter::install(const Settings &settings)
{
    if (installed) {
        error = QStringLiteral("The crash reporter is installed already");
        return false;
    }
    if (!prepareTexts(settings)) {
        error = QStringLiteral("The texts of the crash reporter are too long");
        return false;
    }
    CrashReport::prepare();
    installed.emplace();
    if (!installHandlers(*installed)) {
        error = qt_error_string(errno);
        installed.reset();
        return false;
    }
    return true;
}

QString CrashReporter::lastError()
{
    return error;
}

void CrashReporter::uninstall()
{
    if (!installed)
        return;
    for (int i = 0; i < crashSignalCount; ++i)
        sigaction(crashSignals[i], &installed->actions[i], nullptr);
    sigaction(SIGALRM, &installed->alarmAction, nullptr);
    std::set_terminate(installed->terminateHandler);
    installed.reset();
}
