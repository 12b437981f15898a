#include "util/zipreader.h"

#include "demo/zipwriter.h"
#include "support/files.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

namespace {

using Demo::deflateRaw;
using Demo::ZipWriter;

QStringList warnings;

void collectWarning(QtMsgType, const QMessageLogContext &, const QString &text)
{
    warnings << text;
}

class ZipReading : public ::testing::Test {
protected:
    void SetUp() override
    {
        warnings.clear();
        m_previous = qInstallMessageHandler(collectWarning);
    }
    void TearDown() override { qInstallMessageHandler(m_previous); }

    QString write(const QByteArray &bytes)
    {
        writeFile(m_dir.filePath("pack.zip"), bytes);
        return m_dir.filePath("pack.zip");
    }
    QByteArray dataOf(const QByteArray &archive, const QString &name)
    {
        return QZipReader(write(archive)).fileData(name);
    }

    QTemporaryDir m_dir;
    QtMessageHandler m_previous = nullptr;
};

ZipWriter::Entry entry(const QByteArray &name, const QByteArray &data)
{
    ZipWriter::Entry result;
    result.name = name;
    result.data = data;
    return result;
}

TEST_F(ZipReading, finds_stored_deflated_and_streamed_entries_behind_a_comment)
{
    auto stored = entry("a/stored.sinv", "stored text");
    stored.deflated = false;
    auto streamed = entry("streamed.sinv", QByteArray(100000, 'x') + "end");
    streamed.streamed = true;
    streamed.localExtra = "local only";
    auto directory = entry("a/", "");
    directory.deflated = false;
    auto link = entry("link.sinv", "a/stored.sinv");
    link.madeBy = 3 << 8;
    link.attributes = quint32(0120777) << 16;
    auto windows = entry("b\\c.sinv", "backslash");

    QZipReader zip(
        write(ZipWriter().add(stored).add(streamed).add(directory).add(link).add(windows).finish("a comment")));
    EXPECT_EQ(zip.status(), QZipReader::NoError);
    ASSERT_EQ(zip.count(), 5);
    EXPECT_EQ(zip.fileData("a/stored.sinv"), "stored text");
    EXPECT_EQ(zip.fileData("streamed.sinv"), streamed.data);
    EXPECT_EQ(zip.fileData("b/c.sinv"), "backslash");
    EXPECT_TRUE(zip.entryInfoAt(0).isFile);
    EXPECT_TRUE(zip.entryInfoAt(2).isDir);
    EXPECT_TRUE(zip.entryInfoAt(3).isSymLink);
    EXPECT_FALSE(zip.entryInfoAt(3).isFile);
    EXPECT_EQ(zip.entryInfoAt(1).size, streamed.data.size());
    EXPECT_TRUE(zip.entryInfoAt(7).filePath.isEmpty());
    EXPECT_TRUE(zip.fileData("A/stored.sinv").isEmpty()) << "names are matched with case";
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}

TEST_F(ZipReading, complains_in_its_own_words)
{
    const QByteArray good = ZipWriter().add("x.sinv", "some text").finish();
    const int directory = good.indexOf("PK\x01\x02");
    QByteArray badSignature = good;
    badSignature[directory] = 'Q';
    QByteArray longName = good, longExtra = good, longComment = good;
    longName[directory + 29] = char(0x70);
    longExtra[directory + 31] = char(0x70);
    longComment[directory + 33] = char(0x70);
    QByteArray moreEntries = good;
    moreEntries[good.size() - 12] = 9;
    QByteArray farDirectory = good;
    farDirectory[good.size() - 3] = char(0x70);

    const struct {
        QByteArray archive;
        QString warning;
        int entries;
    } cases[] = {
        {"", "QZip: not a zip file!", 0},
        {ZipWriter().finish(), "QZip: not a zip file!", 0},
        {good.left(good.size() - 1), "QZip: EndOfDirectory not found", 0},
        {farDirectory, "QZip: failed to parse zip file.", 0},
        {badSignature, "QZip: invalid header signature, index may be incomplete", 0},
        {longName, "QZip: Failed to read filename from zip index, index may be incomplete", 0},
        {longExtra, "QZip: Failed to read extra field in zip file, skipping file, index may be incomplete", 0},
        {longComment, "QZip: Failed to read read file comment, index may be incomplete", 0},
        {moreEntries, "QZip: Failed to read complete header, index may be incomplete", 1},
    };
    for (const auto &c : cases) {
        warnings.clear();
        QZipReader zip(write(c.archive));
        EXPECT_EQ(zip.count(), c.entries) << c.warning.toStdString();
        EXPECT_EQ(warnings, QStringList{c.warning});
    }
    EXPECT_NE(QZipReader(m_dir.filePath("absent.zip")).status(), QZipReader::NoError);
}

TEST_F(ZipReading, broken_entries_come_back_empty)
{
    auto encrypted = entry("x", "secret");
    encrypted.flags = 1;
    auto unknownMethod = entry("x", "text");
    unknownMethod.declaredMethod = 12;
    auto notDeflated = entry("x", "this is no deflate stream at all");
    notDeflated.deflated = false;
    notDeflated.declaredMethod = 8;
    auto zeroSize = entry("x", "the declared size is a lie");
    zeroSize.declaredSize = 0;
    auto hugeSize = entry("x", "so is this");
    hugeSize.declaredSize = 0xffffffff;

    EXPECT_EQ(dataOf(ZipWriter().add(encrypted).finish(), "x"), "");
    EXPECT_EQ(dataOf(ZipWriter().add(unknownMethod).finish(), "x"), "");
    EXPECT_EQ(warnings, QStringList({"QZip: Unknown compression method", "QZip: Unknown compression method"}));
    warnings.clear();
    EXPECT_EQ(dataOf(ZipWriter().add(notDeflated).finish(), "x"), "");
    EXPECT_EQ(warnings, QStringList{"QZip: Z_DATA_ERROR: Input data is corrupted"});
    EXPECT_EQ(dataOf(ZipWriter().add(zeroSize).finish(), "x"), zeroSize.data);
    EXPECT_EQ(dataOf(ZipWriter().add(hugeSize).finish(), "x"), hugeSize.data);
}

TEST_F(ZipReading, a_bomb_stops_at_its_bound)
{
    auto bomb = entry("x", QByteArray(80 << 20, '\0'));
    bomb.declaredSize = 100;
    const QString path = write(ZipWriter().add(bomb).finish());
    QZipReader zip(path);
    EXPECT_EQ(zip.fileData("x"), "");
    EXPECT_EQ(zip.bytesInflated(), 16 << 20);
    EXPECT_EQ(zip.fileData("x", 1000), "");
    EXPECT_EQ(zip.bytesInflated(), (16 << 20) + 1000);
    EXPECT_EQ(warnings, QStringList({"QZip: Z_MEM_ERROR: Not enough memory", "QZip: Z_MEM_ERROR: Not enough memory"}));
    EXPECT_EQ(inflationLimit(0), 16 << 20);
    EXPECT_EQ(inflationLimit(qint64(1) << 40), 64 << 20);
    EXPECT_EQ(inflationLimit(20 << 20), 20 << 20);
}

/// The archive with a number put into the directory's entry of that index.
QByteArray withDirectoryNumber(QByteArray archive, int index, int position, quint32 value)
{
    int header = -1;
    for (int i = 0; i <= index; ++i)
        header = archive.indexOf("PK\x01\x02", header + 1);
    for (int i = 0; i < 4; ++i)
        archive[header + position + i] = char(value >> 8 * i);
    return archive;
}

TEST_F(ZipReading, entries_share_no_bytes_and_a_lying_size_costs_no_other_entry)
{
    constexpr int compressedSize = 20, offset = 42;
    auto stored = entry("y", "stored");
    stored.deflated = false;
    const QByteArray good = ZipWriter().add("x", "first").add(stored).add("z", "third").finish();
    const int third = good.lastIndexOf("PK\x03\x04");
    QByteArray longName = good;
    longName[26] = 90;

    const struct {
        const char *lie;
        QByteArray archive;
        QByteArrayList data;
    } cases[] = {
        {"x is long", withDirectoryNumber(good, 0, compressedSize, 0xffffffff), {"first", "stored", "third"}},
        {"x is short", withDirectoryNumber(good, 0, compressedSize, 1), {"first", "stored", "third"}},
        {"y and z are long",
         withDirectoryNumber(withDirectoryNumber(good, 1, compressedSize, 5000), 2, compressedSize, 5000),
         {"first", "stored", "third"}},
        {"y is where x is", withDirectoryNumber(good, 1, offset, 0), {"first", "", "third"}},
        {"x and y are where z is",
         withDirectoryNumber(withDirectoryNumber(good, 0, offset, quint32(third)), 1, offset, quint32(third)),
         {"third", "", ""}},
        {"x begins behind y", longName, {"", "stored", "third"}},
        {"z lies in nowhere", withDirectoryNumber(good, 2, offset, 0xfffffff0), {"first", "stored", ""}},
    };
    for (const auto &c : cases) {
        QZipReader zip(write(c.archive));
        EXPECT_EQ((QByteArrayList{zip.fileData("x"), zip.fileData("y"), zip.fileData("z")}), c.data) << c.lie;
    }
}

TEST_F(ZipReading, as_many_names_as_there_can_be_are_found_at_once_and_of_equal_ones_the_first)
{
    ZipWriter writer;
    auto one = entry("", "text");
    one.deflated = false;
    for (int i = 0; i < 65535; ++i) {
        one.name = QByteArray(100, 'n') + QByteArray::number(i / 2 * 2);
        one.data = QByteArray::number(i);
        writer.add(one);
    }
    QZipReader zip(write(writer.finish()));
    QElapsedTimer timer;
    timer.start();
    int wrong = 0;
    for (int i = 0; i < zip.count(); ++i)
        wrong += zip.fileData(zip.entryInfoAt(i).filePath) != QByteArray::number(i / 2 * 2);
    EXPECT_EQ(zip.count(), 65535);
    EXPECT_EQ(wrong, 0);
    EXPECT_LT(timer.elapsed(), 8000) << "a look at each other name for each takes longer";
}

TEST_F(ZipReading, truncation_at_every_byte_and_any_changed_byte_end_quietly)
{
    const QByteArray good = ZipWriter().add("x.sinv", "some text").add("y.sinv", QByteArray(300, 'y')).finish();
    for (int i = 0; i < good.size(); ++i) {
        dataOf(good.left(i), "x.sinv");
        QByteArray changed = good;
        changed[i] = char(~changed[i]);
        QZipReader zip(write(changed));
        for (int k = 0; k < zip.count(); ++k)
            zip.fileData(zip.entryInfoAt(k).filePath);
    }
}

} // namespace
