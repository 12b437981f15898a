#include "datafiles/writing/commentwriting.h"

#include "datafiles/reading/commentfile.h"
#include "support/failingcalls.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "util/lockedfile.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <atomic>
#include <csignal>
#include <functional>
#include <random>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace {

const QByteArray header = "#Record comments\n";
const QByteArray key = "2019-09-13 01:59:00.123456+02:00\t2019-09-13 02:00:00.000000+02:00\tions\t";

struct CommentWriting : testing::Test {
    CommentWriting()
    {
        head.beginTime = recordTimeFromTicks((18152 * 86400LL - 60) * ticksPerSecond + 1'234'567);
        head.endTime = recordTimeFromTicks(18152 * ticksPerDay);
        head.beginUtcOffset = head.endUtcOffset = 7200;
    }
    CommentPlace place() const { return CommentPlace(folder.path(), "block", head, "ions"); }
    QString path() const { return folder.filePath("20190913-block.comments"); }

    QTemporaryDir folder;
    Spectrometer::RecordHead head;
};

TEST_F(CommentWriting, TheFileIsThatOfTheLocalDayAndOfTheVariant)
{
    EXPECT_EQ(place().path, path());
    EXPECT_EQ(place().key, key);
    EXPECT_EQ(CommentPlace(folder.path(), "a/b", head, "").path, folder.filePath("20190913-a%2Fb.comments"));
    EXPECT_TRUE(CommentPlace(folder.path(), "block", head, "a\tb\n").key.endsWith("\ta\\tb\\n\t"));
    head.endTime = {};
    EXPECT_TRUE(place().key.contains("\t1970-01-01 02:00:00.000000+02:00\t")) << "a record without an end";
    for (const std::int64_t ticks : {-ticksPerDay, std::numeric_limits<std::int64_t>::max()}) {
        head.beginTime = recordTimeFromTicks(ticks);
        EXPECT_FALSE(writeComment(place(), "text").isNull());
    }
    EXPECT_TRUE(filesIn(folder.path()).isEmpty());
}

TEST_F(CommentWriting, OneLineChangesAndAllOtherBytesStay)
{
    const QByteArray other = "2019-09-13 05:00:00.000000+02:00\t...\tions\tother\r\n", junk("\xff\0junk\r\n", 8);
    const struct {
        const char *name;
        QByteArray before;
        const char *text;
        QByteArray after;
    } cases[] = {
        {"made", "", "new", header + key + "new\n"},
        {"no file for nothing", "", "", ""},
        {"added", header + other + junk, "new", header + other + junk + key + "new\n"},
        {"added behind a line without an end", header + other + "cut", "n", header + other + "cut\n" + key + "n\n"},
        {"changed", header + key + "old\n" + other, "new", header + key + "new\n" + other},
        {"changed wherever it stands", header + key + "1\n" + other + key + "2\r\n" + key, "new",
         header + key + "new\n" + other + key + "new\n" + key + "new\n"},
        {"removed", header + key + "1\n" + junk + key + "2", "", header + junk},
        {"the last one removed", header + key + "1\n", "", header},
        {"nothing to remove", header + other, "", header + other},
        {"another mode's", header + key.chopped(1) + "2\told\n", "new",
         header + key.chopped(1) + "2\told\n" + key + "new\n"},
        {"escaped", header, "a\tb\n\\ \"q\" \xc3\xbc", header + key + "a\\tb\\n\\\\ \"q\" \xc3\xbc\n"},
    };
    for (const auto &c : cases) {
        QFile::remove(path());
        if (!c.before.isEmpty())
            writeFile(path(), c.before);
        EXPECT_EQ(writeComment(place(), QString::fromUtf8(c.text)), QString()) << c.name;
        EXPECT_EQ(contentOf(path()), c.after) << c.name;
        EXPECT_EQ(QFile::exists(path()), !c.after.isEmpty()) << c.name;
    }
    writeFile(path(), "# Quilvane flags\n");
    EXPECT_FALSE(writeComment(place(), "nobody would read it").isNull());
    EXPECT_EQ(contentOf(path()), "# Quilvane flags\n");
}

TEST_F(CommentWriting, AnyTextComesBack)
{
    QString all;
    for (ushort c = 0; c < 0xd800; ++c)
        all += QChar(c);
    all += QString::fromUtf8("\xf0\x9f\x99\x82");
    for (const QString &text : {all.trimmed(), QString("\\"), QString("\\n"), QString(QChar(0xfeff)) + 'x'}) {
        ASSERT_EQ(writeComment(place(), text), QString());
        QStringList read;
        readCommentFile(path(), [&](const CommentLine &line) {
            read << line.text;
            EXPECT_EQ(line.end, head.endTime);
            EXPECT_EQ(line.beginUtcOffset, head.beginUtcOffset);
        });
        EXPECT_EQ(read, QStringList(text));
    }
}

