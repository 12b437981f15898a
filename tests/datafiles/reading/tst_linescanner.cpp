#include "datafiles/reading/linescanner.h"

#include "support/files.h"

#include <QTemporaryDir>

#include <random>

#include <sys/stat.h>

namespace {

class Lines : public testing::Test {
protected:
    /// All lines; "<too long>" for those that were skipped.
    QList<QByteArray> scan(const QByteArray &bytes, std::size_t limit = LineScanner::longestLine)
    {
        LineScanner scanner(limit);
        writeFile(folder.filePath("file"), bytes);
        EXPECT_TRUE(scanner.open(folder.filePath("file")));
        std::int64_t counted = 0;
        scanner.setByteCounter([&counted](std::int64_t count) { counted += count; });
        QList<QByteArray> lines;
        QByteArray line;
        for (;;) {
            const LineScanner::Found found = scanner.next(&line);
            if (found == LineScanner::Found::end)
                break;
            lines.append(found == LineScanner::Found::tooLong ? QByteArray("<too long>")
                                                              : QByteArray(line.constData(), line.size()));
        }
        EXPECT_EQ(counted, bytes.size());
        return lines;
    }

    QTemporaryDir folder;
};

TEST_F(Lines, EndsAndCarriageReturns)
{
    const struct {
        QByteArray bytes;
        QList<QByteArray> lines;
    } cases[] = {
        {"", {}},
        {"a", {"a"}},
        {"a\n", {"a"}},
        {"\n", {""}},
        {"a\n\nb", {"a", "", "b"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\rb\n\r\r\nc\r", {"ab", "", "c"}},
        {QByteArray("a\0b\n\0", 5), {QByteArray("a\0b", 3), QByteArray("\0", 1)}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(scan(c.bytes), c.lines) << c.bytes.toStdString();
}

TEST_F(Lines, OfEveryLengthAcrossBlocks)
{
    std::mt19937 random(3);
    QList<QByteArray> expected;
    QByteArray bytes;
    for (int i = 0; i < 400; ++i) {
        const int size = i % 50 == 7 ? 3000000 : int(random() % 20000);
        expected.append(QByteArray(size, char('a' + i % 26)));
        bytes += expected.last() + (random() % 2 ? "\n" : "\r\n");
    }
    EXPECT_EQ(scan(bytes), expected);
    bytes.chop(1);
    EXPECT_EQ(scan(bytes), expected);
}

TEST_F(Lines, LongerThanTheLimitAreSkippedToTheirEnd)
{
    const QByteArray fits(100, 'f');
    const QByteArray tooLong(101, 't');
    const QByteArray farTooLong(5 << 20, 't');
    EXPECT_EQ(scan("a\n" + fits + "\n" + tooLong + "\nb\n" + farTooLong + "\nc", 100),
              (QList<QByteArray>{"a", fits, "<too long>", "b", "<too long>", "c"}));
    EXPECT_EQ(scan("a\n" + tooLong, 100), (QList<QByteArray>{"a", "<too long>"}));
    EXPECT_EQ(scan("a\n" + farTooLong, 100), (QList<QByteArray>{"a", "<too long>"}));
}

TEST_F(Lines, OnlyRegularFilesAreOpened)
{
    const QByteArray pipe = QFile::encodeName(folder.filePath("pipe"));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    for (const QString &path : {folder.path(), QString(pipe), QStringLiteral("/dev/zero"), folder.filePath("absent")})
        EXPECT_FALSE(LineScanner().open(path)) << path.toStdString();
}

} // namespace
