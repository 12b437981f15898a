#include "datafiles/reading/datafinder.h"
#include "datafiles/reading/memoryestimate.h"
#include "support/files.h"

#include <QDateTime>
#include <QTemporaryDir>

namespace {

class Folder : public testing::Test {
protected:
    void touch(const QStringList &names)
    {
        for (const QString &name : names)
            writeFile(folder.filePath(name));
    }
    QStringList find(QVariantMap choice)
    {
        choice["folderName"] = folder.path();
        QStringList files = findDataFiles(choice);
        files.sort();
        return files;
    }
    QTemporaryDir folder;
};

TEST_F(Folder, FilesByVariant)
{
    touch({"2019-09-12.records", "20190912.records", "2019-09-12-10s.records", "20190912-10s-foo.spectra",
           "20190912-block.flags", "20190912-block.rawdata", "20190912-BLOCK.records", "2019-09-12.sig",
           "2019-09-12.log", "2019-09-12.ions.nds", "x20190912.records", "20190912.records~", "20190912.records.torn",
           "20190912-block-ions.spectra.torn", "2019-09-12.ions.nds.torn"});
    const struct {
        QVariantMap choice;
        QStringList files;
    } cases[] = {
        {{}, {"2019-09-12.records", "20190912-10s-foo.spectra", "20190912.records"}},
        {{{"variant", "10s"}}, {"2019-09-12-10s.records", "20190912-10s-foo.spectra"}},
        {{{"variant", "block"}}, {"20190912-block.flags"}},
        {{{"variant", "1?0s"}}, {"2019-09-12-10s.records", "20190912-10s-foo.spectra"}},
        {{{"variant", "("}}, {}},
        {{{"variant", ".*n"}}, {}},
        {{{"variant", "10s"}, {"legacyFiles", true}}, {"2019-09-12.ions.nds", "2019-09-12.log", "2019-09-12.sig"}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(find(c.choice), c.files) << c.choice.value("variant").toString().toStdString();
}

TEST_F(Folder, TheSpanComparesTheDatesOfTheNames)
{
    touch({"20190911.records", "20190912.records", "20190913.records", "20191399.records"});
    QVariantMap choice{{"beginTime", QDateTime(QDate(2019, 9, 12), QTime(23, 0))},
                       {"endTime", QDateTime(QDate(2019, 9, 12), QTime(1, 0))}};
    EXPECT_EQ(find(choice).size(), 4);
    choice["limitBegin"] = true;
    EXPECT_EQ(find(choice), QStringList({"20190912.records", "20190913.records"}));
    choice["limitEnd"] = true;
    EXPECT_EQ(find(choice), QStringList({"20190912.records"}));
    choice["limitBegin"] = false;
    EXPECT_EQ(find(choice), QStringList({"20190911.records", "20190912.records", "20191399.records"}));
}

TEST_F(Folder, WindowSetup)
{
    const QString standard = "default.windowsetup";
    QDir(folder.path()).mkdir("data");
    const QDir data(folder.filePath("data"));
    const struct {
        QStringList added; // to what is there
        QString found;
    } steps[] = {
        {{"data/x.WINDOWSETUP"}, "data/" + standard},   {{"parent.windowsetup"}, "parent.windowsetup"},
        {{"data/b.windowsetup"}, "data/b.windowsetup"}, {{"data/c.windowsetup"}, "parent.windowsetup"},
        {{"other.windowsetup"}, "data/" + standard},    {{"data/default.windowsetup"}, "data/" + standard},
    };
    for (const auto &step : steps) {
        touch(step.added);
        EXPECT_EQ(findWindowSetup(data), folder.filePath(step.found)) << step.added.join(' ').toStdString();
    }
    ASSERT_TRUE(QFile::remove(data.filePath("c.windowsetup")));
    EXPECT_EQ(findWindowSetup(data), data.filePath("b.windowsetup"));
    QStringList all;
    for (const char *name : {"data/b", "data/default", "other", "parent"})
        all << folder.filePath(name + QString(".windowsetup"));
    EXPECT_EQ(windowSetupsFor(data), all);
}

TEST_F(Folder, WhatItHoldsWhenNothingMatched)
{
    EXPECT_TRUE(nothingMatchedText(folder.path()).endsWith("holds: no day files"));
    touch({"20190912-10s.records", "20190912-10s-a-b.spectra", "20190912-block-ions.spectra", "2019-09-12.records",
           "2019-09-12-ions.spectra", "2019-09-12.sig", "2019-09-12.log", "notes.txt", "20190912-x.records.torn"});
    const FolderContents contents = folderContents(folder.path());
    EXPECT_EQ(contents.variants, QStringList({"10s", "block"}));
    EXPECT_EQ(contents.unmarkedFiles, 2);
    EXPECT_EQ(contents.legacyFiles, 2);
    EXPECT_TRUE(nothingMatchedText(folder.path()).contains("\"10s\", \"block\""));
    EXPECT_TRUE(nothingMatchedText(folder.path(), '\n').contains("choice.\nThe folder '" + folder.path() + "'\nholds: "))
        << "a line for each statement, in a log that wraps none";
}

TEST(MemoryWarning, AboveHalfOfWhatIsFree)
{
    EXPECT_GT(availableMemory(), 1 << 20);
    EXPECT_TRUE(memoryWarning(100 << 20, qint64(1) << 30).isEmpty());
    EXPECT_TRUE(memoryWarning(100 << 20, 0).isEmpty());
    EXPECT_TRUE(memoryWarning(qint64(1) << 30, qint64(2) << 30).contains("1331 MB of the 2048 MB"));
}

} // namespace
