#include "datafiles/writing/plainfileoutput.h"

#include "datafiles/writing/plainfileoutput_flags.h"
#include "datafiles/writing/plainfileoutput_match.h"
#include "outputfixture.h"
#include "support/failingcalls.h"
#include "util/filenamepart.h"
#include "util/lockedfile.h"

#include <QCryptographicHash>
#include <QSet>

#include <cerrno>
#include <unistd.h>

using Spectrometer::PlainFileOutput;
using Result = PlainFileOutput::RowResult;

namespace {

const QString recordsName = "20190912-block.records";

int headersIn(const QByteArray &text)
{
    return ("\n" + text).count("\n# Quilvane records\n");
}

} // namespace

TEST(HeaderMatch, LastHeaderDecides)
{
    const QList<QByteArray> header{"A", "B", "C"};
    const struct {
        const char *lines; ///< one letter a line
        int matched;
        const char *message;
    } cases[] = {
        {"", 0, "\nno matching header found, appending new header"},
        {"ABC", 3, "\nmatching header found"},
        {"ABCxyzBC", 3, "\nmatching header found"},
        {"ABCxABC", 3, "\nmatching header found"},
        {"ABCxAB", 2, "\npartial header match (2 of 3), appending new header"},
        {"ABCxABx", 0, "\nno matching header found, appending new header"},
        {"ABCA", 1, "\npartial header match (1 of 3), appending new header"},
        {"AABC", 3, "\nmatching header found"},
        {"BC", 0, "\nno matching header found, appending new header"},
    };
    for (const auto &c : cases) {
        Spectrometer::HeaderMatch match(header);
        for (const char *line = c.lines; *line; ++line)
            match.addLine(QByteArray(line, 1));
        EXPECT_EQ(match.matched(), c.matched) << c.lines;
        EXPECT_EQ(match.message(), QLatin1String(c.message)) << c.lines;
    }
}

TEST(FlagIds, ShortestFreePrefixOfTheDigest)
{
    const auto digest = [](const QString &text) {
        return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1).toHex();
    };
    QHash<QByteArray, QString> seen;
    QString one, other; // two texts whose digests begin alike
    for (int i = 0; other.isEmpty(); ++i) {
        const QString text = QString("flag %1").arg(i);
        one = seen.value(digest(text).left(2));
        if (!one.isEmpty())
            other = text;
        seen.insert(digest(text).left(2), text);
    }
    Spectrometer::FlagIds ids;
    QByteArray definitions;
    EXPECT_EQ(ids.idOf(flagOf(one), &definitions), digest(one).left(2));
    EXPECT_EQ(ids.idOf(flagOf(other), &definitions), digest(other).left(3));
    ids.commit();
    EXPECT_EQ(definitions, "# flag " + digest(one).left(2) + ": " + one.toUtf8() + "\n# flag " + digest(other).left(3) +
                               ": " + other.toUtf8() + '\n');
    definitions.clear();
    EXPECT_EQ(ids.idOf(flagOf(other), &definitions), digest(other).left(3)); // another object of the same text
    EXPECT_EQ(definitions, QByteArray());
}

