#include "batch/dayfolder.h"
#include "batch/failingruns.h"
#include "batch/reinvertcommand.h"

#include "demo/legacyfiles.h"
#include "support/demodata.h"

#include <QElapsedTimer>
#include <QThread>

#include <csignal>

namespace {

class Reinvert : public DayFolder {
protected:
    Reinvert() { writeDemoData(path("demo"), 600); }

    static QStringList arguments(const QString &inverters, const QString &output, const QStringList &more = {})
    {
        return QStringList{"reinvert", "{}/demo", "--variant", "block", "--inverters", inverters, "--output", output} +
               more;
    }

    /// An inverter of the demonstration that goes by another name, in "other.inverter".
    void writeOther()
    {
        write("other.inverter",
              contentOf("inverters/particles-neg.inverter").replace("inverter_name: demo", "inverter_name: other"));
    }

    /// Data rows of a file.
    int rows(const QString &name) const
    {
        int count = 0;
        for (const QByteArray &line : contentOf(name).split('\n'))
            count += line.startsWith("2019-");
        return count;
    }
    /// Nothing that a run made to work in is left.
    bool isTidy() const { return QDir(path()).entryList({"*unfinished*"}, QDir::AllEntries | QDir::Hidden).isEmpty(); }
};

const QString particles = "20190514-%1-particles.spectra";
const QString ions = "20190514-%1-ions.spectra";

} // namespace

TEST_F(Reinvert, ItsOwnInvertersGiveTheDayFilesBackToTheByte)
{
    for (const char *jobs : {"1", "2", "8"}) {
        const QString out = "out" + QLatin1String(jobs);
        const Ended ended = run(arguments("{}/inverters/demo.invmap", "{}/" + out,
                                          {"--output-variant", "block", "--inversion-vars", "--jobs", jobs}));
        EXPECT_EQ(ended.code, 0) << ended.errors.constData();
        EXPECT_EQ(names(out), (QStringList{ions.arg("block"), particles.arg("block")}));
        for (const QString &name : names(out))
            EXPECT_TRUE(contentOf(out + "/" + name) == contentOf("demo/" + name)) << qPrintable(name);
    }
    EXPECT_TRUE(isTidy());
}

TEST_F(Reinvert, EveryKindOfPathHoldsTheSameInverters)
{
    const QStringList common{"--output-variant", "block", "--inversion-vars"};
    // The folder holds each inverter three times over; so does the list of two paths.
    for (const char *inverters : {"{}/inverters", "{}/inverters/demo.sinp", "{}/inverters/demo.sinp/particles"}) {
        const QString out = QString("out%1").arg(QString(inverters).size());
        const Ended ended = run(arguments(inverters, "{}/" + out, common));
        EXPECT_EQ(ended.code, 0) << inverters << ended.errors.constData();
        EXPECT_EQ(rows(out + "/" + particles.arg("block")), rows("demo/" + particles.arg("block"))) << inverters;
        // Columns stand in the order in which a folder lists its files.
        EXPECT_EQ(contentOf(out + "/" + particles.arg("block")).size(),
                  contentOf("demo/" + particles.arg("block")).size())
            << inverters;
    }
}

TEST_F(Reinvert, NewSpectraJoinThoseThatWereReadUnlessAloneAreWanted)
{
    writeOther();
    EXPECT_EQ(run(arguments("{}/other.inverter", "{}/all", {"--records"})).code, 0);
    EXPECT_EQ(run(arguments("{}/other.inverter", "{}/new", {"--only-new"})).code, 0);
    EXPECT_EQ(names("all"),
              (QStringList{ions.arg("block-reinv"), particles.arg("block-reinv"), "20190514-block-reinv.records"}));
    EXPECT_EQ(names("new"), QStringList{particles.arg("block-reinv")});
    EXPECT_EQ(contentOf("all/" + particles.arg("block-reinv")).count("inverter_name: demo"), 2);
    EXPECT_EQ(contentOf("all/" + particles.arg("block-reinv")).count("inverter_name: other"), 1);
    EXPECT_EQ(contentOf("new/" + particles.arg("block-reinv")).count("inverter_name: demo"), 0);
    // Other by its name alone: the new columns repeat those of the old, which are the first of each row.
    const QByteArrayList all = contentOf("all/" + particles.arg("block-reinv")).split('\n');
    for (const QByteArray &line : all) {
        const QByteArrayList fields = line.split('\t');
        if (line.startsWith("2019-") && !line.contains("nan")) { // empty fields of a failure are read as that
            EXPECT_EQ(fields.mid(3, 80), fields.mid(163, 80));
        }
    }
    EXPECT_EQ(rows("all/20190514-block-reinv.records"), rows("demo/20190514-block.records"));
}

