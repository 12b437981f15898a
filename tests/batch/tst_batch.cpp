#include "batch/dayfolder.h"
#include "batch/failingruns.h"

#include "batch/messagecollector.h"
#include "batch/outcome.h"
#include "batch/savecommand.h"
#include "batch/summarytext.h"
#include "support/demodata.h"
#include "support/processorclock.h"
#include "util/lockedfile.h"

#include <nlohmann/json.hpp>

#include <QElapsedTimer>
#include <QThread>

#include <csignal>

namespace {

using Json = nlohmann::ordered_json;

/// Whether the process has a handler for that signal.
bool catches(qint64 pid, int signal)
{
    QFile status(QString("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("SigCgt:"))
            return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (signal - 1)) & 1;
    }
    return false;
}

} // namespace

TEST_F(DayFolder, SummaryTellsAsJsonWhatTheFilesHold)
{
    writeDay("in");
    const Ended ended = run({"summary", "{}/in", "--variant", "block", "--json"});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
    Json summary = Json::parse(ended.output.toStdString());
    EXPECT_GE(summary["seconds"].get<double>(), 0.0);
    summary.erase("seconds");
    const auto bytes =
        contentOf("in/20190912-block.records").size() + contentOf("in/20190912-block-ions.spectra").size();
    // Of the header and its rows, 9 + 3 lines stand in the records file and 7 + 2 in the other.
    Json expected = Json::parse(R"({
        "files": 2, "rows": 21, "ignored_rows": 0, "bytes": 0, "records": 3,
        "begin": "2019-09-12 00:30:00.000000+02:00", "end": "2019-09-12 00:34:00.000000+02:00",
        "modes": {"ions": 2, "offset": 1}, "electrometers": 2, "variables": ["temp"],
        "spectra": [{"name": "ions neg", "inverter": "inv", "id": "aa11", "points": 2, "unit": "1/cm^3", "records": 2,
                     "empty": 1}],
        "flags": [{"type": "warning", "message": "Too humid", "records": 2}],
        "messages": [], "messages_omitted": 0})");
    expected["bytes"] = bytes;
    EXPECT_EQ(summary, expected) << summary.dump(1);
    // Objects compare without order; scripts that print them don't.
    EXPECT_EQ(summary.begin().key(), "files");
    EXPECT_EQ(summary["modes"].begin().key(), "ions");
}

TEST_F(DayFolder, OldStyleFilesBecomeDayFiles)
{
    write("in/2019-09-12.sig", ::contentOf(FUZZ_CORPUS "/dayfile/old-plain.sig"));
    write("in/20190912-block.records", recordsHeader()); // another kind beside them
    Json old = Json::parse(run({"summary", "{}/in", "--legacy", "--json"}).output.toStdString());
    EXPECT_EQ(old["files"], 1);
    EXPECT_GT(old["records"].get<int>(), 0);
    EXPECT_EQ(run({"summary", "{}/in", "--legacy", "--variant", "block"}).code, 2);
    EXPECT_EQ(run({"save", "{}/in", "--legacy", "--output", "{}/out"}).code, 2) << "what shall they be called?";
    const QStringList save{"save", "{}/in", "--legacy", "--output-variant", "old", "--output"};
    Ended saved = run(save + QStringList{"{}/out"});
    EXPECT_EQ(saved.code, 3);
    EXPECT_TRUE(saved.errors.contains("warning: 1 spectra were written to no file")) << saved.errors.constData();
    EXPECT_EQ(names("out"), (QStringList{"20190912-old-ions.spectra", "20190912-old.records"}));
    saved = run(save + QStringList{"{}/assumed", "--assume-opmode", " fog\t"});
    EXPECT_EQ(saved.code, 0) << saved.errors.constData();
    EXPECT_EQ(names("assumed"),
              (QStringList{"20190912-old-fog.spectra", "20190912-old-ions.spectra", "20190912-old.records"}));
    const Json fresh = Json::parse(run({"summary", "{}/out", "--variant", "old", "--json"}).output.toStdString());
    for (const char *key : {"records", "begin", "end", "electrometers", "variables"})
        EXPECT_EQ(fresh[key], old[key]) << key;
}

