// Kills the program's writers at random moments of their work, and continues.

#include "faults/lane.h"
#include "faults/writers.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Faults;

constexpr int measuredRuns = 5;
constexpr int longestTrial = 10'000;        // ms
constexpr useconds_t restartTime = 150'000; ///< before which no program is started anew
constexpr int pieces = 8;                   ///< of a file that the planted fault writes
const QString torn = QStringLiteral(".torn");

/// The planted fault: the files in their places, bit by bit, the bits in the wrong order.
[[noreturn]] void writeInPlace(const Contents &after, const QString &folder, int us)
{
    for (const auto &[name, bytes] : after) {
        if (name.endsWith('/')) {
            QDir(folder).mkpath(name);
            continue;
        }
        const int file = ::open(qPrintable(QDir(folder).filePath(name)), O_CREAT | O_TRUNC | O_WRONLY, 0600);
        for (int i = 0; i < pieces; ++i) {
            const QByteArray piece = bytes.mid((i ^ 1) * bytes.size() / pieces, bytes.size() / pieces);
            if (::write(file, piece.constData(), std::size_t(piece.size())) != piece.size())
                ::_exit(1);
            ::usleep(useconds_t(us / int(after.size()) / pieces));
        }
    }
    ::_exit(0);
}

[[noreturn]] void runCommand(const QStringList &words)
{
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nothing, standard);
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

/// A writer that is killed.
class Victim {
public:
    explicit Victim(const Writer &writer) : m_writer(writer)
    {
        std::vector<qint64> times;
        for (int i = 0; i < measuredRuns; ++i) {
            const QTemporaryDir folder;
            layDown(m_writer.before, folder.path());
            QElapsedTimer timer;
            timer.start();
            ::waitpid(start(folder.path(), false), nullptr, 0);
            times.push_back(timer.nsecsElapsed() / 1000);
        }
        std::sort(times.begin(), times.end());
        m_us = int(times[measuredRuns / 2]);
    }

    void run(Trial &trial)
    {
        QElapsedTimer timer;
        timer.start();
        layDown(m_writer.before, trial.folder());
        const int us = trial.pick(0, m_us * 21 / 20);
        const pid_t process = start(trial.folder(), trial.isPlanted);
        ::usleep(useconds_t(us));
        ::kill(process, SIGKILL);
        int status = 0;
        ::waitpid(process, &status, 0);
        trial.count(WIFSIGNALED(status) ? "killed" : "ended before");
        const QString moment = QString(", killed after %1 of %2 us").arg(us).arg(m_us);
        followTime(us, WIFSIGNALED(status));

        Contents found = contentsOf(trial.folder());
        Contents tails;
        if (m_writer.manner == Writer::Appends)
            tails = cutTornTails(trial, found);
        const QString fault = m_writer.faultOf(found, true);
        trial.require(fault.isNull(), fault + moment);
        if (WIFEXITED(status) && Ending{WEXITSTATUS(status), {}}.isSuccess())
            trial.require(found == m_writer.after, "A run that wasn't killed came to something else");
        if (!trial.failure().isEmpty())
            return;
        if (found.count("settings.ini.lock") != 0)
            ::usleep(restartTime);
        const QString other = m_writer.manner == Writer::Appends ? faultOfContinued(trial.folder(), tails)
                              : trial.number % 4 == 0            ? m_writer.faultOfSecondRun(trial.folder())
                                                                 : QString();
        trial.require(other.isNull(), other + moment);
        trial.require(timer.elapsed() < longestTrial, QString("It took %1 ms").arg(timer.elapsed()) + moment);
    }

private:
    /// The machine has now more and now less to do besides.
    void followTime(int us, bool wasKilled)
    {
        if (wasKilled && us > m_us)
            m_us = m_us * 21 / 20;
        else if (!wasKilled && us < m_us)
            m_us = m_us * 49 / 50;
    }
    pid_t start(const QString &folder, bool isPlanted) const
    {
        QStringList words = m_writer.command;
        words.replaceInStrings("{}", folder);
        const pid_t child = ::fork();
        if (child != 0)
            return child;
        if (isPlanted)
            writeInPlace(m_writer.after, folder, m_us);
        runCommand(words);
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
    int m_us = 0; ///< that a run takes at present
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds;
    for (const Writer &writer : writers()) {
        const auto victim = std::make_shared<Victim>(writer);
        kinds.push_back({writer.name, 10000, [victim](Trial &trial) { victim->run(trial); }, 100, writingPrograms()});
    }
    return runLane("kill", kinds);
}
