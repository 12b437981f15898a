#include "datafiles/writing/plainfileoutput.h"

#include "datafiles/writing/plainfileoutput_flags.h"
#include "datafiles/writing/plainfileoutput_match.h"
#include "outputfixture.h"
#include "util/filenamepart.h"

#include <QCryptographicHash>
#include <QSet>

using Spectrometer::PlainFileOutput;
using Result = PlainFileOutput::RowResult;

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
    const QByteArray yaml = header.left(header.lastIndexOf('\n', -2) + 1);
    const QByteArray otherHeader = "# Quilvane records\n# other: 1\n# \nbegin_time\n";
    const char *const found = "\nmatching header found", *const none = "\nno matching header found";

    const struct {
        const char *name;
        QByteArray before;
        int headersAfter;
        const char *message;
        QByteArray torn; ///< the end of it that was cut off
    } cases[] = {
        {"the same", block, 1, found, ""},
        {"an empty file", "", 1, none, ""},
        {"another block behind", block + otherHeader + "row\n", 3, none, ""},
        {"a line too long for any header", block + QByteArray(300000, 'x') + '\n', 1, found, ""},
        {"two of them", block + block, 2, found, ""},
        {"part of a row", block, 1, found, "2019-09-12 12:17:52.000000+02:00\t2019"},
        {"part of a flag", block, 1, found, "# flag ab: {ty"},
        {"all of a row but its line feed", header, 1, found, block.mid(header.size()).chopped(1)},
        {"a header without its column row", "", 1, none, yaml},
        {"part of a column row", block, 1, found, header.chopped(1)},
        {"two parts of headers", block + otherHeader, 3, none, "# Quilvane records\n" + yaml},
    };
    const QString torn = path(recordsName + ".torn");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        writeFile(path(recordsName), c.before + c.torn);
        QFile::remove(torn);
        messages.clear();
        EXPECT_EQ(output.writeRecordRow(record(1)), Result::Written);
        output.closeFiles();
        const QByteArray after = contentOf(path(recordsName));
        EXPECT_EQ(headersIn(after), c.headersAfter);
        EXPECT_TRUE(after.startsWith(c.before));
        EXPECT_EQ(rows(path(recordsName)).last().left(19), "2019-09-12 12:17:52");
        EXPECT_EQ(QFile::exists(torn), !c.torn.isEmpty());
        EXPECT_EQ(contentOf(torn), c.torn);
        const QString told = messages.join(QString());
        EXPECT_TRUE(told.contains(QLatin1String(c.message))) << qPrintable(told);
        const QString moved = "was cut off. Its %1 bytes were moved to '20190912-block.records.torn'";
        EXPECT_EQ(told.contains(moved.arg(c.torn.size())), !c.torn.isEmpty()) << qPrintable(told);
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
    // An end that a move couldn't take back isn't added again.
    const QByteArray whole = contentOf(path(recordsName));
    for (const QByteArray held : {"half", "old\nhalf", "oldhalf", "half\n", "f"}) {
        writeFile(path(recordsName), whole + "half");
        writeFile(path(recordsName + ".torn"), held);
        EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Written);
        const bool isThere = held == "half" || held == "old\nhalf";
        EXPECT_EQ(contentOf(path(recordsName + ".torn")),
                  isThere ? held : held + (held.endsWith('\n') ? "half" : "\nhalf"));
    }
    // Where they can't be kept they stay: at a folder, and at a link, which may lead to any file of the user.
    const QString torn = path(recordsName + ".torn"), elsewhere = folder.filePath("elsewhere");
    const QByteArray before = contentOf(path(recordsName)) + "third";
    writeFile(elsewhere, "mine\n");
    for (const QString &reason : {qt_error_string(EISDIR), QString("Not a regular file")}) {
        QFile::remove(torn);
        ASSERT_TRUE(errors.isEmpty() ? QDir().mkpath(torn) : QDir().rmdir(torn) && QFile::link(elsewhere, torn));
        writeFile(path(recordsName), before);
        EXPECT_EQ(PlainFileOutput(settings).writeRecordRow(record()), Result::Lost);
        EXPECT_EQ(contentOf(path(recordsName)), before);
        EXPECT_EQ(errors.value(errors.size() - 1),
                  QString("Failed to move the cut off end of file \"%1\" to \"%1.torn\": %2. Data was lost!")
                      .arg(path(recordsName), reason));
    }
    EXPECT_EQ(contentOf(elsewhere), "mine\n");
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
    const QString name = "-..%2F10%25s.records";
    PlainFileOutput output(settings);
    Spectrometer::FullRecord late = record();
    late.beginTime = someTime + std::chrono::hours(12); // 22:16:52 UTC, the next day at +02:00
    for (const auto &one : {record(), late, record(1)})
        EXPECT_EQ(output.writeRecordRow(one), Result::Written);
    EXPECT_EQ(QDir(settings.folder).entryList(QDir::Files), (QStringList{"20190912" + name, "20190913" + name}));
    EXPECT_EQ(rows(path("20190912" + name)).size(), 2);
    EXPECT_TRUE(messages.join(QString()).contains("closing \""));

    Spectrometer::FullRecord ancient = record();
    ancient.beginTime = recordTimeFromTicks(-1000 * ticksPerDay);
    EXPECT_EQ(output.writeRecordRow(ancient), Result::Lost);

    settings.fileNamePattern = "%Y%m%d%H%M"; // a name of its own for every minute
    output.setSettings(settings);
    output.applySettings();
    output.writeRecordRow(record());
    output.writeRecordRow(record(1));
    EXPECT_TRUE(QFile::exists(path("201909121216" + name)) && QFile::exists(path("201909121217" + name)));
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