TEST_F(DayFolder, SummaryNamesComplaintsAndIgnoredRows)
{
    write("in/20190912.records", "a line of no block\n" + recordsHeader() + "2019-09-12 12:00:00\tshort\n");
    const Ended ended = run({"summary", "{}/in", "--json"});
    EXPECT_EQ(ended.code, 1); // no record
    const Json summary = Json::parse(ended.output.toStdString());
    EXPECT_EQ(summary["ignored_rows"], 1);
    EXPECT_EQ(summary["begin"], "");
    ASSERT_EQ(summary["messages"].size(), 1u);
    EXPECT_EQ(summary["messages"][0]["level"], "warning");
    EXPECT_EQ(summary["messages"][0]["area"], "filereader");
    EXPECT_NE(summary["messages"][0]["text"].get<std::string>().find("20190912.records, row 11: 2 fields found"),
              std::string::npos)
        << summary["messages"][0]["text"];
}

TEST_F(DayFolder, AQuickSummaryNeedsNoRows)
{
    writeDay("in");
    const Json whole = Json::parse(run({"summary", "{}/in", "--variant", "block", "--json"}).output.toStdString());
    write("in/20190912-block.records", contentOf("in/20190912-block.records") + "a row that is none\n");
    const Ended ended = run({"summary", "{}/in", "--variant", "block", "--quick", "--json"});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
    const Json quick = Json::parse(ended.output.toStdString());
    for (const char *key : {"files", "electrometers", "variables", "messages"})
        EXPECT_EQ(quick[key], whole[key]) << key;
    EXPECT_EQ(quick["days"], 1);
    EXPECT_EQ(quick["first_day"], "2019-09-12");
    EXPECT_EQ(quick["modes"], Json({"ions", "offset"}));
    EXPECT_EQ(run({"summary", "{}/in", "--quick", "--variant", "none"}).code, 1);
    write("in/20190913-block.records", "no header");
    EXPECT_EQ(run({"summary", "{}/in", "--quick", "--variant", "block"}).code, 3);
}

TEST(SummaryJson, ManyNamesCostNoMoreEachThanFew)
{
    Batch::Summary summary;
    for (int i = 0; i < 200000; ++i)
        summary.modes.append({QString("mode %1").arg(i), i});
    const Batch::MessageCollector messages(false);
    const ProcessorClock clock;
    const QByteArray json = Batch::summaryJson(summary, messages);
    EXPECT_LT(clock.milliseconds(), 10000); // half a minute and more where each name is looked for among all
    EXPECT_TRUE(json.contains("\"mode 199999\": 199999\n  },"));
}

TEST(MessageCollector, KeepsTheFirstThousandWarnings)
{
    const Log::Logger logger("area");
    const Batch::MessageCollector messages(false);
    for (int i = 0; i < 1003; ++i)
        logger.log(i % 2 ? Log::Warning : Log::Error, QString::number(i));
    logger.log(Log::Notice, "no complaint");
    ASSERT_EQ(messages.entries().size(), 1000);
    EXPECT_EQ(messages.entries().last().message, "999");
    EXPECT_EQ(messages.omitted(), 3);
}

TEST(MessageCollector, RepeatsAreToldBeforeTheNextLine)
{
    const Log::Logger logger("area");
    testing::internal::CaptureStderr();
    {
        const Batch::MessageCollector messages(true);
        for (const char *text : {"a", "a", "b", "c", "c", "c"})
            logger.log(Log::Warning, text);
        Batch::tell("the end");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "warning: a\nwarning: a (1 times more)\nwarning: b\n"
                                                      "warning: c\nwarning: c (2 times more)\nthe end\n");
}

TEST(ExitStatus, TheGravestRules)
{
    struct Case {
        Batch::Outcome outcome; // interrupted, refused, nothing found, output lost, complaints
        int status;
    };
    for (const Case &c : {Case{{}, 0}, Case{{false, false, false, false, true}, 3},
                          Case{{false, false, false, true, true}, 1}, Case{{false, false, true, false, true}, 1},
                          Case{{false, true, false, false, false}, 2}, Case{{true, false, true, true, true}, 130}})
        EXPECT_EQ(c.outcome.exitStatus(), c.status);
}

