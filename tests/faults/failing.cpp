// Lets every call by which a file is written fail, in every way, one after the other.

#include "faults/lane.h"
#include "faults/shim.h"
#include "faults/writers.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cerrno>
#include <memory>
#include <numeric>

namespace {

using namespace Faults;

struct Failure {
    int call;
    QString name; ///< of the call
    QString way;
    bool ever;
};

bool needsRoom(const QString &call)
{
    return QStringList{"create", "write", "fsync", "rename", "link", "mkdir"}.contains(call);
}

/// All that can go wrong with one call.
std::vector<Failure> failuresOf(int number, const QString &call)
{
    const auto way = [](int error) { return QString::number(error); };
    std::vector<Failure> all;
    for (const bool ever : {false, true})
        for (const int error : {EIO, ENOSPC, EDQUOT})
            if (error == EIO || (call != "read" && (!ever || needsRoom(call)))) // later ones stand for the others
                all.push_back({number, call, way(error), ever});
    const QStringList interruptible{"open", "openempty", "create", "read", "write", "fsync", "ftruncate", "close"};
    if (interruptible.contains(call))
        all.push_back({number, call, way(EINTR), false});
    if (call == "write")
        all.push_back({number, call, "short", false});
    if (call == "lock")
        all.push_back({number, call, way(ENOLCK), false});
    return all;
}

class FailingWriter {
public:
    explicit FailingWriter(const Writer &writer) : m_writer(writer)
    {
        const QTemporaryDir folder;
        const std::vector<Call> calls = recordOf(writer, folder.path());
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const std::vector<Failure> some = failuresOf(int(i) + 1, calls[i].name);
            m_failures.insert(m_failures.end(), some.begin(), some.end());
            if (calls[i].name == "write")
                m_writes.push_back(int(i) + 1);
        }
    }

    qint64 failures() const { return qint64(m_failures.size()); }

    void run(Trial &trial) const
    {
        Failure failure = m_failures[std::size_t(trial.number * stride() % failures())];
        if (trial.isPlanted) // the system says that it wrote what it didn't
            failure = {m_writes[std::size_t(trial.pick(0, int(m_writes.size()) - 1))], "write", "swallow", false};
        layDown(m_writer.before, trial.path("w"));
        QStringList variables = shimVariables(trial.path("w"))
                                << QString("FAULTS_AT=%1").arg(failure.call) << "FAULTS_WAY=" + failure.way;
        if (failure.ever)
            variables << "FAULTS_EVER=1";
        const Ending ending = m_writer.run(trial.path("w"), variables);
        const Contents found = contentsOf(trial.path("w"));
        trial.count(QString("status %1").arg(ending.status));
        const QString fault = faultOf(failure, ending, found);
        const bool isDone = ending.isSuccess() && m_writer.manner == Writer::Replaces;
        const QString again =
            fault.isNull() && !isDone ? m_writer.faultOfSecondRun(trial.path("w"), mayLeave(failure)) : QString();
        for (const QString &text : {fault, again})
            if (!text.isNull())
                trial.fail(QString("call %1, %2, fails with %3%4: %5")
                               .arg(QString::number(failure.call), failure.name, failure.way,
                                    failure.ever ? " for ever" : "", text));
    }

private:
    /// Has no divisor in common with the number of failures, so that a part of a walk sees all of the run.
    qint64 stride() const
    {
        for (qint64 stride = failures() * 5 / 8;; ++stride)
            if (std::gcd(stride, failures()) == 1)
                return stride;
    }

    QString faultOf(const Failure &failure, const Ending &ending, const Contents &found) const
    {
        const bool isPassing = failure.way == "short" || failure.way == QString::number(EINTR);
        if (isPassing && (!ending.isSuccess() || found != m_writer.after))
            return QString("not done as if nothing had happened (status %1: %2)")
                .arg(QString::number(ending.status), QString::fromUtf8(ending.words));
        return m_writer.faultOf(ending, found, mayLeave(failure));
    }
    /// Whether files can't be removed.
    static bool mayLeave(const Failure &failure)
    {
        return failure.name == "unlink" || failure.name == "rmdir" ||
               (failure.ever && failure.way == QString::number(EIO));
    }

    const Writer &m_writer;
    std::vector<Failure> m_failures;
    std::vector<int> m_writes;
};

} // namespace

int main(int argc, char **argv)
{
    workInMemory();
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds;
    for (const Writer &writer : writers()) {
        const auto failing = std::make_shared<FailingWriter>(writer);
        kinds.push_back(
            {writer.name, failing->failures(), [failing](Trial &trial) { failing->run(trial); }, 5, writingPrograms()});
    }
    return runLane("failing", kinds);
}
