#include "dataexport/dataexporter.h"
#include "dataexport/exportfixture.h"
#include "dataexport/exporttargets.h"
#include "store/datastore.h"
#include "support/failingcalls.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "support/logcatcher.h"

#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>

using namespace DataExport;

namespace {

constexpr std::int64_t dayAt = 18'151; // 2019-09-12

/// The names of all that stands in a folder.
QStringList allIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
}

/// A disk that takes its time. Counts the calls, and those that wait for it at once.
struct SlowDisk : FileCalls {
    SlowDisk() { setCurrent(this); }
    ~SlowDisk() override { setCurrent(nullptr); }
    int fsync(int descriptor) override
    {
        ++syncs;
        const int now = ++waiting;
        for (int before = most; now > before && !most.compare_exchange_weak(before, now);) {
        }
        QThread::msleep(2);
        --waiting;
        return FileCalls::fsync(descriptor);
    }
    std::atomic<int> syncs{0}, waiting{0}, most{0};
};

class Exporter : public ::testing::Test {
protected:
    Exporter() { general.outputFile = path("out.txt"); }

    QString path(const QString &name) const { return folder.filePath(name); }
    Record record(int day, int opmode = 0) const
    {
        Record record;
        record.beginTime = recordTimeFromTicks((dayAt + day) * ticksPerDay + 23 * 3600 * ticksPerSecond);
        record.endTime = record.beginTime + Ticks(ticksPerSecond);
        record.beginUtcOffset = 7200;
        record.opmode = opmode;
        return record;
    }
    /// Exports records of that many days, the days by turns; goes away in the middle unless it finishes.
    DataExporter::Result write(int days, int recordsADay = 1, bool finishes = true)
    {
        ExportSetup setup;
        setup.general = general;
        ExportTable table(setup, exportData({}, metadata));
        DataExporter exporter(setup, table, metadata, existing);
        for (int i = 0; i < recordsADay; ++i)
            for (int day = 0; day < days; ++day)
                exporter.addRecord(record(day));
        return finishes ? exporter.finish() : DataExporter::Result();
    }

    QTemporaryDir folder;
    GeneralSettings general;
    ExistingFile existing = ExistingFile::Replaced;
    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "../x", ""});
};

} // namespace

TEST_F(Exporter, NamesFilesByDayAndMode)
{
    const struct {
        const char *file;
        bool date, opmode, local;
        int mode;
        const char *name;
    } table[] = {
        {"a.b/out.x.txt", false, false, false, 0, "a.b/out.x.txt"},
        {"a.b/out.x.txt", true, false, false, 0, "a.b/out.x-20190912.txt"},
        {"a.b/out.x.txt", true, true, true, 0, "a.b/out.x-20190913-ions.txt"},
        {"a.b/out", false, true, false, 0, "a.b/out-ions"},
        {"a.b/.out", false, true, false, 0, "a.b/.out-ions"},
        {"out.txt", false, true, false, 1, "out-..%2Fx.txt"},
        {"out.txt", false, true, false, 2, "out-unknown.txt"},
        {"out.txt", false, true, false, -1, "out-unknown.txt"},
    };
    for (const auto &row : table) {
        general.outputFile = row.file;
        general.addDate = row.date;
        general.addOpmode = row.opmode;
        general.local = row.local;
        ExportNaming naming(general, metadata);
        naming.pathOf(record(1, 0)); // another day before it
        EXPECT_EQ(naming.pathOf(record(0, row.mode)), row.name);
        EXPECT_TRUE(naming.fault().isNull());
    }
    general.addDate = true;
    EXPECT_EQ(ExportNaming(general, metadata).pathOf(Record()), "out-unknown-unknown.txt");
    for (const QString &bad : {QString(), QString("a/"), QString("a%1b").arg(QChar(0))}) {
        general.outputFile = bad;
        EXPECT_FALSE(ExportNaming(general, metadata).fault().isNull()) << qPrintable(bad);
    }
}

TEST_F(Exporter, ManyFilesNeedFewHandles)
{
    general.addDate = true;
    const int days = 300;
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit limited{128, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limited);
    const SlowDisk disk;
    const auto result = write(days, 3);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_LE(disk.syncs, days + 1) << "each file once, and the folder";
    EXPECT_GT(disk.most, 4) << "or ten thousand files keep the window waiting for minutes";
    EXPECT_TRUE(result.isComplete);
    EXPECT_EQ(std::tuple(result.rows, result.lost, result.files), std::tuple(3 * days, 0, days));
    EXPECT_EQ(filesIn(folder.path()).size(), days);
    const QByteArray line = "2019-09-12 23:00:00.000000\t2019-09-12 23:00:01.000000\tions\n";
    EXPECT_EQ(contentOf(path("out-20190912.txt")), "begin time\tend time\topmode\n" + line + line + line);
}

