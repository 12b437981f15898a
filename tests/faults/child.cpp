#include "faults/child.h"

#include "support/files.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

#include <execinfo.h>
#include <fcntl.h>
#include <linux/landlock.h>
#include <pthread.h>
#include <sys/personality.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace Faults {

namespace {

constexpr double leastTurn = 0.1; ///< ms; shorter ones are idle, and many
constexpr int watchMs = 20;
constexpr double toldTurns = 100; ///< ms; what a turn does is told each time that it has worked for as long again

QString firstLineOf(const QByteArray &text, const QStringList &marks)
{
    for (const QByteArray &bytes : text.split('\n')) {
        const QString line = QString::fromUtf8(bytes).trimmed();
        for (const QString &mark : marks)
            if (line.contains(mark))
                return line;
    }
    return {};
}

void addFailure(ChildEnd &end, const QString &what)
{
    end.failure += (end.failure.isEmpty() ? QString() : QStringLiteral("; ")) + what;
}

/// Lines of the child are a word, a number and a text, with tabs between. False for another one, of its log.
bool take(ChildEnd &end, const QList<QByteArray> &fields)
{
    if (fields.size() != 3)
        return false;
    const QString text = QString::fromUtf8(fields[2]);
    if (fields[0] == "count")
        end.tally.counts[text] += fields[1].toLongLong();
    else if (fields[0] == "measure")
        end.tally.measure(text, fields[1].toDouble());
    else if (fields[0] == "at")
        end.last = fields[1].toLongLong();
    else if (fields[0] == "fail")
        addFailure(end, text);
    return true;
}

QString deathOf(const QProcess &process, const QByteArray &errors)
{
    const QString told = firstLineOf(errors, {"ERROR: ", "WARNING: ThreadSanitizer", "runtime error", "FATAL", "ASSERT",
                                              "terminate called", "qFatal"});
    if (process.exitStatus() == QProcess::CrashExit)
        return QString("it died of signal %1. %2").arg(QString::number(process.exitCode()), told);
    return QString("its exit status was %1. %2").arg(QString::number(process.exitCode()), told);
}

/// With addresses that are the same in every run, by which sets of pointers are ordered.
class SteadyProcess : public QProcess {
protected:
    void setupChildProcess() override { ::personality(ADDR_NO_RANDOMIZE); }
};

} // namespace

ChildEnd runChild(const QString &folder, const QStringList &words, int secondsAtMost)
{
    SteadyProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        environment.insert(name, folder);
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_HASH_SEED", "0");
    environment.insert("QT_NO_GLIB", "1"); // whose turns of the event loop can't be told from each other
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(QCoreApplication::applicationFilePath(), QStringList{"--child", folder} + words);
    ChildEnd end;
    QByteArray log, errors; // written at the end: a child may remove what stands in its folder
    QElapsedTimer sinceStart, sinceEnding;
    sinceStart.start();
    bool isOver = false, isKilled = false;
    while (!isOver) {
        isOver = process.state() == QProcess::NotRunning ||
                 (!process.waitForReadyRead(1000) && process.state() == QProcess::NotRunning);
        errors += process.readAllStandardError();
        while (process.canReadLine()) {
            const QByteArray line = process.readLine().chopped(1);
            if (line == "ending")
                sinceEnding.start();
            else if (!take(end, line.split('\t')))
                log += line + '\n';
        }
        isKilled = !isOver && sinceStart.elapsed() > secondsAtMost * 1000;
        isOver |= isKilled;
    }
    writeFile(QDir(folder).filePath("log"), log);
    writeFile(QDir(folder).filePath("stderr"), errors);
    if (isKilled) {
        process.kill();
        process.waitForFinished();
        addFailure(end, QString("it hadn't ended after %1 s").arg(secondsAtMost));
        return end;
    }
    end.msToExit = sinceEnding.isValid() ? double(sinceEnding.elapsed()) : 0;
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        addFailure(end, deathOf(process, errors));
    return end;
}

ChildEnd runChild(Trial &trial, const QStringList &words, int secondsAtMost)
{
    ChildEnd end = runChild(trial.folder(), trial.isPlanted ? words + QStringList{"planted"} : words, secondsAtMost);
    trial.add(end.tally);
    if (!end.failure.isEmpty())
        trial.fail(end.failure);
    return end;
}

namespace Child {

namespace {

std::atomic<qint64> lastTurn{0};
std::atomic<double> turnBegan{0}; ///< ms of the main thread's processor time
std::atomic<bool> hasFailed{false};

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

double workMs(clockid_t clock = CLOCK_THREAD_CPUTIME_ID)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) * 1e-6;
}

void tell(const char *word, const QString &value, const QString &text)
{
    QString line = text;
    std::printf("%s\t%s\t%s\n", word, qPrintable(value), qPrintable(line.replace('\n', ' ').replace('\t', ' ')));
    std::fflush(stdout);
}

