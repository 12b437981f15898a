// Kills the program's writers in, before and behind each of their calls, and at random moments, and continues.

#include "faults/lane.h"
#include "faults/shim.h"
#include "faults/writers.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Faults;

constexpr int measuredRuns = 5;
constexpr int longestTrial = 10'000; // ms
const QString torn = QStringLiteral(".torn");

[[noreturn]] void runCommand(const QStringList &words, const QStringList &variables)
{
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nothing, standard);
    for (const QString &variable : variables)
        qputenv(variable.section('=', 0, 0).toLatin1(), QFile::encodeName(variable.section('=', 1)));
    std::vector<QByteArray> bytes;
    std::vector<char *> arguments;
    for (const QString &word : words)
        bytes.push_back(QFile::encodeName(word));
    for (QByteArray &word : bytes)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
}

/// When a process is killed.
struct Moment {
    int call = 0; ///< zero: at a time
    QString way;  ///< "before", "behind" or "within"
    int us = 0;

    QString text() const
    {
        return call > 0 ? QString(", killed %1 call %2").arg(way, QString::number(call))
                        : QString(", killed after %1 us").arg(us);
    }
};

/// A program that is killed.
class Victim {
public:
    explicit Victim(const Writer &writer) : m_writer(writer)
    {
        const QTemporaryDir folder;
        m_calls = recordOf(writer, folder.path());
        for (int call = 1; call <= calls(); ++call) {
            m_moments.push_back({call, "before"});
            if (isWrite(call))
                m_moments.push_back({call, "within"});
        }
        m_moments.push_back({calls(), "behind"});
        std::vector<qint64> times;
        for (int i = 0; i < measuredRuns; ++i) {
            const QTemporaryDir work;
            layDown(m_writer.before, work.path());
            QElapsedTimer timer;
            timer.start();
            ::waitpid(start(work.path(), {}), nullptr, 0);
            times.push_back(timer.nsecsElapsed() / 1000);
        }
        std::sort(times.begin(), times.end());
        m_us = int(times[measuredRuns / 2]);
    }

    /// Half of the trials take a call, each in turn before any is drawn.
    Moment momentOf(Trial &trial) const
    {
        const auto which = std::size_t(trial.number / 2);
        if (trial.number % 2 != 0)
            return {0, {}, trial.pick(0, m_us * 21 / 20)};
        Moment moment = which < m_moments.size() ? m_moments[which] : Moment{trial.pick(1, calls()), {}};
        if (moment.way.isEmpty())
            moment.way = QStringList{"before", "behind", "within"}[trial.pick(0, isWrite(moment.call) ? 2 : 1)];
        if (moment.way == "within")
            moment.way += QString(" %1").arg(trial.pick(0, 999));
        return moment;
    }

    /// The status of the process, which has ended.
    int kill(Trial &trial, const QString &folder, const Moment &moment)
    {
        QStringList variables = shimVariables(folder) << m_counter.variable();
        if (moment.call > 0)
            variables << QString("FAULTS_AT=%1").arg(moment.call) << "FAULTS_WAY=" + moment.way;
        const pid_t process = start(folder, variables);
        if (moment.call == 0) {
            ::usleep(useconds_t(moment.us));
            ::kill(process, SIGKILL);
        }
        int status = 0;
        ::waitpid(process, &status, 0);
        const QString what = moment.call > 0 ? "at a call" : "at a time";
        if (!WIFSIGNALED(status)) {
            trial.count("ended before, killed " + what);
        } else {
            trial.count("killed " + what);
            if (m_counter.begun() > 0 && m_counter.ended() < calls())
                trial.count("killed " + what + ", between the first and the last");
        }
        if (moment.call == 0)
            followTime(moment.us, WIFSIGNALED(status));
        return status;
    }

private:
    int calls() const { return int(m_calls.size()); }
    bool isWrite(int call) const { return m_calls[std::size_t(call) - 1].name == "write"; }
    /// The machine has now more and now less to do besides.
    void followTime(int us, bool wasKilled)
    {
        if (wasKilled && us > m_us)
            m_us = m_us * 21 / 20;
        else if (!wasKilled && us < m_us)
            m_us = m_us * 49 / 50;
    }
    pid_t start(const QString &folder, const QStringList &variables) const
    {
        QStringList words = m_writer.command;
        words.replaceInStrings("{}", folder);
        const pid_t child = ::fork();
        if (child == 0)
            runCommand(words, variables);
        return child;
    }

    const Writer m_writer;
    std::vector<Call> m_calls;
    std::vector<Moment> m_moments;
    CallCounter m_counter;
    int m_us = 0; ///< that a run takes at present
};

/// What becomes of the files of a writer that is killed.
class Search {
public:
    explicit Search(const Writer &writer) : m_writer(writer), m_victim(writer) {}

