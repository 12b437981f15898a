#include "faults/loadedwindow.h"
#include "support/demodata.h"

#include <QDir>
#include <QThread>

#include <random>

// Data are opened, inverted again, given up and closed, over and over, with a pause of any length between. What is left
// behind adds up: threads, files, and for the sanitizers what is used after its end or by two threads at once.

using namespace Faults;

namespace {

constexpr int cyclesOfTrial = 10;

QString dataFolder(const QString &name, int interval)
{
    const QString folder = QCoreApplication::applicationFilePath() + ".data/" + name + "/day";
    if (!QFileInfo::exists(QFileInfo(folder).path() + "/inverters"))
        writeDemoData(folder, interval, 2);
    return folder;
}

/// What a careless owner would leave: each build has a fault that it can tell.
class Carelessness {
public:
    void add(const Datastore *store)
    {
#if defined(__SANITIZE_ADDRESS__)
        if (m_store) // which is closed by now
            m_sum += m_store->size();
        m_store = store;
#elif defined(__SANITIZE_THREAD__)
        QThread *thread = QThread::create([this] { m_sum += 1; });
        thread->start();
        m_sum += store->size();
        thread->wait();
        delete thread;
#else
        auto *thread = new QThread;
        thread->start();
        m_sum += store->size();
#endif
    }

private:
    [[maybe_unused]] const Datastore *m_store = nullptr;
    volatile int m_sum = 0;
};

class Cycles {
public:
    Cycles(LoadedWindow &window, QStringList folders, unsigned seed, bool isCareless)
        : m_window(window), m_folders(std::move(folders)), m_random(seed), m_isCareless(isCareless)
    {
    }

    void run()
    {
        goThroughOne(); // threads and files that stay
        goThroughOne();
        const int threads = settledThreads(0), descriptors = Child::descriptors();
        for (int i = 0; i < cyclesOfTrial; ++i)
            goThroughOne();
        Child::count("cycles", cyclesOfTrial);
        Child::require(settledThreads(threads) <= threads, "threads were left");
        Child::require(Child::descriptors() <= descriptors, "files were left open");
    }

private:
    int below(int end) { return int(m_random() % unsigned(end)); }
    void pause()
    {
        static constexpr int longest[] = {0, 1, 5, 20, 100};
        const int wait = below(longest[below(5)] + 1);
        wait ? QTest::qWait(wait) : QCoreApplication::processEvents();
    }
    void goThroughOne()
    {
        MorvantideMainWindow &window = *m_window.window;
        m_window.startOpening(m_folders[below(m_folders.size())]);
        pause();
        if (below(4) == 0)
            window.cancelFileReader();
        Child::require(QTest::qWaitFor([&] { return !window.isReading(); }, 60000), "a read doesn't end");
        pause();
        if (window.datastore()) {
            window.findChild<Reinversion *>()->setWorkerCount(1 + below(4));
            const auto &loader = *window.findChild<InverterLoader *>();
            m_window.invert({QFileInfo(m_folders[0]).path() + "/inverters/demo.invmap"});
            if (below(2) == 0) // a slow build would hardly come to a reinversion else
                Child::require(QTest::qWaitFor([&] { return !loader.isLoading(); }, 60000), "inverters come for ever");
            pause();
            if (m_isCareless)
                m_carelessness.add(window.datastore().get());
            if (below(3) == 0)
                Child::require(QTest::qWaitFor([&] { return !window.isReinverting(); }, 60000),
                               "a reinversion doesn't end");
            if (below(2) == 0)
                window.cancelReinvert();
            pause();
        }
        if (below(4) == 0)
            m_window.makeWindow();
        else if (below(2) == 0)
            window.closeData();
        pause();
    }
    /// When those that were told to end have ended.
    int settledThreads(int expected) const
    {
        m_window.window->closeData();
        if (expected == 0)
            QTest::qWait(500);
        else
            (void)QTest::qWaitFor([expected] { return Child::threads() <= expected; }, 10000);
        return Child::threads();
    }

    LoadedWindow &m_window;
    const QStringList m_folders;
    std::mt19937 m_random;
    const bool m_isCareless;
    Carelessness m_carelessness;
};

int child(int argc, char **argv, const QStringList &words)
{
    Child::enter(words[0]);
    WindowApplication application(argc, argv);
    LoadedWindow window(words[0]);
    Child::watchTurns(false);
    Cycles(window, words.mid(2, 2), words[1].toUInt(), words.contains("planted")).run();
    return 0;
}

void goThrough(Trial &trial)
{
    runChild(trial, {QString::number(trial.number + 1), dataFolder("fine", 300), dataFolder("coarse", 1200)}, 600);
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
    return runLane("cycles", {{"reopen", 5000 / cyclesOfTrial, goThrough, 1}});
}
