#include "datafiles/reading/appendedrowplacer.h"
#include "datafiles/reading/datafinder.h"
#include "datafiles/reading/dayfiles.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/folderfollower.h"
#include "datafiles/reading/folderfollowing.h"
#include "datafiles/reading/reading.h"
#include "support/failingcalls.h"

#include <QEventLoop>
#include <QFile>

namespace {

/// Reads a folder, follows it while files grow, reads it again where that is asked for, and holds the outcome against a
/// read of all files.
class Following : public Reading {
protected:
    QStringList paths() const
    {
        QStringList all = listed;
        for (const QString &name : QDir(folder.path()).entryList(QDir::Files))
            if (listed.isEmpty())
                all.append(folder.filePath(name));
        return all;
    }
    void append(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::Append) && file.write(bytes) == bytes.size());
    }
    /// As a read that is to be followed from its beginning, or as any other.
    void startFollowing(bool awaitHalfRows = true)
    {
        placer.reset();
        started = [this, awaitHalfRows](FileReaderTask &) { reader->setHalfRowsAwaited(awaitHalfRows); };
        read();
        started = nullptr;
        followed = reader;
        told.clear();
        for (const auto &record : followed->datastore()->records())
            told.insert(record.get(), Dump::textOf(*record));
        QObject::connect(followed->datastore().get(), &Datastore::updated, &context,
                         [this](int index, const std::shared_ptr<Record> &record, int) {
                             EXPECT_EQ(followed->datastore()->at(index), record);
                             told[record.get()] = Dump::textOf(*record);
                         });
        FolderFollower::Settings settings;
        settings.folder = folder.path();
        settings.findFiles = [this] { return paths(); };
        settings.stretches = followed->stretches();
        settings.areHalfRowsAwaited = awaitHalfRows;
        settings.known = followed->makeForecast();
        settings.chunkBytes = chunkBytes ? chunkBytes : 1000;
        follower = std::make_unique<FolderFollower>(std::move(settings));
        placer = std::make_unique<AppendedRowPlacer>(followed);
    }
    /// Takes all that there is; the last thing found.
    FolderFollower::Found look()
    {
        using Found = FolderFollower::Found;
        AppendedRows rows;
        Found found;
        while ((found = follower->next(&rows)) == Found::rows) {
            placer->take(std::move(rows));
            while (placer->placeSome()) {
            }
            if (placer->isContradicted()) {
                found = Found::contradiction;
                break;
            }
        }
        return found;
    }
    /// The same, and reads all again after a contradiction.
    void keepUp()
    {
        if (look() != FolderFollower::Found::contradiction)
            return;
        ++contradictions;
        startFollowing();
        EXPECT_EQ(look(), FolderFollower::Found::nothing);
    }
    void expectWhatAReadGives()
    {
        for (const auto &record : followed->datastore()->records())
            ASSERT_TRUE(told.value(record.get()) == Dump::textOf(*record))
                << "untold: " << qPrintable(Dump::textOf(*record)) << " since " << qPrintable(told.value(record.get()));
        read();
        const QString found = Dump::contentsOf(*followed), expected = Dump::contentsOf(*reader);
        int at = 0;
        while (at < found.size() && at < expected.size() && found[at] == expected[at])
            ++at;
        EXPECT_TRUE(found == expected) << qPrintable(found.mid(std::max(at - 60, 0), 200)) << "\n---- instead of\n"
                                       << qPrintable(expected.mid(std::max(at - 60, 0), 200));
    }

    QStringList listed; ///< paths, if not all
    QObject context;
    std::shared_ptr<FileReader> followed;
    QHash<const Record *, QString> told; ///< records as they were when they were last told
    std::unique_ptr<FolderFollower> follower;
    std::unique_ptr<AppendedRowPlacer> placer;
    int contradictions = 0;
};

// ---- an instrument that writes