TEST_F(DayFolder, EveryWayOfEndingHasItsStatus)
{
    writeDay("in");
    writeDay("in", "10s");
    writeDay("out");
    write("odd/20190912-block.records",
          "ignored\n" + recordsHeader() +
              "2019-09-12 12:00:00\t2019-09-12 12:01:00\tions\t1\t2\t1\t1\t1\t1\t1\t1\t1\t\n");
    write("file", "");
    QDir().mkpath(path("folder/20190912-block.records"));
    write("other/20190912-block.records", contentOf("in/20190912-block.records").replace("\t20.5\t\n", "\t20.25\t\n"));
    expectEndings("save.txt");
    EXPECT_EQ(contentOf("new/20190912-block.records").count("\n2019-"), 3);
}

TEST_F(DayFolder, AFileThatIsReadIsNeverWrittenUnderAnyName)
{
    writeDay("in");
    QDir().mkpath(path("out"));
    ASSERT_TRUE(QFile::link(path("in/20190912-block-ions.spectra"), path("out/20190911-block-ions.spectra")));
    const QByteArray before = contentOf("in/20190912-block-ions.spectra");
    // The record begins on the day before by its own local time, which no file name tells.
    write("in/20190912-block.records",
          recordsHeader() + "2019-09-11 23:00:00.000000-05:00\t2019-09-11 23:01:00.000000-05:00\tions\t1\t2\t1"
                            "\t1\t1\t1\t1\t1\t1\t\n");
    const Ended ended = run({"save", "{}/in", "--variant", "block", "--output", "{}/out", "--append"});
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(ended.errors.contains("one of the files to read")) << ended.errors.constData();
    EXPECT_EQ(names("out"), QStringList{"20190911-block-ions.spectra"});
    EXPECT_EQ(contentOf("in/20190912-block-ions.spectra"), before);
}

TEST_F(DayFolder, WhatIsSavedIsWhatWasReadToTheByte)
{
    writeDemoData(path("demo"), 900);
    const QStringList more{"--variant", "block", "--output-variant", "block", "--inversion-vars", "--output"};
    EXPECT_EQ(run(QStringList{"save", "{}/demo"} + more + QStringList{"{}/a"}).code, 0);
    EXPECT_EQ(run(QStringList{"save", "{}/a"} + more + QStringList{"{}/b"}).code, 0);
    ASSERT_EQ(names("a"), names("demo"));
    for (const QString &name : names("a")) {
        QByteArray read = contentOf("demo/" + name);
        // The one thing that files can't keep: that the empty fields of a spectrum mean a failure.
        if (name.endsWith(".spectra"))
            read.replace("\t\t", "\tnan\t").replace("\t\t", "\tnan\t").replace("\t\n", "\tnan\n");
        EXPECT_TRUE(contentOf("a/" + name) == read) << qPrintable(name);
        EXPECT_TRUE(contentOf("b/" + name) == contentOf("a/" + name)) << qPrintable(name);
    }
    EXPECT_EQ(
        run({"save", "{}/a", "--variant", "block", "--output", "{}/c", "--no-records", "--output-variant", "x"}).code,
        0);
    EXPECT_EQ(names("c"), (QStringList{"20190514-x-ions.spectra", "20190514-x-particles.spectra"}));
}

TEST_F(DayFolder, AnOutputThatCanNotBeWrittenIsTold)
{
    writeDay("in");
    const Ended full = runInShell("\"$@\" > /dev/full", {"summary", "{}/in", "--variant", "block"});
    EXPECT_EQ(full.code, 1);
    EXPECT_TRUE(full.errors.contains("could not be written")) << full.errors.constData();
    const Ended limited =
        runInShell("ulimit -f 1; exec \"$@\"", {"save", "{}/in", "--variant", "block", "--output", "{}/out"});
    EXPECT_EQ(limited.code, 1);
    EXPECT_TRUE(limited.errors.contains("Data was lost!")) << limited.errors.constData();
}

