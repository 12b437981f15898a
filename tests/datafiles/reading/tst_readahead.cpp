#include "datafiles/reading/dayfiles.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/reading.h"
#include "util/filecalls.h"

#include <atomic>
#include <thread>

#include <unistd.h>

namespace {

/// Reads with one thread and with several, which are held up at random, and holds the outcomes against each other.
class ReadAheadFiles : public Reading {
protected:
    ReadAheadFiles() { parsed = holdUp; }

    static void holdUp()
    {
        thread_local std::minstd_rand random(unsigned(std::hash<std::thread::id>()(std::this_thread::get_id())));
        if (random() % 3 == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
    }
    QString outcome(const QStringList &files, const QString &from, int threadCount)
    {
        threads = threadCount;
        read(files, from);
        return Dump(*reader).text() + complaints().join('\n');
    }
    void expectTheSame(const QStringList &files, const QString &from)
    {
        const QString expected = outcome(files, from, 1);
        for (const int count : {2, 8})
            expectEqual(outcome(files, from, count), expected, count);
    }
    void expectTheSame() { expectTheSame(filesIn(folder.path()), folder.path()); }
    void expectEqual(const QString &found, const QString &expected, int count) const
    {
        int at = 0;
        while (at < found.size() && at < expected.size() && found[at] == expected[at])
            ++at;
        EXPECT_TRUE(found == expected) << count << " threads, " << chunkBytes
                                       << " bytes at a time: " << qPrintable(found.mid(std::max(at - 60, 0), 200))
                                       << "\n---- instead of\n"
                                       << qPrintable(expected.mid(std::max(at - 60, 0), 200));
    }
    static QByteArray flagRows(int from, int count)
    {
        QByteArray text;
        for (int i = from; i < from + count; ++i) {
            const QByteArray time =
                timeToString(recordTimeFromTicks((1568246400 + qint64(i)) * ticksPerSecond)).toUtf8();
            text += time + '\t' + time + "\tions\t\n";
        }
        return text;
    }
};

// ---- random folders

class RandomFolder : public DayFiles<ReadAheadFiles> {
protected:
    void writeFolder(bool damaged)
    {
        for (int i = pick(1, 12); i > 0; --i) {
            QByteArray text = dayFile();
            if (damaged)
                damage(text);
            write(QString::number(pick(10, 99)) + ".records", text);
        }
        chunkBytes = std::size_t(one({50, 300, 2000, 20000}));
        if (chance(30))
            beginLimit = recordTimeFromTicks((1568246400 + 100 * 60) * ticksPerSecond);
    }
};

INSTANTIATE_TEST_SUITE_P(Seeds, RandomFolder, ::testing::ValuesIn(seeds(20)));

TEST_P(RandomFolder, GivesWhatOneThreadGives)
{
    writeFolder(false);
    expectTheSame();
}

TEST_P(RandomFolder, GivesWhatOneThreadGivesIfItIsDamaged)
{
    writeFolder(true);
    expectTheSame();
}

TEST_P(RandomFolder, GivesTheFilesUpToACancelAtAnyMoment)
{
    constexpr int moments = 50; // a thousand of all seeds
    writeFolder(false);
    chunkBytes = std::max(chunkBytes, std::size_t(300));
    parsed = nullptr;
    const QStringList files = filesIn(folder.path());
    std::vector<QString> expected;
    for (int count = 0; count <= files.size(); ++count)
        expected.push_back(outcome(files.mid(0, count), folder.path(), 1));
    std::thread canceller;
    started = [&](FileReaderTask &task) {
        canceller = std::thread([&task, after = std::chrono::microseconds(pick(0, 2000))] {
            std::this_thread::sleep_for(after);
            task.setAborted();
        });
        QObject::connect(&task, &FileReaderTask::finished, &task, [&canceller] { canceller.join(); });
    };
    for (int moment = 0; moment < moments; ++moment) {
        threads = moment % 2 == 0 ? 2 : 8;
        read(files, folder.path());
        QStringList told = complaints();
        if (filesRead < files.size()) {
            ASSERT_EQ(told.takeLast(),
                      QString("Reading was cancelled after %1 of %2 files.").arg(filesRead).arg(files.size()));
        }
        expectEqual(Dump(*reader).text() + told.join('\n'), expected[std::size_t(filesRead)], threads);
    }
}

// ---- odd ones

TEST_F(ReadAheadFiles, OfTheCorpusGiveWhatOneThreadGives)
{
    const QString corpus = FUZZ_DIRECTORY "/corpus/dayfile";
    expectTheSame(filesIn(corpus), corpus);
    chunkBytes = 200;
    expectTheSame(filesIn(corpus), corpus);
    for (const QString &file : filesIn(corpus))
        expectTheSame({file}, corpus);
}

TEST_F(ReadAheadFiles, WithLongLinesAndHeadersGiveWhatOneThreadGives)
{
    const QByteArray header("# Quilvane flags\n# \nbegin_time\n");
    const QByteArray longLine = QByteArray("x").repeated(5 << 20) + '\n', comment = '#' + QByteArray(98, ' ') + '\n';
    chunkBytes = 100000;
    write("1.flags", header + flagRows(0, 5000) + longLine + flagRows(5000, 500));
    write("2.flags", "# Quilvane flags\n" + comment.repeated(3000) + "begin_time\n" + flagRows(6000, 50));
    write("3.flags", header + flagRows(7000, 10) + longLine.chopped(3 << 20));
    write("4.flags", header + flagRows(8000, 3000) + QByteArray("\n").repeated(1 << 16));
    write("5.flags", header + flagRows(20000, 6000).chopped(1));
    expectTheSame();
    EXPECT_EQ(recordCount(), 14560);
}

/// Everything from an offset on can't be read, as from a broken disk.
class BrokenDisk : public FileCalls {
public:
    explicit BrokenDisk(off_t from) : m_from(from) { setCurrent(this); }
    ~BrokenDisk() override { setCurrent(nullptr); }
    ssize_t pread(int descriptor, char *bytes, std::size_t size, off_t offset) override
    {
        if (offset < m_from)
            return FileCalls::pread(descriptor, bytes, std::min(size, std::size_t(m_from - offset)), offset);
        errno = EIO;
        return -1;
    }

private:
    off_t m_from;
};

TEST_F(ReadAheadFiles, OfADeviceThatFailsGiveWhatOneThreadGives)
{
    const QByteArray header("# Quilvane flags\n# \nbegin_time\n");
    write("1.flags", header + flagRows(0, 8000));
    write("2.flags", header + flagRows(8000, 100));
    chunkBytes = 20000;
    for (const off_t from : {0, 20, 19999, 20000, 20001, 200000, 350000}) {
        const BrokenDisk disk(from);
        expectTheSame();
        EXPECT_TRUE(complaints().join(' ').contains("Skipping ")) << from;
    }
}

TEST_F(ReadAheadFiles, ThatShrinkMeanwhileGiveRowsWithoutAHole)
{
    const QByteArray header("# Quilvane flags\n# \nbegin_time\n");
    const QString path = folder.filePath("1.flags");
    const off_t shorter = (header + flagRows(0, 650)).size();
    threads = 4;
    chunkBytes = 1000;
    for (int chunks = 1; chunks < 60; chunks += 3) {
        write("1.flags", header + flagRows(0, 2000));
        std::atomic<int> left{chunks};
        parsed = [&] {
            holdUp();
            if (--left == 0) {
                EXPECT_EQ(truncate(QFile::encodeName(path).constData(), shorter), 0);
            }
        };
        read();
        ASSERT_GT(recordCount(), 300);
        for (int i = 0; i + 1 < recordCount(); ++i) // the last line may be a part of one
            ASSERT_EQ(ticksOf(record(i).beginTime), (1568246400 + qint64(i)) * ticksPerSecond) << chunks;
    }
}

TEST_F(ReadAheadFiles, OfWhichManyAreSmallAreOpenAFewAtATime)
{
    for (int i = 0; i < 300; ++i)
        write(QString::number(1000 + i) + ".flags", "# Quilvane flags\n# \nbegin_time\n" + flagRows(i, 1));
    threads = 2;
    parsed = nullptr;
    uint most = 0;
    started = [&](FileReaderTask &task) {
        QObject::connect(&task, &FileReaderTask::progress, &task, [&most] {
            std::this_thread::sleep_for(std::chrono::microseconds(300));
            most = std::max(most, QDir("/proc/self/fd").count());
        });
    };
    read();
    EXPECT_EQ(recordCount(), 300);
    EXPECT_LT(most, 60U) << "a process may open no more than a thousand, and a system may allow less";
}

TEST_F(ReadAheadFiles, WithBlocksOfOtherColumnsAndAsManyFieldsGiveWhatOneThreadGives)
{
    const auto block = [](const QByteArray &points, const QByteArray &variables, int from) {
        QByteArray text("# Quilvane spectra\n# spectra:\n");
        for (const QByteArray &of : points.split(' '))
            text += "# - {name: s, hash: h" + of + QByteArray::number(from) + ", xpoints: [" + of +
                    "], xunit: nm, yunit: 1/cm^3, scale: radius}\n";
        return text + "# inversion_vars: [" + variables + "]\nbegin_time\n" +
               flagRows(from, 4).replace("\tions\t\n", "\tions\t1\t2\t3\t4\t5\t6\t7\t8\n");
    };
    const QByteArray rmsErrors("current_rms_error, current_rms_error");
    write("1.spectra", block("1 2", rmsErrors, 0) + block("1 2 1 1", "", 4));
    for (chunkBytes = 20; chunkBytes < 400; chunkBytes += 7)
        expectTheSame();
}

} // namespace