TEST_F(OutputTest, ContinuesOnlyAfterTheSameLastHeader)
{
    PlainFileOutput output(settings);
    output.writeRecordRow(record());
    output.closeFiles();
    const QByteArray block = contentOf(path(recordsName));
    const QByteArray header = block.left(block.lastIndexOf('\n', -2) + 1);
    const QByteArray yaml = header.left(header.lastIndexOf(QByteArrayLiteral("\n"), -2) + 1);
    const QByteArray otherHeader = "# Quilvane records\n# other: 1\n# \nbegin_time\n";

    const struct {
        const char *name;
        QByteArray before;
        int headersAfter;
        const char *message;
        QByteArray torn; ///< the end of it that was cut off
    } cases[] = {
        {"the same", block, 1, "\nmatching header found", ""},
        {"an empty file", "", 1, "\nno matching header found", ""},
        {"another block behind", block + otherHeader + "row\n", 3, "\nno matching header found", ""},
        {"a line too long for any header", block + QByteArray(300000, 'x') + '\n', 1, "\nmatching header found", ""},
        {"two of them", block + block, 2, "\nmatching header found", ""},
        {"part of a row", block, 1, "\nmatching header found", "2019-09-12 12:17:52.000000+02:00\t2019"},
        {"part of a flag", block, 1, "\nmatching header found", "# flag ab: {ty"},
        {"all of a row but its line feed", header, 1, "\nmatching header found", block.mid(header.size()).chopped(1)},
        {"a header without its column row", "", 1, "\nno matching header found", yaml},
        {"part of a column row", block, 1, "\nmatching header found", header.chopped(1)},
        {"two parts of headers", block + otherHeader, 3, "\nno matching header found", "# Quilvane records\n" + yaml},
    };
    for (const auto &c : cases) {
        writeFile(path(recordsName), c.before + c.torn);
        QFile::remove(path(recordsName + ".torn"));
        messages.clear();
        EXPECT_EQ(output.writeRecordRow(record(1)), Result::Written) << c.name;
        output.closeFiles();
        const QByteArray after = contentOf(path(recordsName));
        EXPECT_EQ(headersIn(after), c.headersAfter) << c.name;
        EXPECT_TRUE(after.startsWith(c.before)) << c.name;
        const QString told = messages.join(QString());
        EXPECT_TRUE(told.contains(QLatin1String(c.message))) << c.name << qPrintable(told);
        EXPECT_EQ(rows(path(recordsName)).last().left(19), "2019-09-12 12:17:52") << c.name;
        EXPECT_EQ(QFile::exists(path(recordsName + ".torn")), !c.torn.isEmpty()) << c.name;
        EXPECT_EQ(contentOf(path(recordsName + ".torn")), c.torn) << c.name;
        EXPECT_EQ(
            told.contains(
                QString("was cut off. Its %1 bytes were moved to '20190912-block.records.torn'").arg(c.torn.size())),
            !c.torn.isEmpty())
            << c.name << qPrintable(told);
    }
}

TEST_F(OutputTest, EndsThatWereCutOffAreGatheredLineByLine)
{
    settings.logFile = true;
    for (const char *torn : {"first", "second\tx"}) {
        for (const QString &name : {path(recordsName), path("20190912.log")})
            writeFile(name, contentOf(name) + torn);
        PlainFileOutput output(settings);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Written);
        output.addLogEntry({Log::Info, "area", "words", QDateTime::fromSecsSinceEpoch(1568283412)});
    }
    for (const QString &name : {path(recordsName), path("20190912.log")}) {
        EXPECT_EQ(contentOf(name + ".torn"), "first\nsecond\tx");
        EXPECT_FALSE(contentOf(name).contains("first") || contentOf(name).contains("second"));
    }
    // Where they can't be kept they stay.
    QFile::remove(path(recordsName + ".torn"));
    QDir().mkpath(path(recordsName + ".torn"));
    const QByteArray before = contentOf(path(recordsName)) + "third";
    writeFile(path(recordsName), before);
    EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(contentOf(path(recordsName)), before);
    EXPECT_EQ(errors.value(0),
              QString("Failed to move the cut off end of file \"%1\" to \"%1.torn\": %2. Data was lost!")
                  .arg(path(recordsName), qt_error_string(EISDIR)));
}

TEST_F(OutputTest, FlagsOfAContinuedBlockAreNotDefinedAgain)
{
    Spectrometer::FullRecord flagged = record();
    flagged.flags = {flagOf("leak"), flagOf("two\nlines")};
    for (int opening = 0; opening < 3; ++opening)
        PlainFileOutput(settings).writeRecordRow(flagged);
    const QByteArray text = contentOf(path(recordsName));
    EXPECT_EQ(text.count("\n# flag "), 2);
    EXPECT_EQ(headersIn(text), 1);

    // The same id for another text, as others may have chosen it.
    const QByteArray id = text.mid(text.indexOf("# flag ") + 7, 2);
    writeFile(path(recordsName), text + "# flag " + id + ": drift\n");
    flagged.flags.pop_back();
    PlainFileOutput(settings).writeRecordRow(flagged);
    EXPECT_EQ(contentOf(path(recordsName)).count(": leak\n"), 2);
    EXPECT_EQ(rows(path(recordsName)).last().split('!').last().size(), 3);
}

