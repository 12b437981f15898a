#include "datafiles/writing/plainfileoutput.h"
#include "outputfixture.h"
#include "util/filecalls.h"

#include <cerrno>
#include <cstdio>
#include <functional>
#include <utility>

using Spectrometer::PlainFileOutput;
using Result = PlainFileOutput::RowResult;

TEST_F(OutputTest, RowsBehindWhatAStrangerAppendedStoodUnderItsHeaderOrInItsHalfRow)
{
    PlainFileOutput output(settings);
    const auto append = [this](const QByteArray &text) {
        QFile file(path(recordsName));
        ASSERT_TRUE(file.open(QIODevice::Append) && file.write(text) == text.size());
    };
    output.writeRecordRow(record());
    append("# Quilvane records\n# \nbegin_time\nby another\n");
    output.writeRecordRow(record(1));
    append("half");
    output.writeRecordRow(record(2));
    output.closeFiles();
    const QByteArray text = contentOf(path(recordsName));
    EXPECT_EQ(headersIn(text), 3);
    EXPECT_EQ(rows(path(recordsName)).size(), 2);
    EXPECT_EQ(text.count("by another\n"), 1);
    EXPECT_EQ(contentOf(path(recordsName + ".torn")), "half");
    EXPECT_EQ(output.rowsOfClosedFiles().value(path(recordsName)), 3);
}

TEST_F(OutputTest, ARowWasWrittenOverWhatAStrangerAppendedBetweenTheLookAndTheRow)
{
    // Appends before the nth write, of which the first is that of the header, and behind it.
    struct Stranger : FileCalls {
        Stranger(QString file, QByteArray words, int nth, int more = 1, QByteArray wordsBehind = {})
            : name(std::move(file)), text(std::move(words)), behind(std::move(wordsBehind)), first(nth),
              last(nth + more)
        {
            setCurrent(this);
        }
        ~Stranger() override { setCurrent(nullptr); }
        ssize_t write(int descriptor, const char *bytes, std::size_t size) override
        {
            ++writes;
            QFile file(name);
            const bool isAt = writes >= first && writes < last && file.open(QIODevice::Append | QIODevice::Unbuffered);
            if (isAt)
                file.write(text);
            const ssize_t written = FileCalls::write(descriptor, bytes, size);
            if (isAt)
                file.write(behind);
            return written;
        }
        const QString name;
        const QByteArray text, behind;
        const int first, last;
        int writes = 0;
    };
    PlainFileOutput(settings).writeRecordRow(record());
    const QByteArray block = contentOf(path(recordsName)), row = rows(path(recordsName)).last() + '\n',
                     header = block.chopped(row.size());
    const QByteArray line(300, 's'), other = "# Quilvane records\n# \nbegin_time\n";
    const struct {
        QByteArray strange;
        int before; ///< which write
        QByteArray after, torn, behind;
    } cases[] = {
        {line + '\n', 2, header + line + '\n' + row, ""},
        {line + '\n', 1, line + '\n' + header + row, ""},
        {other, 2, header + other + header + row, ""},
        {other, 1, other + header + row, ""},
        {line, 2, header + row, line},
        {line, 1, header + row, line},
        {"# flag ab: x\n", 2, header + "# flag ab: x\n" + row, ""},
        {line + '\n', 2, header + line + '\n' + row + line, "", line},
        {other, 2, header + other + '#' + QByteArray(row.size() - 2, ' ') + '\n' + other + header + row, "", other},
    };
    for (const auto &c : cases) {
        QFile::remove(path(recordsName));
        QFile::remove(path(recordsName + ".torn"));
        const Stranger stranger(path(recordsName), c.strange, c.before, 1, c.behind);
        PlainFileOutput output(settings);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Written);
        EXPECT_EQ(contentOf(path(recordsName)), c.after);
        EXPECT_EQ(contentOf(path(recordsName + ".torn")), c.torn);
    }
    // One that never rests costs the row.
    const QByteArray before = contentOf(path(recordsName));
    const Stranger stranger(path(recordsName), "# x\n", 1, 1000);
    PlainFileOutput output(settings);
    EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(contentOf(path(recordsName)).replace("# x\n", ""), QByteArray(before).replace("# x\n", ""));
    EXPECT_TRUE(errors.value(0).contains("Others keep writing into it"));
}

