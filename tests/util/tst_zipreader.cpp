#include "util/zipreader.h"

#include "demo/zipwriter.h"
#include "support/expected.h"
#include "support/processorclock.h"
#include "support/shortmemory.h"

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

TEST_F(ZipReading, ArchivesOfTheCorpusComeToWhatIsExpectedOfThem)
{
    expectCorpus("zip", [](const QString &path) {
        warnings.clear();
        QZipReader zip(path);
        EXPECT_EQ(zip.status(), QZipReader::NoError);
        QString outcome;
        for (int i = 0; i < zip.count(); ++i) {
            const QZipReader::FileInfo entry = zip.entryInfoAt(i);
            const QByteArray data = zip.fileData(entry.filePath);
            outcome +=
                QString("%1 %2 %3, of %4 bytes: %5 '%6'\n")
                    .arg(entry.isDir       ? "folder"
                         : entry.isSymLink ? "link"
                         : entry.isFile    ? "file"
                                           : "nothing",
                         entry.filePath, QString::number(entry.crc, 16), QString::number(entry.size),
                         QString::number(data.size()), QString::fromLatin1(data.left(40).toPercentEncoding(" ")));
        }
        return outcome + warnings.join('\n') + '\n';
    });
}

TEST_F(ZipReading, WhatIsNotThereIsEmpty)
{
    EXPECT_NE(QZipReader(m_dir.filePath("absent.zip")).status(), QZipReader::NoError);
    QZipReader zip(write(ZipWriter().add("a.sinv", "text").finish()));
    EXPECT_TRUE(zip.entryInfoAt(7).filePath.isEmpty());
    EXPECT_TRUE(zip.fileData("A.sinv").isEmpty()) << "names are matched with case";
}

TEST_F(ZipReading, ABombStopsAtItsBound)
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

TEST_F(ZipReading, WhatWasBegunIsGivenBackWhereMemoryRunsOut)
{
    if (!ShortMemory::isPossible)
        GTEST_SKIP() << "the sanitizer has an allocator of its own";
    const QString path = write(ZipWriter().add(entry("x", QByteArray(1000, 'x'))).finish());
    for (const bool isFirst : {true, false}) // which leaves what is kept for ever
        for (int nth = 1, failures = 0; failures == 0; ++nth) {
            const long held = ShortMemory::held;
            try {
                QZipReader zip(path);
                zip.count();
                ShortMemory::letFail(false, nth, 1);
                zip.fileData("x");
            } catch (const std::bad_alloc &) {
            }
            failures = ShortMemory::failures.exchange(0);
            warnings = QStringList();
            ASSERT_TRUE(isFirst || ShortMemory::held <= held) << nth;
        }
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

TEST_F(ZipReading, EntriesShareNoBytesAndALyingSizeCostsNoOtherEntry)
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

TEST_F(ZipReading, AsManyNamesAsThereCanBeAreFoundAtOnceAndOfEqualOnesTheFirst)
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
    const ProcessorClock timer;
    int wrong = 0;
    for (int i = 0; i < zip.count(); ++i)
        wrong += zip.fileData(zip.entryInfoAt(i).filePath) != QByteArray::number(i / 2 * 2);
    EXPECT_EQ(zip.count(), 65535);
    EXPECT_EQ(wrong, 0);
    EXPECT_LT(timer.milliseconds(), 8000) << "a look at each other name for each takes longer";
}

TEST_F(ZipReading, TruncationAtEveryByteAndAnyChangedByteEndQuietly)
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