class Instrument : public DayFiles<Following> {
protected:
    static QByteArray timeText(qint64 minute)
    {
        return timeToString(recordTimeFromTicks((1568246400 + minute * 60) * ticksPerSecond)).toUtf8();
    }
    static QString dayOf(qint64 minute) { return QString("2019-09-%1-x").arg(12 + minute / 60); } // of an hour
    QByteArray rowHead(qint64 minute) const
    {
        return timeText(minute) + '\t' + timeText(minute + 1) + '\t' + (minute % 2 ? "ions" : "particles");
    }
    QByteArray numbers(int count)
    {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += '\t' + QByteArray::number(pick(-9999, 9999) * 0.01);
        return text;
    }
    static QByteArray electrometers() // with the modes
    {
        return "# opmodes: [ions, particles]\n# total electrometers: 2\n# electrometer groups: {pos: [0, 1]}\n"
               "# electrometer names: [a, b]\n";
    }
    /// Adds to a file what an instrument with four files a day writes about a minute.
    void writeMinute(qint64 minute)
    {
        const bool ions = minute % 2;
        const QString day = dayOf(minute), mode = ions ? "ions" : "particles";
        const QByteArray flags = chance(30) ? QByteArray("# flag f1: {message: hot}\n") : QByteArray();
        put(day + ".records", "# Quilvane records\n" + electrometers() + "# parameters: [t, p]\nbegin_time\tflags\n",
            flags + rowHead(minute) + numbers(10) + one({"\t\n", "\t!f1\n", "\t\n"}));
        const QByteArray name = mode.toUtf8();
        put(day + '-' + mode + ".spectra",
            "# Quilvane spectra\n# spectra:\n# - {name: " + name + ", xpoints: [1, 2, 3], xunit: nm, yunit: 1/cm^3, " +
                "scale: radius, hash: " + name + "}\nbegin_time\n",
            rowHead(minute) + numbers(6) + one({"\n", "\r\n"}));
        if (chance(20))
            put(day + "-comments", "# \n", "nothing that a read would take\n");
    }
    void put(const QString &name, const QByteArray &header, const QByteArray &row)
    {
        QByteArray &waiting = m_waiting[name];
        if (!m_begun.contains(name) || chance(3)) // also a restart
            waiting += header;
        m_begun.insert(name);
        waiting += row;
        if (chance(3))
            waiting += row; // once more
    }
    /// Lets some of what was written arrive: whole rows, and parts.
    void flush(bool all = false)
    {
        for (auto file = m_waiting.begin(); file != m_waiting.end(); ++file) {
            const int count = all || chance(40) ? file->size() : pick(0, file->size());
            if (count > 0)
                append(file.key(), file->left(count));
            file->remove(0, count);
        }
    }

private:
    QMap<QString, QByteArray> m_waiting;
    QSet<QString> m_begun;
};

INSTANTIATE_TEST_SUITE_P(Seeds, Instrument, ::testing::ValuesIn(seeds(30)));

TEST_P(Instrument, IsFollowedWithoutReadingAgain)
{
    qint64 minute = pick(0, 50);
    for (const qint64 first = minute; minute < first + 4; ++minute)
        writeMinute(minute);
    flush(true);
    chunkBytes = std::size_t(one({60, 300, 1000, 20000}));
    startFollowing(chance(50));
    for (int steps = pick(1, 60); steps > 0; --steps) {
        for (int rows = pick(0, 5); rows > 0; --rows)
            writeMinute(minute++);
        flush();
        if (chance(70))
            keepUp();
    }
    flush(true);
    keepUp();
    EXPECT_EQ(contradictions, 0);
    expectWhatAReadGives();
}

TEST_P(Instrument, IsFollowedFromAnyMoment)
{
    qint64 minute = pick(0, 50);
    for (int steps = pick(1, 40); steps > 0; --steps) {
        for (int rows = pick(0, 4); rows > 0; --rows)
            writeMinute(minute++);
        flush();
        if (!follower && chance(30))
            startFollowing(chance(50));
        else if (follower && chance(50))
            keepUp();
    }
    flush(true);
    if (!follower)
        startFollowing();
    keepUp();
    expectWhatAReadGives();
}

// ---- any files

class AnyFiles : public DayFiles<Following> {};

INSTANTIATE_TEST_SUITE_P(Seeds, AnyFiles, ::testing::ValuesIn(seeds(60)));

TEST_P(AnyFiles, GiveWhatAReadGives)
{
    QMap<QString, QByteArray> files;
    for (int i = pick(1, 5); i > 0; --i) {
        QByteArray text = dayFile();
        if (chance(20))
            damage(text);
        files[QString::number(pick(10, 99)) + ".records"] = text + '\n';
    }
    chunkBytes = std::size_t(one({50, 300, 2000, 20000}));
    startFollowing(chance(50));
    while (!files.isEmpty()) {
        auto file = files.begin() + pick(0, files.size() - 1);
        const int count = chance(10) ? file->size() : pick(0, std::min(file->size(), 4000));
        append(file.key(), file->left(count));
        file->remove(0, count);
        if (file->isEmpty())
            files.erase(file);
        if (chance(60))
            keepUp();
    }
    keepUp();
    expectWhatAReadGives();
}

// ---- one file

class FollowedFile : public Following {
protected:
    static QByteArray row(int second, const char *mode = "ions")
    {
        const auto text = [](int s) {
            return timeToString(recordTimeFromTicks((1568246400 + qint64(s)) * ticksPerSecond)).toUtf8();
        };
        return text(second) + '\t' + text(second + 1) + '\t' + mode + "\t\n";
    }
    const QByteArray header = "# Quilvane flags\n# \nbegin_time\n";
    const QString name = "20190912.flags";
};

TEST_F(FollowedFile, AHalfRowWaitsForItsRest)
{
    write(name, header + row(0));
    startFollowing();
    append(name, row(1) + row(2).left(25));
    EXPECT_EQ(look(), FolderFollower::Found::nothing);
    EXPECT_EQ(recordCount(), 2);
    append(name, row(2).mid(25).chopped(1));
    EXPECT_EQ(look(), FolderFollower::Found::nothing);
    EXPECT_EQ(recordCount(), 2);
    append(name, "\n");
    EXPECT_EQ(look(), FolderFollower::Found::nothing);
    EXPECT_EQ(recordCount(), 3);
    EXPECT_TRUE(complaints().isEmpty());
}

