#include "faults/longwork.h"
#include "support/demodata.h"

#include <QDir>
#include <QElapsedTimer>

#include <random>
#include <thread>

// What takes long is cancelled, or the program ended, at any moment: both soon, and nothing that was begun passes for
// complete.

using namespace Faults;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int slowness = 20;
#else
constexpr int slowness = 1;
#endif
constexpr int momentsOfWork = 4; ///< at which a trial cancels each kind of work
constexpr int mostTries = 8;     ///< to come in time
constexpr int mostLateOnes = 2;  ///< of a trial's 28 moments, each in a hundred of which may be late
constexpr double soon = 200, longestToIdle = 2000, longestToEnd = 2000, longestToEndOfThread = 5000; ///< ms

/// Written once for all trials.
QString dataFolder()
{
    const QString folder = QCoreApplication::applicationFilePath() + ".data/demo";
    if (!QFileInfo::exists(QFileInfo(folder).path() + "/inverters"))
        writeDemoData(folder, 60, slowness > 1 ? 1 : 8); // some seconds of work
    return folder;
}

class Canceller {
public:
    Canceller(LoadedWindow &window, const QString &data, int seed, bool isDeaf)
        : m_window(window), m_data(data), m_work(window, data), m_random(unsigned(seed)), m_isDeaf(isDeaf)
    {
    }

    void run()
    {
        for (int i = 0; i < LongWork::kinds; ++i) {
            const auto kind = LongWork::Kind(i);
            m_work.clear(kind);
            double whole = m_work.measure(kind);
            for (int moment = 0; moment < momentsOfWork; ++moment)
                cancelOnce(kind, whole);
            if (kind == LongWork::read)
                m_window.open(m_data);
        }
        judgeAll();
    }

private:
    struct Times {
        double idle = -1; ///< ms from the cancel to the end; negative where the end came first
        double whole = 0; ///< ms from the begin to the end
    };

    /// At a random moment. Work that was through by then is begun anew: it takes less than it did.
    void cancelOnce(LongWork::Kind kind, double &whole)
    {
        for (int i = 0; i < mostTries; ++i) {
            const auto moment = std::uniform_real_distribution<>(0, whole)(m_random);
            const Times times = go(kind, int(moment));
            if (times.idle >= 0)
                return noteIdle(kind, times.idle, whole - moment);
            Child::count("moments behind the end: " + LongWork::nameOf(kind));
            whole = times.whole;
        }
        Child::fail(LongWork::nameOf(kind) + " was never met");
    }
    Times go(LongWork::Kind kind, int cancelAfterMs)
    {
        QElapsedTimer sinceBegin, sinceCancel;
        QTimer moment;
        moment.setSingleShot(true);
        moment.setTimerType(Qt::PreciseTimer);
        QObject::connect(&moment, &QTimer::timeout, [&, kind] {
            if (!m_work.isBusy(kind))
                return;
            sinceCancel.start();
            if (!m_isDeaf)
                m_work.cancel(kind);
        });
        sinceBegin.start();
        moment.start(cancelAfterMs);
        m_work.start(kind);
        Child::require(QTest::qWaitFor([&] { return !m_work.isBusy(kind); }, 120000), "it never ended");
        Times times;
        times.whole = double(sinceBegin.elapsed());
        if (sinceCancel.isValid())
            times.idle = double(sinceCancel.elapsed());
        m_work.judge(kind, sinceCancel.isValid());
        m_work.clear(kind);
        return times;
    }
    /// `left` is what the work would have taken from the cancel on.
    void noteIdle(LongWork::Kind kind, double ms, double left)
    {
        const QString name = LongWork::nameOf(kind);
        Child::count("cancelled: " + name);
        Child::count("later than 200 ms: " + name, ms > soon ? 1 : 0);
        Child::measure("ms to idle: " + name, ms);
        Child::require(ms < longestToIdle * slowness, QString("a cancelled %1 went on for %2 ms").arg(name).arg(ms));
        m_lateOnes += ms > soon ? 1 : 0;
        if (kind == LongWork::read || kind == LongWork::readAgain)
            return; // it ends with the file at hand
        m_idle += ms;
        m_left += left;
    }
    void judgeAll() const
    {
        Child::require(m_idle < m_left / 2,
                       QString("what was cancelled went on for %1 ms, of %2").arg(m_idle).arg(m_left));
        Child::require(slowness > 1 || m_lateOnes <= mostLateOnes,
                       QString("%1 moments took longer than %2 ms").arg(m_lateOnes).arg(soon));
    }

    LoadedWindow &m_window;
    const QString m_data;
    LongWork m_work;
    std::minstd_rand m_random;
    const bool m_isDeaf;
    int m_lateOnes = 0;
    double m_idle = 0, m_left = 0; ///< ms, of all moments
};

/// The program from its begin to its end, which comes after that share of the time that the work takes.
void endDuring(LoadedWindow &window, const QString &data, LongWork::Kind kind, double share)
{
    LongWork work(window, data);
    if (kind != LongWork::read)
        window.open(data);
    work.measure(kind); // the first time takes longer
    const int ms = int(work.measure(kind) * share);
    QTimer::singleShot(0, qApp, [&] {
        QTimer::singleShot(ms, Qt::PreciseTimer, qApp, [&] {
            Child::count(QString(work.isBusy(kind) ? "ended during: " : "ended behind: ") + LongWork::nameOf(kind));
            Child::sayEnding();
            window.window->terminateSignal();
        });
        work.start(kind);
    });
    QApplication::exec();
}

int child(int argc, char **argv, const QStringList &words)
{
    Child::enter(words[0]);
    WindowApplication application(argc, argv);
    QDir().mkpath(words[0] + "/made");
    const bool isPlanted = words.contains("planted");
    {
        LoadedWindow window(words[0]);
        Child::watchTurns(false);
        if (words[1] == "cancel")
            Canceller(window, words[2], words[3].toInt(), isPlanted).run();
        else
            endDuring(window, words[2], LongWork::Kind(words[4].toInt()), words[3].toInt() / 1000.0);
    }
    if (isPlanted && words[1] == "end") // a thread that nobody told
        std::thread([] {
            std::this_thread::sleep_for(
                std::chrono::duration<double, std::milli>(longestToEndOfThread * slowness + 1000));
        }).join();
    return 0;
}

void cancelAll(Trial &trial)
{
    runChild(trial, {"cancel", dataFolder(), QString::number(trial.number + 1)}, 600);
}

void endOnce(Trial &trial)
{
    const auto kind = LongWork::Kind(trial.number % LongWork::kinds);
    const QString permille = QString::number(trial.pick(0, 950));
    const ChildEnd end = runChild(trial, {"end", dataFolder(), permille, QString::number(kind)}, 200);
    const bool hasThread = kind <= LongWork::reinversion;
    trial.measure("ms to the program's end: " + LongWork::nameOf(kind), end.msToExit);
    trial.require(end.msToExit < (hasThread ? longestToEndOfThread : longestToEnd) * slowness,
                  QString("the program's end took %1 ms").arg(end.msToExit));
    const QString complaint = LongWork::complaintOfFiles(trial.path("made"));
    trial.require(complaint.isEmpty(), complaint);
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList words = Child::words(argc, argv);
    if (!words.isEmpty())
        return child(argc, argv, words);
    const QCoreApplication application(argc, argv);
    return runLane("endings", {{"cancel", 50, cancelAll, 1}, {"end", 1100, endOnce, 5}});
}
