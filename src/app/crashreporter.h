#pragma once

#include <QStringList>

/// Reports crashes of this process, and starts it again. A crash is a signal SIGSEGV, SIGABRT, SIGFPE, SIGILL or
/// SIGBUS, or a call of std::terminate, on any thread. It is written into a file of the report folder with version,
/// signal, address, stack and memory map; the process then ends by that signal.
///
/// In the moment of a crash nothing is allocated, locked or asked of Qt: all that is needed is made ready at install. A
/// crash while the report is written, or a hang of four seconds, costs the rest of the report, and not the restart.
/// Overflows of a thread's stack are reported where the thread has an AlternateStack.
namespace CrashReporter {

struct Settings {
    QString applicationName;
    QString applicationVersion;
    QString reportFolder; ///< relative to the directory that is current at the crash
    /// The argument with which the executable is started again; empty: it isn't started again.
    QStringList restartArguments;
    /// A process that crashes sooner than this after install isn't started again: that ends a chain of crashes.
    int restartTimeoutSeconds = 60;
    /// Called once the report is written, on the thread that crashed; must neither allocate nor lock.
    void (*lastWords)() noexcept = nullptr;
};

/// Installs the reporter for all threads; the calling one, which must also uninstall it, gets an alternate stack.
/// False, with a lastError(), if that can't be done; then nothing is changed.
bool install(const Settings &settings);

/// The reason why the last install failed.
QString lastError();

/// Undoes the changes of install. Without a reporter it does nothing.
void uninstall();

} // namespace CrashReporter
