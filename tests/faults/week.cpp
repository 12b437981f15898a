#include "faults/loadedwindow.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "support/growingfolder.h"
#include "support/readcomparison.h"

#include <QAction>
#include <QElapsedTimer>

#include <array>
#include <string>

#include <malloc.h>
#include <sys/prctl.h>

// A folder that grows as fast as that of an instrument does in a week, followed in the program's window.

using namespace Faults;

namespace {

constexpr int recordsOfWeek = 7 * 24 * 3600 / GrowingFolder::secondsPerRecord;
constexpr int recordsBefore = 1000;
constexpr double mostGrowth = 1.05; ///< of the bytes for a record, from the second quarter to the last
constexpr int views = 6;
constexpr int looks = 20;

/// Memory that the process has written to and not given back, files left out; by small pages, for one of the large ones
/// is 3 % of a quarter's growth.
qint64 bytesInUse()
{
    ::malloc_trim(0);
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray &line : status.readAll().split('\n'))
            if (line.startsWith("RssAnon:"))
                return line.mid(8).trimmed().split(' ').first().toLongLong() * 1024;
    return 0;
}

/// What is in use after a part of the records.
struct Standing {
    int records = 0;
    qint64 bytes = 0;
    int threads = 0, descriptors = 0;
};

class Week {
public:
    Week(const QString &folder, int records, double seconds, bool isPlanted)
        : m_window(folder), m_records(records), m_seconds(seconds), m_isPlanted(isPlanted)
    {
        m_growing.write(recordsBefore);
        m_growing.flush(true);
    }

    void run()
    {
        QDir().rename(m_growing.path(), m_window.path("data"));
        QFile::link(m_window.path("data"), m_growing.path());
        if (!m_window.open(m_window.path("data")))
            return;
        showViews();
        m_window.action("Follow folder")->trigger();
        m_window.window->setFollowLast(true);
        const auto store = m_window.window->datastore();
        for (int quarter = 0; quarter <= 4; ++quarter) {
            growTo(m_records * quarter / 4);
            m_standings[quarter] = standing();
        }
        Child::require(m_window.window->datastore() == store, "the folder was read again");
        Child::require(store->size() == m_growing.count(), "records are missing");
        const QString difference = differenceToARead(*store, m_growing.path());
        Child::require(difference.isEmpty(), difference);
        judge();
    }

private:
    void showViews()
    {
        auto *const browser = m_window.window->browser();
        const QVariantList first = browser->setup().toList();
        QVariantList setup;
        for (int i = 0; i < views && !first.isEmpty(); ++i)
            setup << first[i % first.size()];
        browser->setSetup(setup);
        Child::require(browser->views().size() == views, "there aren't six views");
    }
    /// The instrument writes, the window takes in what it finds.
    void growTo(int records)
    {
        QElapsedTimer clock;
        clock.start();
        const int before = m_growing.count() - recordsBefore;
        const double secondsForEach = m_seconds / m_records;
        while (m_growing.count() - recordsBefore < records) {
            const int due = int(double(clock.elapsed()) / 1000 / secondsForEach);
            m_growing.write(std::min(before + due, records) + recordsBefore - m_growing.count());
            m_growing.flush(false);
            QTest::qWait(50);
        }
        m_growing.flush(true);
        const auto isAll = [this] { return m_window.window->datastore()->size() == m_growing.count(); };
        Child::require(QTest::qWaitFor(isAll, 30000), "records don't come in");
        QTest::qWait(1000); // spectra of the last record, and another look
    }
    Standing standing()
    {
        if (m_isPlanted) // notes that are made of all records again and again
            m_kept.resize(m_kept.size() + std::size_t(m_growing.count()) * 1000, 'x');
        Standing now{m_growing.count(), bytesInUse(), Child::threads(), Child::descriptors()};
        for (int i = 0; i < looks; ++i) { // some work is always under way
            QTest::qWait(100);
            now.bytes = std::min(now.bytes, bytesInUse());
        }
        return now;
    }
    double bytesForEach(int quarter) const
    {
        const Standing &from = m_standings[quarter - 1], &to = m_standings[quarter];
        return double(to.bytes - from.bytes) / (to.records - from.records);
    }
    void judge() const
    {
        const double second = bytesForEach(2), last = bytesForEach(4);
        Child::count("records", m_records);
        Child::measure("bytes for a record of the second quarter", second);
        Child::measure("bytes for a record of the last quarter", last);
        const Standing &early = m_standings[1], &late = m_standings[4];
        Child::require(late.threads <= early.threads, "there are more threads");
        Child::require(late.descriptors <= early.descriptors, "there are more open files");
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which keep what was given back
        Child::require(
            last <= second * mostGrowth,
            QString("a record takes %1 bytes in the last quarter, and %2 in the second").arg(last).arg(second));
#endif
    }

    GrowingFolder m_growing;
    LoadedWindow m_window;
    const int m_records;
    const double m_seconds;
    const bool m_isPlanted;
    std::array<Standing, 5> m_standings;
    std::string m_kept;
};

int child(int argc, char **argv, const QStringList &words)
{
    Child::enter(words[0]);
    ::prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);
    WindowApplication application(argc, argv);
    Child::watchTurns(true);
    Week(words[0], words[1].toInt(), words[2].toDouble(), words.contains("planted")).run();
    return 0;
}

Kind follow(const QString &name, qint64 goal, int records, int seconds)
{
    return {name, goal,
            [records, seconds](Trial &trial) {
                // The fault that was planted shows after a fraction of it.
                const int part = trial.isPlanted ? records / 8 : records, s = trial.isPlanted ? 8 : seconds;
                runChild(trial, {QString::number(part), QString::number(s)}, seconds * 2 + 300);
            },
            1};
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList words = Child::words(argc, argv);
    if (!words.isEmpty())
        return child(argc, argv, words);
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds{follow("minute", 100, recordsOfWeek / 8, 40)};
    if (QCoreApplication::arguments().contains("week")) // an hour, which isn't cut into parts: asked for by its name
        kinds = {follow("week", 1, recordsOfWeek, 3600)};
    return runLane("week", kinds);
}