TEST_F(OutputTest, ContinuedAfterACutAtAnyByteItIsAsNeverCut)
{
    settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    settings.variants[0].spectra = false;
    std::vector<Spectrometer::FullRecord> records;
    for (int i = 0; i < 4; ++i)
        records.push_back(record(i / 2)); // pairs with the same times and mode
    records[1].flags = {flagOf("leak"), flagOf("two\nlines")};
    records[3].flags = {flagOf("drift"), flagOf("leak")};
    records[3].variables[0] = 1;
    const auto writeAll = [&](PlainFileOutput &output) {
        for (const auto &one : records)
            output.writeRecordRow(one);
        output.closeFiles();
        return output.counts();
    };
    PlainFileOutput output(settings);
    EXPECT_EQ(writeAll(output).written, 4);
    const QByteArray whole = contentOf(path(recordsName));
    for (int size = 0; size <= whole.size(); ++size) {
        writeFile(path(recordsName), whole.left(size));
        PlainFileOutput again(settings);
        const auto counts = writeAll(again);
        ASSERT_TRUE(contentOf(path(recordsName)) == whole) << size << contentOf(path(recordsName)).constData();
        const QByteArray kept = whole.left(whole.left(size).lastIndexOf('\n') + 1);
        EXPECT_EQ(counts.held, kept.count("\n2019-"));
        EXPECT_EQ(counts.held + counts.written, 4);
        EXPECT_EQ(counts.differing, 0);
    }
}

TEST_F(OutputTest, HeldRowsThatDifferInValuesOrFlagsAreCounted)
{
    PlainFileOutput(settings).writeRecordRow(record());
    const QByteArray held = contentOf(path(recordsName));
    settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    Spectrometer::FullRecord other = record();
    const auto expectHeld = [&](int differing) {
        PlainFileOutput output(settings);
        EXPECT_EQ(output.writeRecordRow(other), Result::Held);
        EXPECT_EQ(output.counts().differing, differing);
        output.closeFiles();
        EXPECT_EQ(contentOf(path(recordsName)), held) << "a header without rows";
    };
    expectHeld(0);
    settings.passOver = PlainFileOutput::PassOver::RowsOfTheSameHeader;
    expectHeld(0);
    metadata->instrumentSettings["id"] = 7; // another header
    EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(other), Result::Written);
    writeFile(path(recordsName), held);
    settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    expectHeld(0);
    other.flags = {flagOf("leak")};
    expectHeld(1);
    other.flags.clear();
    other.variables[0] += 1;
    expectHeld(1);
    // A row that lacks fields is none.
    metadata->instrumentSettings.clear();
    writeFile(path(recordsName), held.left(held.lastIndexOf('\t', -4)) + '\n');
    PlainFileOutput output(settings);
    EXPECT_EQ(output.writeRecordRow(other), Result::Written);
}

TEST_F(OutputTest, FilesByLocalDayWithSafeNames)
{
    settings.folder = folder.path() + "/50% of %2/deep";
    settings.variants[0].name = "../10%s";
    PlainFileOutput output(settings);
    Spectrometer::FullRecord late = record();
    late.beginTime = someTime + std::chrono::hours(12); // 22:16:52 UTC, the next day at +02:00
    EXPECT_EQ(output.writeRecordRow(record()), Result::Written);
    EXPECT_EQ(output.writeRecordRow(late), Result::Written);
    EXPECT_EQ(output.writeRecordRow(record(1)), Result::Written);
    EXPECT_EQ(QDir(settings.folder).entryList(QDir::Files),
              (QStringList{"20190912-..%2F10%25s.records", "20190913-..%2F10%25s.records"}));
    EXPECT_EQ(rows(path("20190912-..%2F10%25s.records")).size(), 2);
    EXPECT_TRUE(messages.join(QString()).contains("closing \""));

    Spectrometer::FullRecord ancient = record();
    ancient.beginTime = recordTimeFromTicks(-1000 * ticksPerDay);
    EXPECT_EQ(output.writeRecordRow(ancient), Result::Lost);

    settings.fileNamePattern = "%Y%m%d%H%M"; // a name of its own for every minute
    output.setSettings(settings);
    output.applySettings();
    output.writeRecordRow(record());
    output.writeRecordRow(record(1));
    EXPECT_TRUE(QFile::exists(path("201909121216-..%2F10%25s.records")));
    EXPECT_TRUE(QFile::exists(path("201909121217-..%2F10%25s.records")));
}

