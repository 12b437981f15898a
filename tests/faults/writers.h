#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <vector>

/// The ways in which the program's files come into being, as commands that a lane runs under bad conditions.
namespace Faults {

/// Files below a folder by their paths from there; folders have a slash at the end and no bytes.
using Contents = std::map<QString, QByteArray>;

Contents contentsOf(const QString &folder);
void layDown(const Contents &contents, const QString &folder);

/// How a process ended.
struct Ending {
    int status = -1;  ///< -1 if it crashed or didn't end
    QByteArray words; ///< on standard error and output

    bool isSuccess() const { return status == 0 || status == 3; }
};

/// Variables of the environment as NAME=VALUE.
Ending runProgram(const QStringList &command, const QStringList &variables, qint64 largestFile = -1);

struct Writer {
    enum Manner { Replaces, Appends };

    QString name;
    Manner manner = Replaces;
    QStringList command; ///< "{}" stands for the folder that it writes to
    QStringList again;   ///< the command of one who is told that it writes over nothing; none where it does
    Contents before;     ///< what stands there, and what stands there after an undisturbed run
    Contents after;

    bool lasts = true; ///< what is said to be done outlives a loss of power
    QString warning =
        {}; ///< a pattern of the words without which there is no status 3; null where there is none at all

    Ending run(const QString &folder, const QStringList &variables = {}, qint64 largestFile = -1) const;

    /// What is wrong with the folder, and with what the program said of it; null if nothing is. Files beside those that
    /// belong there are wrong unless `mayLeave`.
    QString faultOf(const Ending &ending, const Contents &found, bool mayLeave) const;
    /// The same for the files alone: each is the old one or the new one, or holds whole rows behind the old ones; a new
    /// one may be empty if `mayLeave` and rows are put behind others. Beside them are those alone that an unfinished
    /// run may leave.
    QString faultOf(const Contents &found, bool mayLeave) const;
    /// Null if a row that was cut off, of a file that is continued, is still there or was put aside.
    QString faultOfTornRows(const Contents &found) const;
    /// Null if the command, given again, brings about what an undisturbed run does: the same files, or the same rows in
    /// any order, each as often. Where it refuses, `again` does.
    QString faultOfSecondRun(const QString &folder, bool mayLeave) const;
};

/// Another program that writes the same files in the commonest careless way, which the folder `wanted` gets: each is
/// emptied, and then written at once. Of files that are all new the second half comes first.
Writer carelessly(Writer writer, const QString &wanted);

/// Has folders for trials made in memory, if there is such a place: what is judged here doesn't hang on the disk.
void workInMemory();

/// What the trials run.
QStringList writingPrograms();

/// All of them. The first call makes their data, which takes some seconds.
const std::vector<Writer> &writers();

} // namespace Faults