    void run(Trial &trial)
    {
        QElapsedTimer timer;
        timer.start();
        const QString folder = trial.path("w");
        layDown(m_writer.before, folder);
        if (trial.isPlanted && !m_careless)
            m_careless = std::make_unique<Victim>(carelessly(m_writer, m_wanted.path()));
        Victim &victim = trial.isPlanted ? *m_careless : m_victim;
        const Moment at = victim.momentOf(trial);
        const int status = victim.kill(trial, folder, at);

        Contents found = contentsOf(folder);
        Contents tails;
        if (m_writer.manner == Writer::Appends)
            tails = cutTornTails(trial, found);
        const QString fault = m_writer.faultOf(found, true);
        trial.require(fault.isNull(), fault + at.text());
        if (WIFEXITED(status) && Ending{WEXITSTATUS(status), {}}.isSuccess())
            trial.require(found == m_writer.after, "A run that wasn't killed came to something else");
        if (!trial.failure().isEmpty())
            return;
        const QString next = faultOfNext(trial, tails);
        trial.require(next.isNull(), next + at.text());
        trial.require(timer.elapsed() < longestTrial, QString("It took %1 ms").arg(timer.elapsed()) + at.text());
    }

private:
    /// What is wrong with the next run, which continues rows; of the others each fourth is run again.
    QString faultOfNext(const Trial &trial, const Contents &tails) const
    {
        const QString folder = trial.path("w");
        if (m_writer.manner == Writer::Appends)
            return faultOfContinued(folder, tails);
        if (trial.number % 8 > 1)
            return {};
        return m_writer.faultOfSecondRun(folder, true);
    }
    /// A file may end in a part of the row that was being written, unless it is still the old one. Returns the parts.
    Contents cutTornTails(Trial &trial, Contents &found) const
    {
        Contents tails;
        for (auto &[name, bytes] : found) {
            const auto old = m_writer.before.find(name);
            const bool isOld = old != m_writer.before.end() && old->second == bytes;
            if (bytes.isEmpty() || bytes.endsWith('\n') || name.endsWith(torn) || isOld)
                continue;
            tails[name] = bytes.mid(bytes.lastIndexOf('\n') + 1);
            bytes.chop(tails[name].size());
            trial.count("torn tails");
        }
        return tails;
    }
    /// Null if beside each file stands what was cut off of it, and no more.
    QString faultOfTails(const Contents &found, const Contents &tails) const
    {
        for (const auto &[name, tail] : tails)
            if (found.count(name + torn) == 0 || !found.at(name + torn).split('\n').contains(tail))
                return "What was cut off of " + name + " is lost";
        for (const auto &[name, bytes] : m_writer.after) {
            if (found.count(name + torn) == 0)
                continue;
            QByteArrayList lines = bytes.split('\n');
            if (m_writer.before.count(name) != 0)
                lines << m_writer.before.at(name).split('\n').last();
            for (const QByteArray &line : found.at(name + torn).split('\n'))
                if (std::none_of(lines.begin(), lines.end(), [&](const auto &whole) { return whole.startsWith(line); }))
                    return name + torn + " holds what nobody wrote";
        }
        return m_writer.faultOfTornRows(found);
    }
    /// Killed and continued is the same as never killed, but for what was cut off, or not begun, which stands beside
    /// it.
    QString faultOfContinued(const QString &folder, const Contents &tails) const
    {
        Writer continued = m_writer;
        if (!continued.command.contains("--append"))
            continued.command << "--append";
        const Ending ending = continued.run(folder);
        const QString told = QString(" (status %1: %2)").arg(ending.status).arg(QString::fromUtf8(ending.words));
        if (!ending.isSuccess())
            return "It couldn't be continued" + told;
        const Contents found = contentsOf(folder);
        for (const auto &[name, bytes] : m_writer.after)
            if (!name.endsWith(torn) && (found.count(name) == 0 || found.at(name) != bytes))
                return name + " isn't what it would be if it had never been killed" + told;
        for (const auto &[name, bytes] : found)
            if (!name.endsWith(torn) && !name.endsWith(".tmp") && m_writer.after.count(name) == 0)
                return name + " is left" + told;
        const QString fault = faultOfTails(found, tails);
        return fault.isNull() ? QString() : fault + told;
    }

    const Writer &m_writer;
    QTemporaryDir m_wanted; ///< where the planted fault has its files from
    Victim m_victim;
    std::unique_ptr<Victim> m_careless;
};

} // namespace

int main(int argc, char **argv)
{
    workInMemory();
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds;
    for (const Writer &writer : writers()) {
        const auto search = std::make_shared<Search>(writer);
        kinds.push_back({writer.name, 10000, [search](Trial &trial) { search->run(trial); }, 100, writingPrograms()});
    }
    return runLane("kill", kinds);
}
