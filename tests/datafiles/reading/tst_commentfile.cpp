#include "datafiles/reading/commentfile.h"
#include "support/expected.h"
#include "util/textescape.h"
#include "util/timeformat.h"

#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

std::vector<CommentLine> linesOf(const QString &path)
{
    std::vector<CommentLine> lines;
    readCommentFile(path, [&](const CommentLine &line) { lines.push_back(line); });
    return lines;
}

} // namespace

TEST(CommentFile, EachFileComesToWhatIsExpectedOfIt)
{
    expectCorpus("comments", [](const QString &path) {
        QStringList outcome;
        for (const CommentLine &line : linesOf(path))
            outcome << QStringList{timeToString(line.begin) + ' ' + QString::number(line.beginUtcOffset),
                                   timeToString(line.end), line.opmode,
                                   escapeTextNoQuote(line.text).replace(QChar(0), "<NUL>")}
                           .join(" | ");
        return QString("comments: %1\n%2\n").arg(QString::number(outcome.size()), outcome.join('\n'));
    });
}

TEST(CommentFile, AnEndlessLineCostsItself)
{
    const QTemporaryDir folder;
    const QByteArray times = "2019-09-12 13:16:52.5\t2019-09-12 13:17:52.5\tions\t";
    const QString path = folder.filePath("a.comments");
    writeFile(path, "#Record comments\n" + times + QByteArray(10'000'000, 'x') + '\n' + times +
                        QByteArray(900'000, 'y') + '\n' + times + QByteArray(10'000'000, 'z'));
    const auto lines = linesOf(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, QString(900'000, 'y'));
}

TEST(CommentFile, WhatIsNoFileHasNoComments)
{
    const QTemporaryDir folder;
    ASSERT_EQ(mkfifo(qPrintable(folder.filePath("pipe")), 0600), 0);
    for (const QString &path : {folder.path(), folder.filePath("pipe"), folder.filePath("none"), QString("/dev/zero")})
        EXPECT_TRUE(linesOf(path).empty()) << qPrintable(path);
}

TEST(CommentFile, FilesOfTheVariantAndOfTheDaysAreFound)
{
    const QTemporaryDir folder;
    const QStringList names{"20190910-1s.comments",   "20190911-1s.comments",     "2019-09-13-1s.comments",
                            "20190914-1s.comments",   "20190912-10s.comments",    "20190912-1S.comments",
                            "20190912-1s.Comments",   "20190912-1s.comments.tmp", "all-1s.comments",
                            "20190912-[1]?.comments", "20190912-1].comments",     "20190912-a%2Fb.comments"};
    for (const QString &name : names)
        writeFile(folder.filePath(name));
    const std::int64_t noon = (18151 * 2 + 1) * ticksPerDay / 2; // of 2019-09-12
    const auto found = [&](const QString &variant, std::int64_t begin, std::int64_t end) {
        QStringList files =
            findCommentFiles(folder.path(), variant, recordTimeFromTicks(begin), recordTimeFromTicks(end));
        return files.replaceInStrings(folder.path() + '/', "").join(' ').toStdString();
    };
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min(),
                           greatest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(found("1s", noon, noon), "2019-09-13-1s.comments 20190911-1s.comments all-1s.comments");
    EXPECT_EQ(found("1s", noon - ticksPerDay, noon + ticksPerDay),
              "2019-09-13-1s.comments 20190910-1s.comments 20190911-1s.comments 20190914-1s.comments all-1s.comments");
    EXPECT_EQ(found("1s", least, greatest), found("1s", noon - ticksPerDay, noon + ticksPerDay));
    EXPECT_EQ(found("10s", noon, noon), "20190912-10s.comments");
    EXPECT_EQ(found("[1]?", noon, noon), "20190912-[1]?.comments");
    EXPECT_EQ(found("a/b", noon, noon), "20190912-a%2Fb.comments");
}
