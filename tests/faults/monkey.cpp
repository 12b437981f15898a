#include "faults/monkeyhand.h"
#include "faults/smallestfailing.h"
#include "support/demodata.h"
#include "support/files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QKeyEvent>

#include <algorithm>
#include <cstdio>

// Keys, clicks, drags and commands by chance, while the window reads, inverts, saves, exports and follows. What makes
// it crash or hang is cut down to the fewest events, which stay in the trial's folder as "smallest.txt"; the options
// "--replay FOLDER FILE" go through such a file once more, in a new folder.

using namespace Faults;

namespace {

constexpr std::size_t mostOfCut = 20; ///< events, of a fault that takes two
constexpr int secondsForCutting = 120;
// Of the processor's time, in ms, in the build that is shipped: of all turns, and of 99 in 100.
[[maybe_unused]] constexpr double longestTurn = 500, longestOfMost = 100;

/// Makes widgets die or hang when one key reaches them after another: what the lane has to find.
class Fragile : public QObject {
public:
    explicit Fragile(bool hangs) : m_hangs(hangs) {}

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const int key = event->type() == QEvent::KeyPress && qobject_cast<QWidget *>(watched)
                            ? static_cast<QKeyEvent *>(event)->key()
                            : 0;
        m_isArmed |= key == Qt::Key_Return;
        if (key != Qt::Key_Escape || !m_isArmed)
            return false;
        while (m_hangs)
            QThread::msleep(10);
        qFatal("A key was too much");
    }

private:
    const bool m_hangs;
    bool m_isArmed = false;
};

int child(int argc, char **argv, const QStringList &words)
{
    const QString folder = words[0];
    Child::enter(folder);
    WindowApplication application(argc, argv);
    if (!QFileInfo::exists(folder + "/demo")) {
        writeDemoData(folder + "/demo", 300);
        writeDemoData(folder + "/other", 2400, 1, 2);
        QDir().mkpath(folder + "/made");
    }
    GrowingFolder growing;
    growing.write(200);
    growing.flush(true);
    QFile::link(growing.path(), folder + "/growing");
    Fragile fragile(words.contains("hangs"));
    if (words.contains("planted"))
        qApp->installEventFilter(&fragile);
    {
        LoadedWindow window(folder);
        window.open(window.path("demo"));
        Child::watchTurns(true, words.contains("hangs") ? 2 : Child::patience);
        MonkeyHand(window, growing, eventsFrom(contentOf(words[1]))).run();
        Child::sayEnding();
    }
    const QStringList left =
        QDir(folder + "/made").entryList({"*.unfinished*", "*.tmp"}, QDir::AllEntries | QDir::Hidden);
    Child::require(left.isEmpty(), "something unfinished was left: " + left.join(' '));
    return 0;
}

ChildEnd go(const QString &folder, const MonkeyEvents &events, const QStringList &more)
{
    const QString file = folder + "/events.txt";
    writeFile(file, textOf(events));
    return runChild(folder, QStringList{file} + more, 300 + int(events.size()) / 10);
}

int replay(const QString &folder, const QString &file)
{
    QDir().mkpath(folder);
    const QString failure = go(QDir(folder).absolutePath(), eventsFrom(contentOf(file)), {}).failure;
    std::printf("%s\n", failure.isEmpty() ? "nothing was found" : qPrintable(failure));
    return failure.isEmpty() ? 0 : 1;
}

/// The fewest events that are found to fail. Each try has a folder of its own.
MonkeyEvents cutDown(const Trial &trial, const MonkeyEvents &events, const QStringList &more)
{
    QElapsedTimer clock;
    clock.start();
    const auto fails = [&](const MonkeyEvents &fewer) {
        const QString folder = trial.path("try");
        QDir().mkpath(folder);
        const bool failed = !go(folder, fewer, more).failure.isEmpty();
        QDir(folder).removeRecursively();
        return failed;
    };
    return smallestFailing<MonkeyEvent>(events, fails, [&] { return clock.elapsed() > secondsForCutting * 1000; });
}

void searchOnce(Trial &trial, int count, const QStringList &more)
{
    MonkeyEvents events = randomEvents(count, trial.random);
    const ChildEnd end = go(trial.folder(), events, more);
    trial.add(end.tally);
    trial.count("events", end.last);
#ifdef NDEBUG
    const double longest = end.tally.quantile("ms of a turn", 1);
    const double most = end.tally.quantile("ms of a turn", 0.99);
    trial.require(longest < longestTurn, QString("a turn of the event loop took %1 ms").arg(longest));
    trial.require(most < longestOfMost, QString("one of 100 turns took more than %1 ms").arg(most));
#endif
    if (end.failure.isEmpty())
        return;
    events.resize(std::min(events.size(), std::size_t(end.last)));
    const MonkeyEvents fewest = cutDown(trial, events, more);
    writeFile(trial.path("smallest.txt"), textOf(fewest));
    trial.fail(QString("%1; %2 events do it").arg(end.failure).arg(fewest.size()));
}

Kind search(const QString &name, qint64 goal, int count)
{
    return {name, goal,
            [count](Trial &trial) {
                if (!trial.isPlanted)
                    return searchOnce(trial, count, {});
                // Both have to be found, and the other one to be cut down to about the two keys.
                Tally tally;
                Trial hanging(trial.number, true, tally), dying(trial.number, true, tally);
                const MonkeyEvents events = randomEvents(400, trial.random);
                const QString hang = go(hanging.folder(), events, {"planted", "hangs"}).failure;
                searchOnce(dying, 400, {"planted"});
                const auto fewest = eventsFrom(contentOf(dying.path("smallest.txt"))).size();
                if (hang.contains("no turn") && fewest > 0 && fewest <= mostOfCut)
                    trial.fail(hang + "; " + dying.failure());
            },
            10};
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList words = Child::words(argc, argv);
    if (!words.isEmpty())
        return child(argc, argv, words);
    const QCoreApplication application(argc, argv);
#ifndef NDEBUG                        // where times count
    qputenv("MALLOC_PERTURB_", "85"); // freed memory isn't what it was
#endif
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments[1] == "--replay")
        return replay(arguments[2], arguments[3]);
    std::vector<Kind> kinds{search("short", 1000, 5000)};
    if (arguments.contains("long")) // takes long for one trial: asked for by its name
        kinds = {search("long", 20, 50000)};
    return runLane("monkey", kinds);
}