TEST_F(Exporter, UntilItIsFinishedNothingStandsThereAndThenAllDoes)
{
    writeFile(path("out.txt"), "old");
    QFile::setPermissions(path("out.txt"), QFile::ReadOwner | QFile::WriteOwner);
    writeFile(path("out.txt.unfinished"), "of somebody else");
    write(1, 1, false);
    EXPECT_EQ(contentOf(path("out.txt")), "old");
    EXPECT_EQ(allIn(folder.path()).size(), 2);
    EXPECT_TRUE(write(1).isComplete);
    EXPECT_TRUE(contentOf(path("out.txt")).startsWith("begin time"));
    EXPECT_EQ(contentOf(path("out.txt.unfinished")), "of somebody else");
    EXPECT_EQ(allIn(folder.path()).size(), 2);
    EXPECT_FALSE(QFile::permissions(path("out.txt")) & QFile::ReadOther) << "a replaced file keeps its permissions";
    ASSERT_TRUE(QFile::link("out.txt", path("link.txt")));
    general.outputFile = path("link.txt");
    general.separator = ";";
    EXPECT_TRUE(write(1).isComplete);
    EXPECT_TRUE(contentOf(path("out.txt")).startsWith("begin time;")) << "links are followed";
    EXPECT_FALSE(QFile::permissions(path("out.txt")) & QFile::ReadOther);
}

TEST_F(Exporter, CancelRemovesTheFoldersThatWereMade)
{
    general.outputFile = path("new/deep/out.txt");
    write(1, 1, false);
    EXPECT_EQ(allIn(folder.path()), QStringList());
    EXPECT_TRUE(write(1).isComplete);
    EXPECT_EQ(filesIn(path("new/deep")), QStringList{"out.txt"});
}