TEST(FileNamePart, AnotherTextForEachName)
{
    const QStringList names{"a_b", "a/b", "a%2Fb", "a%252Fb", "a%b", "a%25b", "../x", "50%"};
    QSet<QString> parts;
    for (const QString &name : names) {
        const QString part = fileNamePart(name);
        EXPECT_FALSE(part.contains('/'));
        parts.insert(part);
    }
    EXPECT_EQ(parts.size(), names.size());
    EXPECT_EQ(fileNamePart("50%"), "50%");
}

TEST_F(OutputTest, FullDiskLosesTheRowAndNothingElse)
{
    PlainFileOutput output(settings);
    output.writeRecordRow(record());
    const QByteArray before = contentOf(path(recordsName));
    Spectrometer::FullRecord flagged = record(1);
    flagged.flags = {flagOf("leak")};
    // Room for nothing, for a part of the flag's definition, for all but the row's last byte.
    for (int room : {0, 5, 40, 100}) {
        FullDisk disk(before.size() + room);
        EXPECT_EQ(output.writeRecordRow(flagged), Result::Lost);
        EXPECT_EQ(contentOf(path(recordsName)), before) << room;
    }
    ASSERT_EQ(errors.size(), 4);
    // The reason is the system's, in the user's language.
    EXPECT_EQ(
        errors.first(),
        QString("Failed to write into file \"%1\": %2. Data was lost!").arg(path(recordsName), qt_error_string(EFBIG)));
    EXPECT_EQ(output.counts().lost, 4);

    // With room again the flag is still to be defined.
    EXPECT_EQ(output.writeRecordRow(flagged), Result::Written);
    const QByteArray after = contentOf(path(recordsName));
    EXPECT_TRUE(after.startsWith(before + "# flag "));
    EXPECT_EQ(headersIn(after), 1);
}

TEST_F(OutputTest, FullDiskAtTheHeaderLeavesNoFile)
{
    PlainFileOutput output(settings);
    {
        FullDisk disk(100);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
    }
    EXPECT_FALSE(QFile::exists(path(recordsName)));
    const QByteArray old = "something of old\n";
    writeFile(path(recordsName), old);
    {
        FullDisk disk(100);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
    }
    EXPECT_EQ(contentOf(path(recordsName)), old);
    EXPECT_EQ(output.writeRecordRow(record()), Result::Written);
    EXPECT_EQ(headersIn(contentOf(path(recordsName))), 1);
}

TEST_F(OutputTest, AnyCallThatFailsCostsTheRowAndIsTold)
{
    enum { New, Continued, CutOff, CutOffAgain };
    QStringList ends;
    const QString torn = path(recordsName + ".torn");
    for (int file : {New, Continued, CutOff, CutOffAgain}) {
        for (int nth = 1; nth > 0; ++nth) {
            QFile::remove(path(recordsName));
            QFile::remove(torn);
            settings.syncFiles = file == New;
            errors.clear();
            if (file != New)
                PlainFileOutput(settings).writeRecordRow(record());
            const QByteArray before = contentOf(path(recordsName)), end = file >= CutOff ? "2019" : "";
            const QByteArray tornBefore = file == CutOffAgain ? "old" : "", tornAfter = tornBefore + "\n2019";
            if (file >= CutOff)
                writeFile(path(recordsName), before + end);
            if (file == CutOffAgain)
                writeFile(torn, tornBefore);
            PlainFileOutput output(settings);
            const char *failed = nullptr;
            {
                const FailingCalls calls(nth);
                output.writeRecordRow(record(1));
                output.closeFiles();
                failed = calls.failed();
            }
            SCOPED_TRACE(failed);
            const bool lost = output.counts().lost == 1;
            EXPECT_EQ(output.counts().written, lost ? 0 : 1);
            EXPECT_EQ(output.rowsOfClosedFiles().value(path(recordsName)), lost ? 0 : 1);
            EXPECT_EQ(errors.size(), lost ? 1 : 0);
            const QByteArray after = contentOf(path(recordsName));
            EXPECT_TRUE(after.startsWith(before));
            EXPECT_EQ(headersIn(after), after.isEmpty() ? 0 : 1);
            const bool isMoved = !end.isEmpty() && after != before + end;
            EXPECT_EQ(contentOf(torn), !isMoved ? tornBefore : file == CutOff ? end : tornAfter);
            EXPECT_EQ(QFile::exists(torn), isMoved || file == CutOffAgain);
            if (failed)
                ends << QString(lost ? "%1 lost" : "%1").arg(failed);
            else
                nth = -1;
        }
    }
    ends.removeDuplicates();
    EXPECT_EQ(ends, (QStringList{"open lost", "read lost", "write lost", "fsync lost", "close lost", "pread lost",
                                 "ftruncate lost", "close"}));
}

