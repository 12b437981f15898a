#include "batch/dayfolder.h"
#include "batch/failingruns.h"

#include "batch/exportcommand.h"

#include <QElapsedTimer>
#include <QThread>

#include <csignal>

class ExportFolder : public DayFolder {
protected:
    void SetUp() override { writeDay("in"); }

    /// A setup file of totals of these spectra.
    void writeSetup(const QString &name, const QByteArray &general, const QByteArray &spectra = "aa11")
    {
        write(name, "quilvane_data_export_version: 1\ngeneral: {" + general +
                        "}\nfields:\n- {type: concentration, spectra: [" + spectra + "]}\n");
    }
};

TEST_F(ExportFolder, EveryWayOfEndingHasItsStatus)
{
    write("file", "");
    write("list.exportsetup", "[1]");
    write("torn.exportsetup", "{general: ");
    writeSetup("good.exportsetup", "output_file: out.txt");
    writeSetup("nowhere.exportsetup", "");
    writeSetup("unknown.exportsetup", "", "x");
    writeSetup("partly.exportsetup", "", "x, aa11");
    writeSetup("modes.exportsetup", "opmodes: [none]");
    expectEndings("export.txt");
    EXPECT_EQ(names(""),
              (QStringList{"a.txt", "c.txt", "file", "good.exportsetup", "list.exportsetup", "modes.exportsetup",
                           "nowhere.exportsetup", "partly.exportsetup", "torn.exportsetup", "unknown.exportsetup"}))
        << "what was refused or failed left something";
}

TEST_F(ExportFolder, WritesTheTableBesideTheSetup)
{
    writeSetup("setups/s.exportsetup", "output_file: ../out/x.csv, field_separator: ',', time_format: '%d %H:%M%z',"
                                       "time_zone: local, file_name_add_date: true, file_name_add_opmode: true");
    const Ended ended = run({"export", "{}/in", "--variant", "block", "--setup", "{}/setups/s.exportsetup"});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
    EXPECT_TRUE(ended.output.isEmpty());
    EXPECT_EQ(names("out"), (QStringList{"x-20190912-ions.csv", "x-20190912-offset.csv"}));
    // From 1 to 2 nm of radius, 0.30103 decades; a spectrum without values was saved of an inversion that failed.
    const std::string titles = "begin time,end time,opmode,ions neg total number (1/cm^3),"
                               "ions neg total number stddev (1/cm^3)\n";
    EXPECT_EQ(contentOf("out/x-20190912-ions.csv").toStdString(),
              titles + "12 00:30+02:00,12 00:31+02:00,ions,0.451545,0.526802\n"
                       "12 00:33+02:00,12 00:34+02:00,ions,,\n");
    EXPECT_EQ(contentOf("out/x-20190912-offset.csv").toStdString(),
              titles + "12 00:31+02:00,12 00:32+02:00,offset,,\n");
}

TEST_F(ExportFolder, AFileCallThatFailsIsToldAndLeavesTheOldTable)
{
    writeSetup("s.exportsetup", "output_file: out.txt");
    Batch::ExportOptions options;
    options.read.folder = path("in");
    options.read.variant = "block";
    options.setupFile = path("s.exportsetup");
    options.overwrite = true;
    const auto run = [&] {
        write("out.txt", "old");
        return Batch::runExport(options);
    };
    const auto check = [&](int status, const QByteArray &words) {
        const QByteArray content = contentOf("out.txt");
        EXPECT_EQ(words.contains("3 rows written"), content != "old");
        EXPECT_EQ(content == "old", status == 1 && !words.contains("might be lost")) << content.constData();
        EXPECT_EQ(names(""), (QStringList{"out.txt", "s.exportsetup"}));
    };
    EXPECT_EQ(endsOfFailingRuns(run, check),
              (QStringList{"close 0", "close 1", "fchmod 1", "fsync 1", "open 1", "rename 1", "unlink 0", "write 1"}));
}

TEST_F(ExportFolder, CtrlCWhileItWritesLeavesNothing)
{
    QByteArray rows = recordsHeader();
    for (int i = 0; i < 50'000; ++i)
        rows += "2019-09-12 12:00:00." + QByteArray::number(i).rightJustified(6, '0') +
                "\t2019-09-12 12:01:00\tions\t1\t2\t1\t1\t1\t1\t1\t1\t1\t\n";
    write("in/20190912-block.records", rows);
    writeSetup("s.exportsetup", "output_file: out/x.txt, time_format: '" + QByteArray("%d%H").repeated(200) + "'");
    QProcess process;
    process.start(QStringLiteral(BATCH_PROGRAM),
                  {"export", path("in"), "--variant", "block", "--setup", path("s.exportsetup")});
    ASSERT_TRUE(process.waitForStarted());
    QElapsedTimer clock;
    clock.start();
    while (!QFile::exists(path("out/x.txt.unfinished")) && clock.elapsed() < 60000)
        QThread::msleep(1);
    ASSERT_EQ(kill(pid_t(process.processId()), SIGINT), 0);
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 130);
    EXPECT_TRUE(process.readAllStandardError().contains("nothing was written"));
    EXPECT_FALSE(QFile::exists(path("out")));
}