TEST_F(CommentWriting, AnyCallThatFailsKeepsTheOldFile)
{
    const QByteArray before = header + QByteArray(100000, 'x') + '\n';
    for (const bool isThere : {true, false}) {
        QStringList failed;
        for (int nth = 1;; ++nth) {
            QFile::remove(path());
            if (isThere)
                writeFile(path(), before);
            const FailingCalls calls(nth, ENOSPC);
            const QString reason = writeComment(place(), "new");
            if (!calls.failed()) {
                EXPECT_EQ(reason, QString());
                break;
            }
            failed << calls.failed();
            // A folder's list that can't be synced, and a file that was only read, cost nothing.
            const bool stands = contentOf(path()) == (isThere ? before : header) + key + "new\n";
            EXPECT_TRUE(stands ? reason.isNull() || reason.startsWith("it stands")
                               : contentOf(path()) == (isThere ? before : QByteArray()))
                << calls.failed() << nth;
            EXPECT_TRUE(stands || !reason.isNull()) << calls.failed() << nth;
            EXPECT_LE(filesIn(folder.path()).size(), 1) << calls.failed() << nth;
        }
        for (const char *step : {"write", "fsync", "close", isThere ? "rename" : "renameToFree"})
            EXPECT_TRUE(failed.contains(step)) << step;
        EXPECT_EQ(failed.contains("read"), isThere);
    }
}

TEST_F(CommentWriting, ACommentThatAnotherWriterMadeSinceTheFileWasReadWasLost)
{
    // At the first fsync, when the file has been read and its successor written, another writes a comment.
    struct Meanwhile : FileCalls {
        explicit Meanwhile(std::function<void()> work) : another(std::move(work)) { setCurrent(this); }
        ~Meanwhile() override
        {
            thread.join();
            setCurrent(nullptr);
        }
        int fsync(int descriptor) override
        {
            if (!isBegun.exchange(true)) {
                thread = std::thread(another);
                usleep(50'000);
            }
            return FileCalls::fsync(descriptor);
        }
        const std::function<void()> another;
        std::atomic<bool> isBegun{false};
        std::thread thread;
    };
    for (const bool isThere : {true, false}) {
        QFile::remove(path());
        if (isThere)
            writeFile(path(), header);
        const CommentPlace other(folder.path(), "block", head, "offset");
        {
            const Meanwhile calls([&] { EXPECT_EQ(writeComment(other, "theirs"), QString()); });
            EXPECT_EQ(writeComment(place(), "ours"), QString());
        }
        const QByteArray text = contentOf(path());
        EXPECT_TRUE(text.contains(key + "ours\n") && text.contains(other.key + "theirs\n")) << text.constData();
        EXPECT_EQ(text.count("\n"), 3);
    }
    LockedFile held(path());
    ASSERT_TRUE(held.open(QIODevice::ReadWrite) && held.lock(LockedFile::WriteLock, false));
    EXPECT_EQ(writeComment(place(), "new"), "Another program is writing it");
}

TEST_F(CommentWriting, CommentsThatNoReaderTakesWereSaidWritten)
{
    writeFile(path(), header);
    EXPECT_EQ(writeComment(place(), QString(1'000'000, 'x')), "It is too long");
    ASSERT_TRUE(QFile::resize(path(), 256'000'001));
    EXPECT_EQ(writeComment(place(), "new"), "It is too large");
}

TEST_F(CommentWriting, ADiskThatIsFullAtAnyByteKeepsTheOldFile)
{
    const QByteArray before = header + key + "old\n";
    writeFile(path(), before);
    for (int bytes = 0; bytes < before.size(); ++bytes) {
        const FullDisk disk(bytes);
        EXPECT_FALSE(writeComment(place(), "new").isNull()) << bytes;
        EXPECT_EQ(contentOf(path()), before) << bytes;
        EXPECT_EQ(filesIn(folder.path()).size(), 1) << bytes;
    }
}

TEST_F(CommentWriting, AWriterThatIsKilledLeavesTheOldFileOrTheNew)
{
    const QString texts[] = {QString(20000, 'a'), QString(30000, 'b')};
    const auto fileOf = [](const QString &text) { return header + key + text.toUtf8() + '\n'; };
    QElapsedTimer clock;
    clock.start();
    for (const QString &text : texts)
        ASSERT_EQ(writeComment(place(), text), QString());
    const auto microseconds = unsigned(clock.nsecsElapsed() / 1000); // of two writes
    std::mt19937 random(1);
    int changes = 0;
    // On a busy machine a writer seldom gets to its work.
    for (int round = 0, present = 1; round < 200 || (changes < 10 && round < 5000); ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;)
                writeComment(place(), texts[present ^= 1]);
        }
        usleep(std::uniform_int_distribution<unsigned>(0, microseconds)(random));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const QByteArray now = contentOf(path());
        const bool isChanged = now == fileOf(texts[present ^ 1]);
        ASSERT_TRUE(isChanged || now == fileOf(texts[present])) << round << ": " << now.size() << " bytes";
        present ^= int(isChanged);
        changes += int(isChanged);
    }
    EXPECT_GE(changes, 10) << "the writer hardly got to its work";
}

} // namespace
