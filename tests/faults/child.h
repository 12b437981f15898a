#pragma once

#include "faults/lane.h"

#include <QStringList>

/// Trials in processes of their own, for what may crash or hang. Such a child is the lane's own program with other
/// words. It writes nothing outside of its folder, which is its home, its working directory and its place for temporary
/// files, and it ends by itself if its event loop makes no turn for long.
namespace Faults {

/// What came of a child.
struct ChildEnd {
    QString failure; ///< what it told or how it died; empty if it ended well
    Tally tally;
    qint64 last = 0;     ///< the last "at" that it told
    double msToExit = 0; ///< from the moment at which it said that it would end, if it did
};

/// Runs a child in that folder, which exists. What it logs stands in "log" there, and its errors in
/// "stderr".
ChildEnd runChild(const QString &folder, const QStringList &words, int secondsAtMost);
/// The same in the trial's folder, which gets what the child told.
ChildEnd runChild(Trial &trial, const QStringList &words, int secondsAtMost);

/// In the child. Everything on the main thread.
namespace Child {

/// If this process is a child: its words, of which the first is its folder. Else none.
QStringList words(int argc, char **argv);
/// Puts the limits in force that are told above. Before the application object, and before any thread.
void enter(const QString &folder);
/// Seconds without a turn of the event loop that no work explains, on a machine that is busy with other programs too.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int patience = 60;
#else
constexpr int patience = 20;
#endif
/// Starts to watch the turns of the event loop, once there is an application object. Their work is measured by the
/// time of the main thread's processor as "ms of a turn" if that is wished.
void watchTurns(bool measure, int patienceSeconds = patience);
void count(const QString &what, qint64 by = 1);
void measure(const QString &what, double value);
/// Tells a fault. The first one stands.
void fail(const QString &what);
bool require(bool holds, const QString &what);
/// Says that the process ends from here on.
void sayEnding();
/// Threads, and open files without those of the measuring itself.
int threads();
int descriptors();

} // namespace Child

} // namespace Faults
