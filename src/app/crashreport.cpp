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

void writeStack(int file)
{
    static void *frames[deepestStack]; // one report is written, and the handler's stack is small
    writeAll(file, "\nstack:\n", 8);
    backtrace_symbols_fd(frames, backtrace(frames, deepestStack), file);
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
    static SignalText text;
    text.clear();
    text.text(folder).text("/crash-").decimal(getpid()).text("-").decimal(time(nullptr)).text(".txt");
    mkdir(folder, 0777);
    int file = open(text.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (file >= 0) {
        text.text("\n");
        const char saying[] = "The program crashed. Report: ";
        writeAll(STDERR_FILENO, saying, sizeof saying - 1);
        text.writeTo(STDERR_FILENO);
    } else {
        file = STDERR_FILENO;
    }
    writeHead(file, crash, text);
    writeStack(file);
    writeMemoryMap(file);
    if (file != STDERR_FILENO)
        close(file);
}