TEST_F(Reinvert, SpectraOfAnUnknownModeAreMissedUnlessItIsAssumed)
{
    Demo::Campaign::Settings settings;
    settings.interval = 3600;
    QDir().mkpath(path("old"));
    ASSERT_TRUE(Demo::writeLegacyFiles(Demo::Campaign(settings), path("old")));
    for (const QString &name : names("old"))
        write("old/" + name, contentOf("old/" + name).replace("modes: ions, ", "modes: "));
    const QStringList common{
        "reinvert",         "{}/old", "--legacy", "--inverters", "{}/inverters/particles-neg.inverter",
        "--output-variant", "x",      "--output"};
    const Ended missed = run(common + QStringList{"{}/missed"}),
                fresh = run(common + QStringList{"{}/new", "--only-new"}),
                assumed = run(common + QStringList{"{}/assumed", "--assume-opmode", "ions"});
    EXPECT_EQ(missed.code, 3);
    EXPECT_TRUE(missed.errors.contains("spectra were written to no file")) << missed.errors.constData();
    EXPECT_EQ(fresh.code, 0) << fresh.errors.constData();
    EXPECT_EQ(assumed.code, 0) << assumed.errors.constData();
    EXPECT_EQ(names("missed"), QStringList{particles.arg("x")});
    EXPECT_EQ(names("assumed"), (QStringList{ions.arg("x"), particles.arg("x")}));
    EXPECT_EQ(rows("assumed/" + ions.arg("x")), rows("assumed/" + particles.arg("x")));
}

TEST_F(Reinvert, EveryWayOfEndingHasItsStatus)
{
    writeOther();
    write("bad.inverter", "format: 7\nposttransform:\n");
    write("strange.inverter", contentOf("other.inverter").replace("opmode: particles", "opmode: fog"));
    write("unit.inverter", contentOf("other.inverter").replace("yunit: 1/cm^3", "yunit: 1/cm^^3"));
    write("file", "not a folder");
    EXPECT_EQ(run(arguments("{}/inverters/particles-neg.inverter", "{}/out")).code, 0);
    const QByteArray before = contentOf("out/" + particles.arg("block-reinv"));
    expectEndings("reinvert.txt"); // one of them appends the rows of another inverter
    const Ended again = run(arguments("{}/other.inverter", "{}/out", {"--append"}));
    EXPECT_EQ(again.code, 0);
    EXPECT_TRUE(again.errors.contains(" were passed over, since the files hold them already; 0 of them differ"));
    EXPECT_EQ(rows("out/" + particles.arg("block-reinv")), 2 * before.count("\n2019-"));
    EXPECT_TRUE(contentOf("out/" + particles.arg("block-reinv")).startsWith(before));
    EXPECT_FALSE(QDir(path("none")).exists());
    for (const char *flawed : {"bad.inverter", "unit.inverter", "missing", "file"})
        EXPECT_EQ(rows(QString("out-%1/").arg(flawed) + particles.arg("block-reinv")), before.count("\n2019-"));
    EXPECT_TRUE(isTidy());
}

TEST_F(Reinvert, AnInverterThatDoesNotFitIsToldOnceWithACount)
{
    write("other.inverter",
          contentOf("inverters/particles-neg.inverter").replace("electrometer_group: neg\n", "")); // sees all currents
    const Ended ended = run(arguments("{}/other.inverter", "{}/out"));
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.errors.count("Instrument matrix does not match signal vector size"), 2) << ended.errors.constData();
    EXPECT_TRUE(ended.errors.contains(" times more)")) << ended.errors.constData();
}