TEST_F(OutputTest, RowsCountAsLostThatDoNotComeToTheDiskThoughTheyStoodInTheFileBefore)
{
    struct BrokenDisk : FileCalls {
        explicit BrokenDisk(int reason) : error(reason) { setCurrent(this); }
        ~BrokenDisk() override { setCurrent(nullptr); }
        int fsync(int) override
        {
            errno = error;
            return -1;
        }
        const int error;
    };
    PlainFileOutput(settings).writeRecordRow(record());
    settings.passOver = PlainFileOutput::PassOver::RowsOfAnyHeader;
    settings.syncFiles = true;
    for (int error : {EIO, EINVAL}) { // the second: a file system that has no such call
        const BrokenDisk disk(error);
        PlainFileOutput output(settings);
        EXPECT_EQ(output.writeRecordRow(record()), Result::Held);
        EXPECT_EQ(output.writeSpectraRow(withSpectrum()), Result::Written);
        output.closeFiles();
        const bool isLost = error == EIO;
        EXPECT_EQ(output.counts().lost, isLost ? 2 : 0);
        EXPECT_EQ(output.counts().held, isLost ? 0 : 1);
        EXPECT_EQ(errors.size(), isLost ? 2 : 0);
        EXPECT_EQ(errors.count(QString("Failed to bring file \"%1\" to the disk: %2. Data was lost!")
                                   .arg(path(recordsName), qt_error_string(EIO))),
                  errors.size() / 2);
        errors.clear();
        QFile::remove(path("20190912-block-ions.spectra"));
    }
}

TEST_F(OutputTest, LockedFileLosesTheRowAndNothingElse)
{
    settings.variants[0].currents = true;
    PlainFileOutput first(settings);
    first.writeRecordRow(record());
    const QByteArray before = contentOf(path(recordsName));
    PlainFileOutput second(settings);
    EXPECT_EQ(second.writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(second.writeCurrentsRow(record()), Result::Written);
    EXPECT_EQ(contentOf(path(recordsName)), before);
    EXPECT_EQ(errors,
              QStringList{QString("Failed to lock file \"%1\" for writing. Data was lost!").arg(path(recordsName))});
    first.closeFiles();
    EXPECT_EQ(second.writeRecordRow(record()), Result::Written);
    EXPECT_EQ(headersIn(contentOf(path(recordsName))), 1);
}

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

TEST_F(OutputTest, PlacesThatCannotBeWritten)
{
    writeFile(folder.filePath("plain"), "x");
    settings.folder = folder.filePath("plain/sub");
    EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(errors.takeLast(), QString("Failed to create path \"%1\". Data was lost!").arg(settings.folder));

    // A folder, and a device that would be read for ever, under the file's name.
    settings.folder = folder.filePath("odd");
    QDir().mkpath(path(recordsName));
    QFile::link("/dev/full", path("20190912-block-ions.spectra"));
    PlainFileOutput output(settings);
    EXPECT_EQ(output.writeRecordRow(record()), Result::Lost);
    EXPECT_EQ(output.writeSpectraRow(withSpectrum()), Result::Lost);
    for (const QString &name : {path("20190912-block-ions.spectra"), path(recordsName)})
        EXPECT_EQ(errors.takeLast(), QString("Failed to open file \"%1\". Data was lost!").arg(name));
    EXPECT_TRUE(errors.isEmpty());
}