TEST_F(DayFolder, AFileCallThatFailsInASaveIsToldWithItsStatus)
{
    writeDay("in");
    Batch::SaveOptions options;
    options.read.folder = path("in");
    options.read.variant = options.outputVariant = "block";
    options.outputFolder = path("whole");
    ASSERT_EQ(Batch::runSave(options), 0);
    options.outputFolder = path("out");
    const auto sortedLines = [this](const QString &name) {
        QByteArrayList lines = contentOf(name).split('\n');
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    enum { New, Append, Overwrite };
    for (int way : {New, Append, Overwrite}) {
        options.append = way == Append;
        options.overwrite = way == Overwrite;
        QMap<QString, QByteArray> before;
        for (const QString &name : way == New ? QStringList() : names("whole")) {
            const QByteArray whole = contentOf("whole/" + name);
            before[name] = way == Append ? whole.left(whole.lastIndexOf('\n', -2) + 1) : "# Quilvane of old\n";
        }
        const auto run = [&] {
            QDir(path("out")).removeRecursively();
            for (auto file = before.cbegin(); file != before.cend(); ++file)
                write("out/" + file.key(), *file);
            return Batch::runSave(options);
        };
        const auto check = [&](int status, const QByteArray &words) {
            const bool stands = status == 0 || words.contains("The files in \"");
            EXPECT_EQ(words.contains("5 rows written"), stands && way != Append);
            if (way == Append && stands) {
                EXPECT_TRUE(words.contains("\n3 rows were passed over, since the files hold them already; 0 of them"));
            }
            for (const QString &name : names("out")) {
                const QByteArray content = contentOf("out/" + name), whole = contentOf("whole/" + name);
                EXPECT_EQ(content.count("# Quilvane"), 1) << qPrintable(name);
                EXPECT_TRUE(content == whole || (!stands && content.startsWith(before.value(name))))
                    << qPrintable(name);
                EXPECT_TRUE(content == whole || way != Overwrite || content == before.value(name)) << qPrintable(name);
            }
            EXPECT_TRUE(QDir(path()).entryList({"*unfinished*"}).isEmpty());
            Batch::SaveOptions again = options;
            again.append = way != Overwrite;
            EXPECT_EQ(Batch::runSave(again), 0);
            for (const QString &name : names("whole")) // whose rows may stand in another order now
                EXPECT_EQ(sortedLines("out/" + name), sortedLines("whole/" + name)) << qPrintable(name);
        };
        QStringList ends{"close 0", "close 1", "fsync 1", "lock 1", "open 1", "read 1", "unlink 0", "write 1"};
        if (way == Overwrite)
            ends << "fchmod 1"
                 << "rename 1";
        ends.sort();
        EXPECT_EQ(endsOfFailingRuns(run, check), ends);
    }
}

TEST_F(DayFolder, AFileThatCameIntoBeingSinceTheLookAtTheTargetsWasContinued)
{
    struct Other : FileCalls {
        Other() { setCurrent(this); }
        ~Other() override { setCurrent(nullptr); }
        int open(const char *path, int flags, mode_t mode) override
        {
            const QString name = QFile::decodeName(path);
            if (name.endsWith("out/20190912-block.records") && !QFile::exists(name))
                writeFile(name, "by another\n");
            return FileCalls::open(path, flags, mode);
        }
    };
    writeDay("in");
    Batch::SaveOptions options;
    options.read.folder = path("in");
    options.read.variant = options.outputVariant = "block";
    options.outputFolder = path("out");
    testing::internal::CaptureStderr();
    {
        const Other other;
        EXPECT_EQ(Batch::runSave(options), 1);
    }
    const QByteArray words = QByteArray::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(words.count("out/20190912-block.records\" exists. Use --append"), 1) << words.constData();
    EXPECT_TRUE(words.contains("\n2 rows written") && words.contains("\n3 rows could not be written"))
        << words.constData();
    EXPECT_EQ(contentOf("out/20190912-block.records"), "by another\n");
}

TEST_F(DayFolder, AFileThatIsBeingWrittenIsNotReplaced)
{
    writeDay("in");
    writeDay("out");
    const QByteArray before = contentOf("out/20190912-block.records");
    LockedFile writer(path("out/20190912-block.records"));
    ASSERT_TRUE(writer.open(QIODevice::ReadWrite) && writer.lock(LockedFile::WriteLock, false));
    const QStringList arguments{"save", "{}/in", "--variant", "block", "--output", "{}/out", "--overwrite"};
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.code, 1);
    EXPECT_TRUE(ended.errors.contains("another program is writing it")) << ended.errors.constData();
    EXPECT_EQ(contentOf("out/20190912-block.records"), before);
    writer.close();
    const auto own = QFile::ReadOwner | QFile::WriteOwner;
    QFile::setPermissions(path("out/20190912-block.records"), own);
    EXPECT_EQ(run(arguments).code, 0);
    EXPECT_NE(contentOf("out/20190912-block.records"), before);
    EXPECT_FALSE(QFile::permissions(path("out/20190912-block.records")) & ~(own | QFile::ReadUser | QFile::WriteUser));
}

