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
            const double whole = go(kind, -1);
            for (int moment = 0; moment < momentsOfWork; ++moment)
                go(kind, std::uniform_int_distribution<int>(0, int(whole))(m_random));
            if (kind == LongWork::read)
                m_window.open(m_data);
        }
    }

private:
    /// The ms from the begin to the end. It is cancelled after that many, if they aren't negative.
    double go(LongWork::Kind kind, int cancelAfterMs)
    {
        QElapsedTimer clock, sinceCancel;
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
        if (cancelAfterMs >= 0)
            moment.start(cancelAfterMs);
        clock.start();
        m_work.start(kind);
        Child::require(QTest::qWaitFor([&] { return !m_work.isBusy(kind); }, 120000), "it never ended");
        const double whole = double(clock.elapsed());
        if (sinceCancel.isValid())
            judge(kind, double(sinceCancel.elapsed()));
        m_work.judge(kind, sinceCancel.isValid());
        m_work.clear(kind);
        return whole;
    }
    void judge(LongWork::Kind kind, double ms)
    {
        const QString name = LongWork::nameOf(kind);
        Child::count("cancelled: " + name);
        Child::count("later than 200 ms: " + name, ms > soon ? 1 : 0);
        Child::measure("ms to idle: " + name, ms);
        Child::require(m_isDeaf ? ms < soon : ms < longestToIdle * slowness,
                       QString("a cancelled %1 went on for %2 ms").arg(name).arg(ms));
    }

    LoadedWindow &m_window;
    const QString m_data;
    LongWork m_work;
    std::minstd_rand m_random;
    const bool m_isDeaf;
};

/// The program from its begin to its end, which comes after that many ms of the work.
void endDuring(LoadedWindow &window, const QString &data, LongWork::Kind kind, int ms)
{
    LongWork work(window, data);
    if (kind != LongWork::read)
        window.open(data);
    QTimer::singleShot(0, qApp, [&] { work.start(kind); });
    QTimer::singleShot(ms, qApp, [&] {
        Child::count(QString(work.isBusy(kind) ? "ended during: " : "ended without: ") + LongWork::nameOf(kind));
        Child::sayEnding();
        window.window->terminateSignal();
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
            endDuring(window, words[2], LongWork::Kind(words[4].toInt()), words[3].toInt());
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
    const QString ms = QString::number(trial.pick(0, 400 * slowness));
    const ChildEnd end = runChild(trial, {"end", dataFolder(), ms, QString::number(kind)}, 200);
    const bool hasThread = kind == LongWork::read || kind == LongWork::loading || kind == LongWork::reinversion;
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
    return runLane("endings", {{"cancel", 250, cancelAll, 1}, {"end", 1000, endOnce, 5}});
}
