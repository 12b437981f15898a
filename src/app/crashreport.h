#pragma once

#include <csignal>

/// Writes the report of a crash. Everything here may be called in a signal handler: no heap, no locks, no Qt.
namespace CrashReport {

struct Crash {
    const char *program; ///< name and version texts
    const char *reason;  ///< of std::terminate; empty for other crashes
    int signal;
    const siginfo_t *info;    ///< may be null
    const void *context;      ///< the ucontext_t of the handler; may be null
    long long secondsRunning; ///< since the reporter was installed
};

/// Loads the library of stack walks, so that the first walk isn't the one in a handler. To be called beforehand.
void prepare();

/// Makes the folder if need be, and in it "crash-<pid>-<seconds since the epoch>.txt". Writes the report there, or to
/// the standard error if no file can be had, and then says on the standard error which. It may wait for ever for
/// another thread that loads a library, with all but the functions' names written, or for the reader of the standard
/// error.
void write(const char *folder, const Crash &crash);

} // namespace CrashReport