TEST_F(Reinvert, OfWhichAFileCallFailsLeavesTheFolderAsItWas)
{
    QDir(path("demo")).removeRecursively();
    writeDemoData(path("demo"), 14400);
    Batch::ReinvertOptions options;
    options.inverters = QStringList{path("inverters/demo.sinp")};
    options.save.read.folder = path("demo");
    options.save.read.variant = options.save.outputVariant = "block";
    options.save.outputFolder = path("out");
    options.save.inversionVars = true;
    QStringList ends{"close 0", "close 1",        "fsync 1",  "lock 1", "open 1",
                     "read 1",  "renameToFree 1", "unlink 0", "write 1"};
    for (bool append : {false, true}) {
        options.save.append = append;
        options.save.records = !append;
        if (append) { // one file: two can't take each other's places back
            options.inverters[0] += "/ions";
            options.onlyNew = true;
            ends << "fchmod 1"
                 << "rename 1";
            ends.sort();
        }
        const QString one = "out/" + ions.arg("block");
        const QByteArray whole = contentOf("demo/" + ions.arg("block"));
        const auto run = [&] {
            QDir(path("out")).removeRecursively();
            if (append) // all but the last row
                write(one, whole.left(whole.lastIndexOf('\n', -2) + 1));
            return Batch::runReinvert(options);
        };
        const auto check = [&](int status, const QByteArray &words) {
            const bool stands = status == 0 || words.contains("The files in \"");
            EXPECT_EQ(names("out").size(), append ? 1 : stands ? 3 : 0);
            const int all = rows("demo/" + ions.arg("block"));
            EXPECT_EQ(rows(one), stands ? all : append ? all - 1 : 0);
            EXPECT_TRUE(!append || !stands || contentOf(one) == whole);
            EXPECT_EQ(words.contains("\n0 rows written") || !words.contains("rows written"), !stands);
            EXPECT_TRUE(isTidy());
        };
        EXPECT_EQ(endsOfFailingRuns(run, check), ends);
    }
}

TEST_F(Reinvert, WhoseRowsAreLostCanBeDoneAgain)
{
    const Ended full = runInShell("ulimit -f 60; exec \"$@\"", arguments(path("inverters"), path("out")));
    EXPECT_EQ(full.code, 1);
    EXPECT_TRUE(full.errors.contains("\n0 rows written")) << full.errors.constData();
    EXPECT_TRUE(full.errors.contains("rows could not be written")) << full.errors.constData();
    EXPECT_TRUE(names("out").isEmpty());
    EXPECT_TRUE(isTidy());
    EXPECT_EQ(run(arguments("{}/inverters", "{}/out")).code, 0);
}

TEST_F(Reinvert, AFolderThatCanNotBeWrittenIsFoundBeforeTheInversion)
{
    ASSERT_TRUE(QFile::link(path("none/none"), path("link")));
    for (const char *folder : {"{}/link", "/proc/none/deeper"}) {
        const Ended ended = run(arguments("{}/inverters", folder));
        EXPECT_EQ(ended.code, 1) << folder;
        EXPECT_TRUE(ended.errors.startsWith("The folder \"")) << ended.errors.constData();
        EXPECT_EQ(ended.errors.count('\n'), 1) << ended.errors.constData();
    }
}

TEST_F(Reinvert, AKilledRunLeavesNothingHalfDoneAndCtrlCWholeDays)
{
    QDir(path("demo")).removeRecursively();
    writeDemoData(path("demo"), 30, 4);
    for (int signal : {SIGKILL, SIGINT}) {
        QStringList all = arguments("{}/inverters/demo.sinp", "{}/out", {"--records"});
        all.replaceInStrings("{}", path());
        QProcess process;
        process.start(QStringLiteral(BATCH_PROGRAM), all);
        ASSERT_TRUE(process.waitForStarted());
        const auto working = [&] { return QDir(path()).entryList({"out.unfinished*"}, QDir::Dirs); };
        QElapsedTimer timer;
        timer.start();
        while (working().isEmpty() && timer.elapsed() < 60000 && process.state() == QProcess::Running)
            QThread::msleep(1);
        ASSERT_FALSE(working().isEmpty());
        EXPECT_TRUE(names("out").isEmpty());
        ::kill(pid_t(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(60000));
        if (signal == SIGKILL) {
            EXPECT_FALSE(QDir(path("out")).exists());
            QDir(path(working().first())).removeRecursively();
            continue;
        }
        EXPECT_EQ(process.exitCode(), 130);
        EXPECT_TRUE(isTidy());
        for (const QString &name : names("out")) {
            if (name.endsWith(".records")) {
                EXPECT_EQ(rows("out/" + name), rows("demo/" + QString(name).remove("-reinv")));
            }
        }
    }
}