TEST_F(OutputTest, ARowInTwoPiecesOrThatCouldNotBeTakenBackCutAStrangersLineOrStoodThereTwice)
{
    enum Fault { None, NoCut, NoCutAndNoComment };
    // Others write between the two pieces of the row, which is the second write, or a header before all of it.
    struct Stranger : FileCalls {
        Stranger(QString file, bool inPieces, Fault f) : name(std::move(file)), halves(inPieces), fault(f)
        {
            setCurrent(this);
        }
        ~Stranger() override { setCurrent(nullptr); }
        ssize_t write(int descriptor, const char *bytes, std::size_t size) override
        {
            errno = EIO;
            if (fault == NoCutAndNoComment && QByteArray(bytes, int(size)).startsWith("#  "))
                return -1;
            const bool isRow = *bytes == '2' && !std::exchange(isDone, *bytes == '2');
            QFile file(name);
            if (isRow && !halves && file.open(QIODevice::Append))
                file.write("# Quilvane records\n# \nbegin_time\n");
            file.close();
            const ssize_t written = FileCalls::write(descriptor, bytes, isRow && halves ? size / 2 : size);
            if (isRow && halves && file.open(QIODevice::Append))
                file.write("by a stranger\n");
            return written;
        }
        int ftruncate(int descriptor, off_t size) override
        {
            errno = EIO;
            return fault == None ? FileCalls::ftruncate(descriptor, size) : -1;
        }
        const QString name;
        const bool halves;
        const Fault fault;
        bool isDone = false;
    };
    for (bool halves : {true, false}) {
        for (Fault fault : {None, NoCut, NoCutAndNoComment}) {
            SCOPED_TRACE(QString("%1 %2").arg(halves).arg(fault).toStdString());
            QDir(settings.folder).removeRecursively();
            const Stranger stranger(path(recordsName), halves, fault);
            PlainFileOutput output(settings);
            const bool isLost = fault == NoCutAndNoComment;
            EXPECT_EQ(output.writeRecordRow(record()), isLost ? Result::Lost : Result::Written);
            output.closeFiles();
            const QByteArray text = contentOf(path(recordsName));
            EXPECT_EQ(text.count("\n2019-09-12 12:16:52"), 1);
            EXPECT_EQ(text.count("\nby a stranger\n"), halves && !isLost);
            EXPECT_EQ(text.count("\n#" + QByteArray(20, ' ')), isLost ? 0 : int(halves) + (fault == NoCut));
            EXPECT_EQ(output.counts().lost, isLost);
        }
    }
}

TEST_F(OutputTest, RowsOfAFileThatWasTakenAwayOrCutCountedAsWritten)
{
    settings.variants[0].spectra = false;
    const QString name = path(recordsName);
    const struct {
        const char *what;
        std::function<void()> act;
    } deeds[] = {
        {"removed", [&] { QFile::remove(name); }},
        {"renamed", [&] { QFile::rename(name, name + ".old"); }},
        {"replaced", [&] { QFile::copy(name, name + "~"), std::rename(qPrintable(name + "~"), qPrintable(name)); }},
        {"emptied", [&] { QFile::resize(name, 0); }},
        {"cut in its last row", [&] { QFile::resize(name, QFileInfo(name).size() - 3); }},
        {"written anew", [&] { writeFile(name, QByteArray(9999, 'x') + '\n'); }},
    };
    enum { BeforeARow, BeforeTheEnd, BetweenOpenings, BehindTheLook };
    struct BeforeTheWrite : FileCalls {
        explicit BeforeTheWrite(std::function<void()> deed) : act(std::move(deed)) { setCurrent(this); }
        ~BeforeTheWrite() override { setCurrent(nullptr); }
        ssize_t write(int descriptor, const char *bytes, std::size_t size) override
        {
            if (act)
                std::exchange(act, nullptr)();
            return FileCalls::write(descriptor, bytes, size);
        }
        std::function<void()> act;
    };
    for (const auto &deed : deeds) {
        for (int when : {BeforeARow, BeforeTheEnd, BetweenOpenings, BehindTheLook}) {
            SCOPED_TRACE(QString("%1 %2").arg(deed.what).arg(when).toStdString());
            QDir(settings.folder).removeRecursively();
            errors.clear();
            PlainFileOutput output(settings);
            for (int minute : {0, 1})
                EXPECT_EQ(output.writeRecordRow(record(minute)), Result::Written);
            if (when == BetweenOpenings)
                output.writeRecordRow(record(24 * 60));
            if (when != BehindTheLook)
                deed.act();
            if (when != BeforeTheEnd) {
                const BeforeTheWrite calls(when == BehindTheLook ? deed.act : nullptr);
                EXPECT_EQ(output.writeRecordRow(record(2)), Result::Written);
            }
            output.closeFiles();
            const bool isCopy = when == BetweenOpenings && deed.what == QByteArray("replaced"); // which holds the rows
            const bool isElsewhere = when == BehindTheLook && &deed < deeds + 3;                // the third row, too
            const int all = when == BetweenOpenings ? 4 : when == BeforeTheEnd ? 2 : 3;
            const int lost = isCopy ? 0 : isElsewhere ? 3 : 2;
            EXPECT_EQ(output.counts().lost, lost);
            EXPECT_EQ(output.counts().written, all - lost);
            EXPECT_EQ(errors.size(), isCopy ? 0 : 1);
            EXPECT_TRUE(isCopy || errors.value(0).contains(name + '"')) << qPrintable(errors.value(0));
            if (when != BeforeTheEnd && !isElsewhere) {
                EXPECT_TRUE(rows(name).last().startsWith("2019-09-12 12:18:52"));
            }
        }
    }
}

