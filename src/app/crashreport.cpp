#include "app/crashreport.h"

#include "app/signaltext.h"

#include <cerrno>
#include <ctime>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

namespace {

constexpr int deepestStack = 256;

const char *nameOf(int signal)
{
    switch (signal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGABRT:
        return "SIGABRT";
    case SIGFPE:
        return "SIGFPE";
    case SIGILL:
        return "SIGILL";
    case SIGBUS:
        return "SIGBUS";
    default:
        return "";
    }
}

bool hasAddress(int signal)
{
    return signal != SIGABRT;
}

void addRegisters(SignalText &text, const void *context)
{
    if (!context)
        return;
    const mcontext_t &machine = static_cast<const ucontext_t *>(context)->uc_mcontext;
#if defined(__x86_64__)
    text.text("instruction: ").hexadecimal(std::uintptr_t(machine.gregs[REG_RIP]));
    text.text("\nstack pointer: ").hexadecimal(std::uintptr_t(machine.gregs[REG_RSP])).text("\n");
#elif defined(__aarch64__)
    text.text("instruction: ").hexadecimal(machine.pc);
    text.text("\nstack pointer: ").hexadecimal(machine.sp).text("\n");
#else
    (void)machine;
    (void)text;
#endif
}

void writeHead(int file, const CrashReport::Crash &crash, SignalText &text)
{
    char threadName[17] = "";
    prctl(PR_GET_NAME, threadName);
    text.clear();
    text.text(crash.program).text("\nsignal: ").decimal(crash.signal).text(" ").text(nameOf(crash.signal));
    if (crash.info)
        text.text(", code ").decimal(crash.info->si_code);
    if (crash.info && hasAddress(crash.signal))
        text.text(", address ").hexadecimal(reinterpret_cast<std::uintptr_t>(crash.info->si_addr));
    if (crash.reason && *crash.reason)
        text.text("\nreason: ").text(crash.reason);
    text.text("\nprocess: ").decimal(getpid());
    text.text("\nthread: ").decimal(syscall(SYS_gettid)).text(" ").text(threadName);
    text.text("\nseconds since the epoch: ").decimal(time(nullptr));
    text.text("\nseconds since the start: ").decimal(crash.secondsRunning).text("\n");
    addRegisters(text, crash.context);
    text.writeTo(file);
}

void *frames[deepestStack]; // one report is written, and the handler's stack is small

/// Returns the number of frames.
int writeAddresses(int file, SignalText &text)
{
    const int count = backtrace(frames, deepestStack);
    text.clear();
    text.text("\nstack addresses:");
    for (int i = 0; i < count; ++i)
        text.text(" ").hexadecimal(reinterpret_cast<std::uintptr_t>(frames[i]));
    text.text("\n");
    text.writeTo(file);
    return count;
}

void writeStack(int file, int count)
{
    writeAll(file, "\nstack:\n", 8);
    backtrace_symbols_fd(frames, count, file);
}

void writeMemoryMap(int file)
{
    writeAll(file, "\nmemory map:\n", 13);
    const int maps = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0)
        return;
    char bytes[1024];
    for (;;) {
        const ssize_t count = read(maps, bytes, sizeof bytes);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 || !writeAll(file, bytes, std::size_t(count)))
            break;
    }
    close(maps);
}

} // namespace

void CrashReport::prepare()
{
    void *frame[1];
    backtrace(frame, 1);
}

void CrashReport::write(const char *folder, const Crash &crash)
{
    static SignalText name, text;
    name.clear();
    name.text(folder).text("/crash-").decimal(getpid()).text("-").decimal(time(nullptr)).text(".txt");
    mkdir(folder, 0777);
    const int opened = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    const int file = opened >= 0 ? opened : STDERR_FILENO;
    // The functions' names come last, since another thread that loads a library makes the search for them wait, and
    // what is said after them, since nobody may read it.
    writeHead(file, crash, text);
    const int count = writeAddresses(file, text);
    writeMemoryMap(file);
    writeStack(file, count);
    if (opened < 0)
        return;
    close(opened);
    text.clear();
    text.text("The program crashed. Report: ").text(name.c_str()).text("\n");
    text.writeTo(STDERR_FILENO);
}
