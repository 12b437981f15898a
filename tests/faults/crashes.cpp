#include "faults/lane.h"

#include "support/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QStringList>
#include <QThread>

#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

// Crashes of all kinds, on each kind of thread, in and out of an allocator's lock: each leaves a whole report in time,
// ends by its own signal, and has the program started again no more than once.

using Faults::Trial;

namespace {

constexpr int patience = 5000; // ms
constexpr int times = 50;

const char *const threads[] = {"main", "reading", "plain"};

struct Fault {
    const char *kind;
    int signal;
    const char *told; ///< in the report
};

// Those that don't allocate themselves come first.
const Fault faults[] = {
    {"null", SIGSEGV, "probeNull"},  {"bus", SIGBUS, "probeBus"},      {"fpe", SIGFPE, "probeDivide"},
    {"ill", SIGILL, "probeIllegal"}, {"abort", SIGABRT, "(abort+"},    {"overflow", SIGSEGV, "probeOverflow"},
    {"fatal", SIGABRT, "(abort+"},   {"throw", SIGABRT, "no way out"}, {"heap", SIGABRT, "probeBreakHeap"},
};
constexpr int allocatorFaults = 6, allFaults = std::size(faults) - 1, threadCount = std::size(threads);

/// How a trial's probe is started.
struct Run {
    const Fault &fault;
    QString thread;
    bool isHeld = false;      ///< inside the allocator's lock
    bool isRestarted = false; ///< old enough to be started again, when it crashes once more
    const char *flaw = "";    ///< of the reporter, see crashprobe.cpp
};

struct Ended {
    pid_t process;
    int status;
};

bool start(const Trial &trial, const Run &run, int delay)
{
    const QString kind = QString(run.isHeld ? "held-" : "") + run.fault.kind;
    const QByteArray arguments[] = {CRASH_PROBE, kind.toUtf8(), run.thread.toUtf8(), QByteArray::number(delay),
                                    run.isRestarted ? "0" : "60"};
    char *line[std::size(arguments) + 1] = {};
    for (std::size_t i = 0; i < std::size(arguments); ++i)
        line[i] = const_cast<char *>(arguments[i].constData());
    qputenv("CRASHPROBE_AGAIN", kind.toUtf8() + ' ' + run.thread.toUtf8() + " 0 60");
    qputenv("CRASHPROBE_FLAW", run.flaw);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, trial.folder().toLocal8Bit());
    for (int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, output, "said.txt", O_WRONLY | O_CREAT | O_APPEND, 0666);
    pid_t process = -1;
    if (run.isHeld)
        qputenv("LD_PRELOAD", HELD_MALLOC);
    const bool isStarted = posix_spawn(&process, CRASH_PROBE, &actions, nullptr, line, environ) == 0;
    qunsetenv("LD_PRELOAD");
    posix_spawn_file_actions_destroy(&actions);
    return isStarted;
}

/// Ends what is left of a trial: the processes of its folder are children of this one, or theirs.
void killAll(const Trial &trial)
{
    for (const QString &process : QDir("/proc").entryList(QDir::Dirs)) {
        if (QFile::symLinkTarget("/proc/" + process + "/cwd") == trial.folder())
            kill(process.toInt(), SIGKILL);
    }
}

/// Waits for the process and for those that start it again.
std::vector<Ended> waitForAll(Trial &trial)
{
    std::vector<Ended> all;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        int status = 0;
        const pid_t process = waitpid(-1, &status, WNOHANG);
        if (process < 0)
            return all;
        if (process > 0) {
            trial.measure("ms to the end", double(timer.restart()));
            all.push_back({process, status});
        }
        if (all.size() > 4)
            trial.fail("a loop of restarts");
        if (timer.elapsed() > patience)
            trial.fail("no end within five seconds");
        if (!trial.failure().isEmpty())
            killAll(trial);
        if (process == 0)
            QThread::msleep(1);
    }
}

void check(Trial &trial, const Run &run, const Ended &ended)
{
    trial.require(WIFSIGNALED(ended.status) && WTERMSIG(ended.status) == run.fault.signal,
                  QString("ended with status 0x%1 instead of by signal %2")
                      .arg(QString::number(ended.status, 16), QString::number(run.fault.signal)));
    const QDir folder(trial.path("crash_reports"));
    const QStringList names = folder.entryList({QString("crash-%1-*.txt").arg(ended.process)}, QDir::Files);
    if (!trial.require(names.size() == 1, QString("%1 reports").arg(names.size())))
        return;
    const QByteArray report = contentOf(folder.filePath(names.first()));
    for (const QByteArray &text : {"Probe vers 1 rev 2\nsignal: " + QByteArray::number(run.fault.signal),
                                   QByteArray(run.fault.told), QByteArray("[stack]"), QByteArray("[vdso]")})
        trial.require(report.contains(text), QString("the report has no '%1'").arg(text.constData()));
    trial.count("reports");
}

void crash(Trial &trial, const Run &run)
{
    if (!trial.require(start(trial, run, trial.pick(0, 20)), "the probe doesn't start"))
        return;
    const std::vector<Ended> ended = waitForAll(trial);
    for (const Ended &each : ended)
        check(trial, run, each);
    trial.require(int(ended.size()) == (run.isRestarted ? 2 : 1), QString("%1 processes").arg(ended.size()));
}

void faultOnAnyThread(Trial &trial)
{
    crash(trial, {faults[trial.number % allFaults], threads[trial.number / allFaults % threadCount], false, false,
                  trial.isPlanted ? "none" : ""});
}

void insideTheAllocator(Trial &trial)
{
    crash(trial, {faults[trial.number % allocatorFaults], threads[trial.number / allocatorFaults % threadCount], true,
                  false, trial.isPlanted ? "allocating" : ""});
}

void brokenHeap(Trial &trial)
{
    crash(trial,
          {faults[allFaults], threads[trial.number % threadCount], false, false, trial.isPlanted ? "killing" : ""});
}

void restart(Trial &trial)
{
    // Each case of the other kinds once in a round.
    constexpr int plain = (allFaults + 1) * threadCount, all = plain + allocatorFaults * threadCount;
    const int which = int(trial.number % all), fault = which < plain ? which : which - plain;
    crash(trial, {faults[fault / threadCount], threads[fault % threadCount], which >= plain, true,
                  trial.isPlanted ? "looping" : ""});
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::vector<Faults::Kind> kinds{{"faults", allFaults * threadCount * times, faultOnAnyThread},
                                    {"allocator", allocatorFaults * threadCount * times, insideTheAllocator},
                                    {"heap", threadCount * times, brokenHeap},
                                    {"restarts", 45 * times, restart}};
    for (Faults::Kind &kind : kinds)
        kind.programs = QStringList{CRASH_PROBE, HELD_MALLOC};
    return Faults::runLane("crashes", kinds);
}