TEST_F(Exporter, AFullDiskLeavesNothing)
{
    general.addDate = true;
    LogCatcher log;
    DataExporter::Result result;
    {
        const FullDisk full(250'000);
        result = write(2, 5000);
    }
    EXPECT_FALSE(result.isComplete);
    EXPECT_EQ(std::tuple(result.rows, result.lost, result.files), std::tuple(0, 10'000, 0));
    EXPECT_EQ(allIn(folder.path()), QStringList());
    EXPECT_EQ(log.complaints().size(), 1);
}

TEST_F(Exporter, EveryCallThatFailsLeavesTheOldFileOrTheWholeNewOne)
{
    general.addDate = true;
    QSet<QByteArray> failed;
    for (int nth = 1;; ++nth) {
        QFile::remove(path("out-20190912.txt"));
        QFile::remove(path("out-20190913.txt"));
        writeFile(path("out-20190912.txt"), "old");
        LogCatcher log;
        DataExporter::Result result;
        QByteArray call;
        {
            const FailingCalls calls(nth);
            result = write(2, 3);
            call = calls.failed();
        }
        if (call.isNull())
            break;
        failed << call;
        SCOPED_TRACE(call.toStdString() + " " + std::to_string(nth));
        const QByteArray content = contentOf(path("out-20190912.txt"));
        EXPECT_TRUE(content == "old" || content.endsWith("ions\n"));
        EXPECT_FALSE(log.complaints().isEmpty());
        EXPECT_EQ(result.rows + result.lost, 6);
        if (!result.isComplete) {
            EXPECT_FALSE(QFile::exists(path("out-20190913.txt")));
        }
        EXPECT_EQ(QDir(folder.path()).entryList({"*.unfinished"}), QStringList());
        ASSERT_LT(nth, 100);
    }
    EXPECT_GE(failed.size(), 6);
}

TEST_F(Exporter, AFileThatCantBeOpenedCostsItsOwnRowsAndOneMessage)
{
    general.addDate = true;
    ASSERT_TRUE(QDir().mkpath(path("out-20190912.txt")));
    LogCatcher log;
    const auto result = write(2, 3);
    EXPECT_EQ(std::tuple(result.isComplete, result.rows, result.lost, result.files), std::tuple(true, 3, 3, 1));
    EXPECT_EQ(log.upTo(Log::Error), QStringList{"Unable to open file '" + path("out-20190912.txt") + "'"});
    EXPECT_EQ(log.complaints().last(), path("out-20190912.txt") + ": It is a folder");
    EXPECT_EQ(allIn(folder.path()), (QStringList{"out-20190912.txt", "out-20190913.txt"}));
}

TEST_F(Exporter, AFolderThatCantBeMadeIsToldOnce)
{
    writeFile(path("file"));
    general.outputFile = path("file/deep/out.txt");
    general.addDate = true;
    LogCatcher log;
    EXPECT_EQ(write(3, 2).lost, 6);
    EXPECT_EQ(log.complaints(), QStringList{"Failed to create directory '" + path("file/deep") + "'"});
    EXPECT_EQ(allIn(folder.path()), QStringList{"file"});
}

TEST_F(Exporter, AFileThatCameIntoBeingIsKeptWhereNoneMayBeReplaced)
{
    existing = ExistingFile::Kept;
    writeFile(path("out.txt"), "old");
    LogCatcher log;
    EXPECT_EQ(write(1).lost, 1);
    EXPECT_EQ(contentOf(path("out.txt")), "old");
    EXPECT_EQ(log.upTo(Log::Error).size(), 1);
}

TEST_F(Exporter, AFolderThatVanishesEndsInWords)
{
    general.outputFile = path("sub/out.txt");
    ExportSetup setup;
    setup.general = general;
    ExportTable table(setup, exportData({}, metadata));
    DataExporter exporter(setup, table, metadata, existing);
    exporter.addRecord(record(0));
    ASSERT_TRUE(QDir(path("sub")).removeRecursively());
    LogCatcher log;
    EXPECT_FALSE(exporter.finish().isComplete);
    EXPECT_EQ(log.complaints().size(), 1);
}

TEST_F(Exporter, FilesAreTheSameForAnyNumberOfThreads)
{
    general.addDate = true;
    ExportSetup setup;
    setup.general = general;
    const ExportTable table(setup, exportData({}, metadata));
    Datastore store;
    store.setLimitRecords(false);
    for (int i = 0; i < 5000; ++i) {
        const auto made = std::make_shared<Record>(record(0, i % 4 - 1));
        made->beginTime += Ticks(i * 60 * ticksPerSecond);
        store.insertRecord(store.lowerBound(made->beginTime), made);
    }
    const auto filesOf = [&](const QString &name, auto addAll) {
        setup.general.outputFile = path(name + "/out.txt");
        DataExporter exporter(setup, table, metadata, existing);
        addAll(exporter);
        EXPECT_EQ(exporter.finish().rows, 5000);
        QMap<QString, QByteArray> files;
        for (const QString &file : filesIn(path(name)))
            files[file] = contentOf(path(name + '/' + file));
        return files;
    };
    const auto expected = filesOf("plain", [&](DataExporter &exporter) {
        for (const auto &each : store.records())
            exporter.addRecord(*each);
    });
    EXPECT_EQ(expected.size(), 5); // days of their zone
    for (const int jobs : {1, 2, 8, 1000}) {
        int asked = -1;
        EXPECT_EQ(filesOf(QString::number(jobs),
                          [&](DataExporter &exporter) {
                              EXPECT_TRUE(exporter.addRecords(store.records(), jobs, [&](int done) {
                                  EXPECT_GT(done, asked);
                                  EXPECT_LT(QDir("/proc/self/task").count(), 30U);
                                  asked = done;
                                  return true;
                              }));
                          }),
                  expected)
            << jobs;
        EXPECT_EQ(asked, 5000) << "once more behind the last";
    }
    for (const int jobs : {1, 2, 8}) {
        int moments = 0; // at which it was stopped, up to the one behind the last record
        for (bool isEnded = true; isEnded; moments += isEnded) {
            setup.general.outputFile = path("stopped/out.txt");
            DataExporter exporter(setup, table, metadata, existing);
            isEnded = !exporter.addRecords(store.records(), jobs, [left = moments](int) mutable { return left-- > 0; });
        }
        EXPECT_GT(moments, 2) << jobs;
        EXPECT_FALSE(QFile::exists(path("stopped"))) << "nothing is left";
    }
}

TEST_F(Exporter, TargetsAreKnownBeforehandAndDataFilesRefused)
{
    Datastore store;
    for (const int day : {0, 0, 1}) {
        store.insertRecord(store.lowerBound(latestRecordTime), std::make_shared<Record>(record(day)));
        store.insertRecord(store.lowerBound(latestRecordTime), std::make_shared<Record>(record(day, 1)));
    }
    general.addDate = true;
    general.opmodes = QStringList{"ions"};
    ExportSetup setup;
    setup.general = general;
    const QStringList targets =
        exportTargets(general, ExportTable(setup, exportData({}, metadata)), metadata, store.records());
    EXPECT_EQ(targets, (QStringList{path("out-20190912.txt"), path("out-20190913.txt")}));

    EXPECT_TRUE(refusalOf(targets, {path("absent")}).isNull());
    writeFile(path("read"), "data");
    ASSERT_TRUE(QFile::link(path("read"), targets[1]));
    EXPECT_TRUE(refusalOf(targets, {path("read")}).contains("is one of the files to read"));
    EXPECT_EQ(existingOf(targets), QStringList{targets[1]});
    for (const QString name : {"x.Spectra", "var_grid_layouts.yaml"}) {
        writeFile(path(name));
        EXPECT_TRUE(refusalOf({path(name)}, {}).contains("is named as a file of data")) << qPrintable(name);
    }
    EXPECT_TRUE(refusalOf({path("new.spectra")}, {}).isNull());
}