void writeStack(int)
{
    void *frames[60];
    ::backtrace_symbols_fd(frames, ::backtrace(frames, 60), STDERR_FILENO);
}

[[maybe_unused]] void writeStackAndDie(int signal)
{
    writeStack(signal);
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

/// Nothing is written outside of the folder, whatever the child is driven to: the kernel refuses it.
void confine(const QString &folder)
{
    constexpr auto write = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                           LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                           LANDLOCK_ACCESS_FS_MAKE_SYM | LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_REFER;
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = write;
    const int rules = int(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes.handled_access_fs, 0));
    if (rules < 0)
        qFatal("This kernel can't confine a process to a folder");
    for (const QString &place : {folder, QString("/dev/null")}) {
        landlock_path_beneath_attr beneath{};
        beneath.allowed_access = place == folder ? write : LANDLOCK_ACCESS_FS_WRITE_FILE;
        beneath.parent_fd = ::open(place.toLocal8Bit().constData(), O_PATH | O_CLOEXEC);
        if (::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0) != 0)
            qFatal("A rule of the folder was refused");
        ::close(beneath.parent_fd);
    }
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (::syscall(SYS_landlock_restrict_self, rules, 0) != 0)
        qFatal("The process could not be confined to its folder");
    ::close(rules);
}

/// Writes to the errors what a thread's long turns of the event loop do, looked at from another thread.
class LongTurns {
public:
    explicit LongTurns(pthread_t thread) : m_thread(thread) { ::pthread_getcpuclockid(thread, &m_clock); }

    /// `lateMs`: how much later than it was meant to be. A thread seems to work while its processor is taken away.
    void look(qint64 lateMs)
    {
        const double began = turnBegan, work = workMs(m_clock) - began;
        if (lateMs > 3 * watchMs)
            std::fprintf(stderr, "the machine stood still for %lld ms, at %.0f ms of a turn\n", lateMs, work);
        if (began != m_turn)
            m_due = 2 * toldTurns;
        m_turn = began;
        if (work < m_due)
            return;
        m_due = work + toldTurns;
        std::fprintf(stderr, "a turn of the event loop has worked for %.0f ms:\n", work);
        ::pthread_kill(m_thread, SIGUSR1);
    }

private:
    pthread_t m_thread;
    clockid_t m_clock{};
    double m_turn = 0, m_due = 0;
};

/// Comes back when that thread's event loop hasn't turned for so long.
void watchMainThread(pthread_t thread, bool tellsTurns, qint64 patienceMs)
{
    LongTurns turns(thread);
    for (qint64 last = now(); last - lastTurn < patienceMs;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(watchMs));
        const qint64 time = now();
        if (tellsTurns)
            turns.look(time - last - watchMs);
        last = time;
    }
}

int entries(const char *folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

QStringList words(int argc, char **argv)
{
    QStringList all;
    for (int i = 2; argc > 2 && qstrcmp(argv[1], "--child") == 0 && i < argc; ++i)
        all << QString::fromLocal8Bit(argv[i]);
    return all;
}

void enter(const QString &folder)
{
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    void *frame = nullptr;
    ::backtrace(&frame, 1); // loads what it needs
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        ::signal(signal, writeStackAndDie);
#endif
    confine(folder);
}

void watchTurns(bool measureTurns, int patienceSeconds)
{
    lastTurn = now();
    auto *pulse = new QTimer(qApp); // a loop that has nothing to do turns too
    pulse->start(500);
    turnBegan = workMs();
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, qApp, [measureTurns] {
        lastTurn = now();
        const double ms = workMs() - turnBegan;
        if (measureTurns && ms > leastTurn)
            measure("ms of a turn", ms);
        turnBegan = workMs();
    });
    ::signal(SIGUSR1, writeStack);
#ifdef NDEBUG // where times count
    const bool tellsTurns = measureTurns;
#else
    const bool tellsTurns = false;
#endif
    std::thread([mainThread = ::pthread_self(), tellsTurns, patienceSeconds] {
        watchMainThread(mainThread, tellsTurns, patienceSeconds * 1000);
        ::pthread_kill(mainThread, SIGUSR1);
        std::this_thread::sleep_for(std::chrono::seconds(1));
        std::printf("fail\t0\tthe event loop made no turn for %d s\n", patienceSeconds);
        std::fflush(stdout);
        ::_exit(3);
    }).detach();
}

void count(const QString &what, qint64 by)
{
    tell("count", QString::number(by), what);
}

void measure(const QString &what, double value)
{
    tell("measure", QString::number(value), what);
}

void fail(const QString &what)
{
    if (hasFailed.exchange(true))
        return;
    tell("fail", "0", what);
    writeStack(0);
}

bool require(bool holds, const QString &what)
{
    if (!holds)
        fail(what);
    return holds;
}

void sayEnding()
{
    std::printf("ending\n");
    std::fflush(stdout);
}

int threads()
{
    return entries("/proc/self/task");
}

int descriptors()
{
    return entries("/proc/self/fd");
}

} // namespace Child

} // namespace Faults