TEST_F(DayFolder, WordsThatNobodyReadsDoNotEndTheWork)
{
    writeDay("in");
    const QString line = "{ sleep 0.2; \"$@\"; echo $? >{}/status; } 2>&1 | true";
    runInShell(line, {"save", "{}/in", "--variant", "block", "--output", "{}/out"});
    EXPECT_EQ(contentOf("status"), "0\n");
    EXPECT_EQ(names("out"), names("in"));
}

TEST_F(DayFolder, WhatIsCutOffOfAContinuedFileIsToldAndKept)
{
    writeDay("in");
    const QStringList arguments{"save", "{}/in", "--variant", "block", "--output", "{}/out", "--append"};
    EXPECT_EQ(run(arguments).code, 0);
    const QByteArray whole = contentOf("out/20190912-block.records");
    write("out/20190912-block.records", whole.chopped(5));
    write("out/.morvantide-batch.tmp", "");
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.code, 3);
    EXPECT_TRUE(ended.errors.contains("moved to '20190912-block.records.torn'")) << ended.errors.constData();
    EXPECT_EQ(contentOf("out/20190912-block.records"), whole);
    EXPECT_EQ(QDir(path("out")).entryList(QDir::Files | QDir::Hidden).size(), 3);
    EXPECT_EQ(run({"save", "{}/out", "--variant", "block", "--output", "{}/again"}).code, 0)
        << "read with the day files";
    EXPECT_EQ(names("again").size(), 2);
}

TEST_F(DayFolder, ACommandThatRunsOutOfMemoryIsTold)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Batch::runCommand([]() -> int { throw std::bad_alloc(); }), Batch::ExitStatus::NothingDone);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Not enough memory\n");
}

TEST_F(DayFolder, NamesOfFoldersAreTakenAsBytesUnderThePlainLocale)
{
    writeDay("in");
    const Ended ended =
        runInShell("cd \"$2\" && mv in \"$(printf 'J\\303\\244rvselja')\" && exec env LC_ALL=C \"$1\" summary "
                   "\"$(printf 'J\\303\\244rvselja')\" --variant block",
                   {"{}"});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
}

TEST_F(DayFolder, CtrlCEndsAReadBehindTheFileAtHand)
{
    QByteArray rows = recordsHeader();
    for (int i = 0; i < 40000; ++i)
        rows += "2019-09-12 12:00:00\t2019-09-12 12:01:00\tions\t1\t2\t1\t1\t1\t1\t1\t1\t1\t\n";
    write("in/20000101-block.records", rows);
    for (int year = 2001; year < 2400; ++year)
        ASSERT_TRUE(QFile::link(path("in/20000101-block.records"), path(QString("in/%10101-block.records").arg(year))));

    QProcess process;
    process.start(QStringLiteral(BATCH_PROGRAM),
                  {"save", path("in"), "--variant", "block", "--output", path("out"), "--output-variant", "copy"});
    ASSERT_TRUE(process.waitForStarted());
    QElapsedTimer clock;
    clock.start();
    while (!catches(process.processId(), SIGINT) && clock.elapsed() < 60000)
        QThread::msleep(1);
    ASSERT_EQ(kill(pid_t(process.processId()), SIGINT), 0);
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 130);
    EXPECT_TRUE(process.readAllStandardError().contains("nothing was written"));
    EXPECT_FALSE(QFileInfo::exists(path("out")));
}