TEST_F(FollowedFile, AHalfRowThatIsMovedAwayLeavesTheRowsBehindIt)
{
    for (const int more : {0, 1, 3}) { // rows, before it is looked at again
        write(name, header + row(0));
        startFollowing();
        append(name, row(1).left(25));
        EXPECT_EQ(look(), FolderFollower::Found::nothing);
        QFile::resize(folder.filePath(name), (header + row(0)).size());
        for (int i = 0; i < more; ++i)
            append(name, row(2 + i));
        EXPECT_EQ(look(), more == 0 ? FolderFollower::Found::contradiction : FolderFollower::Found::nothing);
        EXPECT_EQ(recordCount(), 1 + more);
    }
}

TEST_F(FollowedFile, AskForAnotherReadWhereTheyContradictIt)
{
    using Change = std::function<void()>;
    const QByteArray electrometers =
        "# Quilvane currents\n# total electrometers: 1\n# electrometer groups: {p: [0, 0]}\n"
        "# electrometer names: [a]\nbegin_time\n";
    const std::pair<const char *, Change> changes[] = {
        {"shorter", [&] { QFile::resize(folder.filePath(name), header.size()); }},
        {"rewritten", [&] { write(name, header + row(7) + row(8) + row(9)); }},
        {"replaced",
         [&] {
             write("other", header + row(0) + row(1) + row(2));
             QFile::remove(folder.filePath(name));
             QFile::rename(folder.filePath("other"), folder.filePath(name));
         }},
        {"gone", [&] { QFile::remove(folder.filePath(name)); }},
        {"others in the place of all",
         [&] {
             for (const QString &path : paths())
                 QFile::rename(path, path + ".2.flags");
         }},
        {"another mode", [&] { append(name, row(3, "new")); }},
        {"another description", [&] { append(name, electrometers); }},
        {"the rest of a row that was taken for a row", [&] { append("a.flags", "x\n"); }},
        {"another end in an earlier file", [&] { write("0.flags", header + row(0).replace("00:00:01", "00:00:09")); }},
    };
    for (const auto &[what, change] : changes) {
        write(name, header + row(0) + row(1));
        write("a.flags", header + row(100).chopped(1));
        startFollowing(false);
        EXPECT_EQ(look(), FolderFollower::Found::nothing);
        change();
        EXPECT_EQ(look(), FolderFollower::Found::contradiction) << what;
        for (const QString &path : paths())
            QFile::remove(path);
    }
}

TEST_F(FollowedFile, ALostFolderIsTakenUpAgain)
{
    write(name, header + row(0));
    startFollowing();
    const QString path = folder.path(), away = path + "-away";
    for (const bool isEmptied : {false, true}) { // as a place where a disk was
        ASSERT_TRUE(QDir().rename(path, away));
        if (isEmptied)
            QDir().mkdir(path);
        EXPECT_EQ(look(), FolderFollower::Found::lost);
        QDir().rmdir(path);
        ASSERT_TRUE(QDir().rename(away, path));
        append(name, row(isEmptied ? 1 : 2));
        EXPECT_EQ(look(), FolderFollower::Found::nothing);
    }
    EXPECT_EQ(recordCount(), 3);
}

TEST_F(FollowedFile, FilesThatCantBeReadAreWaitedFor)
{
    using Found = FolderFollower::Found;
    const QString other = "a.flags";
    write(name, header + row(0));
    write(other, header + row(100));
    startFollowing();
    listed = paths(); // as by a server that has gone
    const auto rename = [this](const QString &from, const QString &to) {
        ASSERT_TRUE(QFile::rename(folder.filePath(from), folder.filePath(to)));
    };
    rename(name, "x");
    append(other, row(101));
    EXPECT_EQ(look(), Found::nothing) << "of the others";
    EXPECT_EQ(recordCount(), 3);
    rename(other, "y");
    EXPECT_EQ(look(), Found::lost);
    rename("x", name);
    rename("y", other);
    append(name, row(1));
    {
        FailingCalls device(1);
        EXPECT_EQ(look(), Found::nothing);
        EXPECT_TRUE(device.failed());
    }
    EXPECT_EQ(look(), Found::nothing);
    EXPECT_EQ(recordCount(), 4);
}

TEST_F(FollowedFile, ThatAlwaysGrowsLeavesTheDiskInPeace)
{
    write(name, header + row(0));
    read();
    std::atomic<int> looks{0};
    FolderFollowing following;
    following.start(reader, folder.path(), [&] {
        append(name, row(++looks));
        QThread::msleep(20);
        return paths();
    });
    QEventLoop loop;
    QTimer::singleShot(1500, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_GT(looks, 1);
    EXPECT_LT(looks, 10);
    EXPECT_GT(following.rowsPlaced(), 0);
}

} // namespace