TEST_F(OutputTest, AWrongPlaceOfAppendedBytesCostTheRowsThatStoodThere)
{
    struct Elsewhere : FileCalls {
        Elsewhere() { setCurrent(this); }
        ~Elsewhere() override { setCurrent(nullptr); }
        ssize_t write(int, const char *, std::size_t size) override { return ssize_t(size); }
    };
    PlainFileOutput output(settings);
    output.writeRecordRow(record());
    const QByteArray before = contentOf(path(recordsName));
    {
        const Elsewhere calls;
        EXPECT_EQ(output.writeRecordRow(record(1)), Result::Written);
    }
    EXPECT_EQ(contentOf(path(recordsName)), before);
}

TEST_F(OutputTest, AFileThatOthersCutBeforeItWasCutGrewByZeros)
{
    struct Cutter : FileCalls {
        explicit Cutter(QString file) : name(std::move(file)) { setCurrent(this); }
        ~Cutter() override { setCurrent(nullptr); }
        int ftruncate(int descriptor, off_t size) override
        {
            QFile::resize(name, std::min(QFileInfo(name).size(), cutTo));
            return FileCalls::ftruncate(descriptor, size);
        }
        const QString name;
        qint64 cutTo = 0;
    };
    settings.variants[0].spectra = false;
    PlainFileOutput(settings).writeRecordRow(record());
    const QByteArray block = contentOf(path(recordsName));
    for (bool isTorn : {true, false}) {
        writeFile(path(recordsName), block + (isTorn ? "half" : ""));
        PlainFileOutput output(settings);
        if (!isTorn)
            output.writeRecordRow(record(1));
        Cutter cutter(path(recordsName));
        cutter.cutTo = block.size() - 10;
        const FullDisk disk(QFileInfo(path(recordsName)).size() + (isTorn ? 1000 : 20));
        EXPECT_EQ(output.writeRecordRow(record(2)), Result::Lost);
        output.closeFiles();
        EXPECT_EQ(contentOf(path(recordsName)), block.chopped(10));
        EXPECT_EQ(output.counts().lost, isTorn ? 1 : 2);
    }
}

TEST_F(OutputTest, AFileThatAnotherMadeMeanwhileWasContinuedThoughNoneMayBe)
{
    settings.refusalOfExisting = "\"%1\" exists.";
    settings.variants[0].spectra = false;
    PlainFileOutput output(settings);
    const QString other = path("20190913-block.records");
    writeFile(other, "by another\n");
    // Its own files are continued: behind a stranger's words, and when their day comes again.
    for (int opening : {0, 1, 2}) {
        EXPECT_EQ(output.writeRecordRow(record(opening)), Result::Written);
        writeFile(path(recordsName), contentOf(path(recordsName)) + "# x\n");
        EXPECT_EQ(output.writeRecordRow(record(24 * 60)), Result::Lost);
    }
    EXPECT_EQ(contentOf(other), "by another\n");
    EXPECT_EQ(errors, (QVector<QString>(3, settings.refusalOfExisting.arg(other)).toList()));
    // One that came into its place isn't its own any more.
    EXPECT_EQ(output.writeRecordRow(record(3)), Result::Written);
    QFile::rename(path(recordsName), path("old"));
    writeFile(path(recordsName), "by another\n");
    EXPECT_EQ(output.writeRecordRow(record(4)), Result::Lost);
    EXPECT_EQ(contentOf(path(recordsName)), "by another\n");
    EXPECT_EQ(errors.value(errors.size() - 1), settings.refusalOfExisting.arg(path(recordsName)));
    EXPECT_EQ(output.counts().written, 0);
    EXPECT_EQ(output.counts().lost, 8);
}

TEST_F(OutputTest, RowsOfAFileThatLosesItsNameBeforeTheLockWereLostInSilence)
{
    PlainFileOutput(settings).writeRecordRow(record());
    struct Replacing : FileCalls {
        Replacing() { setCurrent(this); }
        ~Replacing() override { setCurrent(nullptr); }
        int open(const char *path, int flags, mode_t mode) override
        {
            const int descriptor = FileCalls::open(path, flags, mode);
            QFile::remove(QFile::decodeName(path));
            writeFile(QFile::decodeName(path), "by another\n");
            return descriptor;
        }
    };
    {
        const Replacing calls;
        EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Lost);
    }
    EXPECT_EQ(contentOf(path(recordsName)), "by another\n");
}
