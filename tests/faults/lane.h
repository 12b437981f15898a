#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <map>
#include <random>
#include <vector>

/// Searches for faults that need many tries: calls that fail, processes that are killed, events by chance.
///
/// A lane is a program of this folder that gives its kinds of trials to runLane(). Each kind first has to find a fault
/// that is planted for it; one that doesn't isn't counted. Then the trials of all kinds run by turns, until the time is
/// over. A kind that has come to its goal tries some more in each run, by numbers drawn by chance; and all of the time
/// once none has others left. What was counted stands in a file, from which the next run goes on, so that figures add
/// up, until a program or a library that is tried changes: then the kind begins anew. A trial that ends the program is
/// a finding of the next run. Two runs with one file refuse each other.
namespace Faults {

/// What trials have counted and measured, by name.
struct Tally {
    std::map<QString, qint64> counts;
    /// How often values were measured, by the hundredfold of their natural logarithm.
    std::map<QString, std::map<int, qint64>> measured;

    void measure(const QString &name, double value);
    void add(const Tally &other);
    /// Of the measured values, the one that this share of them doesn't exceed, on one in a hundred exactly.
    double quantile(const QString &name, double share) const;
};

/// One trial. All that it draws by chance follows from its number, so that it can be run again.
class Trial {
public:
    Trial(qint64 which, bool withPlanted, Tally &tally);

    const qint64 number;  ///< from 0 on; beyond the goal any below 2^31
    const bool isPlanted; ///< whether the planted fault is in, which the trial has to find
    std::mt19937_64 random;

    /// A whole number from low to high, both included.
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    /// A folder of the trial's own, which is kept if the trial fails.
    QString folder() const { return m_folder.path(); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    void count(const QString &what, qint64 by = 1) { m_tally.counts[what] += by; }
    void measure(const QString &what, double value) { m_tally.measure(what, value); }
    /// What another process has counted and measured for this trial.
    void add(const Tally &other) { m_tally.add(other); }
    /// Tells a fault. The first one stands.
    void fail(const QString &what);
    /// Fails with `what` unless `holds`; returns it.
    bool require(bool holds, const QString &what);
    const QString &failure() const { return m_failure; } ///< empty if there was none
    void keepFolder(const QString &target);

private:
    Tally &m_tally;
    QTemporaryDir m_folder;
    QString m_failure;
};

struct Kind {
    QString name;
    qint64 goal = 0; ///< trials that a long run comes to
    std::function<void(Trial &)> run;
    int plantedTrials = 100;   ///< by so many of them the planted fault has to be found
    QStringList programs = {}; ///< that its trials run, besides the lane's own
};

/// The lane's main function: 0 if nothing was found, 1 if something was, 2 for a wrong command line or a state file of
/// another run. Needs an application object. The options:
///
///   --seconds N     how long to search; 60
///   --state FILE    what was counted; by itself beside the program
///   --kind NAME     this kind alone
///   --trial N       one trial of that kind, the folder of which stays
///   --planted       with it, the planted fault
///   --table         tells what was counted, as rows of a table, and ends
int runLane(const QString &lane, const std::vector<Kind> &kinds);

} // namespace Faults
