#include "batch/dayfolder.h"

#include "support/demodata.h"

#include <QDate>
#include <QElapsedTimer>

#include <random>

namespace {

/// Ten days of a demonstration, worked on as a whole and in ten pieces, as several machines would.
class Pieces : public DayFolder {
protected:
    static constexpr int days = 10;

    Pieces()
    {
        writeDemoData(path("demo"), 3600, days);
        write("s.exportsetup", "quilvane_data_export_version: 1\n"
                               "general: {file_name_add_date: true, time_zone: local}\n"
                               "fields:\n- {type: variable, variables: [temperature.mean]}\n");
    }

    /// Runs the command with another output for the whole and for the pieces.
    void work(const QString &command, const QStringList &arguments, const QString &output)
    {
        const QStringList common = QStringList{command, "{}/demo", "--variant", "block"} + arguments;
        EXPECT_EQ(run(common + QStringList{"--output", "{}/whole" + output}).code, 0);
        QDate day(2019, 5, 14);
        for (int i = 0; i < days; ++i, day = day.addDays(1)) {
            const QString text = day.toString(Qt::ISODate);
            const Ended ended =
                run(common + QStringList{"--output", "{}/pieces" + output, "--from", text, "--to", text});
            EXPECT_EQ(ended.code, 0) << ended.errors.constData();
        }
    }

    void expectEqual() const
    {
        EXPECT_GE(names("whole").size(), days);
        EXPECT_EQ(names("pieces"), names("whole"));
        for (const QString &name : names("whole"))
            EXPECT_TRUE(contentOf("pieces/" + name) == contentOf("whole/" + name)) << qPrintable(name);
    }
};

} // namespace

TEST_F(Pieces, OfWholeDaysEqualOneRun)
{
    work("save", {}, "");
    work("reinvert", {"--inverters", "{}/inverters/demo.invmap", "--only-new"}, "");
    work("export", {"--setup", "{}/s.exportsetup"}, "/table.txt");
    expectEqual();
}

TEST_F(Pieces, OfRunsThatWereStoppedAreWholeDays)
{
    QDir(path("demo")).removeRecursively();
    writeDemoData(path("demo"), 300, days);
    std::minstd_rand random(1);
    int left = 0; // files
    const QStringList commands[] = {
        {"save"}, {"reinvert", "--inverters", "{}/inverters/demo.invmap"}, {"export", "--setup", "{}/s.exportsetup"}};
    for (const QStringList &command : commands) {
        const QStringList common = QStringList{command[0], "{}/demo", "--variant", "block", "--jobs", "2"} +
                                   command.mid(1) + QStringList{"--output"};
        const QString file = command[0] == "export" ? "/table.txt" : "";
        QElapsedTimer clock;
        clock.start();
        ASSERT_EQ(run(common + QStringList{"{}/whole" + file}).code, 0);
        const qint64 most = clock.elapsed();
        for (int moment = 0; moment < 10; ++moment) {
            const QString after = QString::number(double(random() % most) / 1000);
            runInShell("\"$@\" & sleep " + after + "; kill -INT $!; wait", common + QStringList{"{}/pieces" + file});
            for (const QString &name : names("pieces"))
                EXPECT_TRUE(contentOf("pieces/" + name) == contentOf("whole/" + name))
                    << qPrintable(name) << qPrintable(after);
            left += names("pieces").size();
            QDir(path("pieces")).removeRecursively();
        }
        QDir(path("whole")).removeRecursively();
    }
    EXPECT_GT(left, 0);
}

TEST_F(Pieces, OfARunThatWasKilledAgainAndAgainAreAsOfOneThatWasNot)
{
    const QStringList common{"save", path("demo"), "--variant", "block", "--append", "--output"};
    ASSERT_EQ(run(common + QStringList{"{}/whole"}).code, 0);
    const auto bytesIn = [this](const QString &folder) {
        qint64 bytes = 0;
        for (const QString &name : names(folder))
            bytes += QFileInfo(path(folder + '/' + name)).size();
        return bytes;
    };
    const qint64 all = bytesIn("whole");
    int kills = 0;
    for (int part = 1; part < 10; ++part) {
        QProcess process;
        process.start(QStringLiteral(BATCH_PROGRAM), common + QStringList{path("pieces")});
        while (process.state() != QProcess::NotRunning && bytesIn("pieces") < all * part / 10)
            process.waitForFinished(1);
        process.kill();
        process.waitForFinished();
        kills += process.exitStatus() == QProcess::CrashExit;
    }
    EXPECT_GT(kills, 0);
    const Ended ended = run(common + QStringList{"{}/pieces"});
    EXPECT_TRUE(ended.errors.contains(" rows were passed over, since the files hold them already; 0 of them differ."))
        << ended.errors.constData();
    for (const QString &name : names("pieces").filter(".torn"))
        QFile::remove(path("pieces/" + name));
    expectEqual();
}

TEST_F(Pieces, CanNotShareOneTable)
{
    write("s.exportsetup", contentOf("s.exportsetup").replace("file_name_add_date: true, ", ""));
    const QStringList piece{"export",       "{}/demo", "--variant",        "block", "--output",
                            "{}/table.txt", "--setup", "{}/s.exportsetup", "--from"};
    EXPECT_EQ(run(piece + QStringList{"2019-05-14", "--to", "2019-05-14"}).code, 0);
    const QByteArray first = contentOf("table.txt");
    EXPECT_EQ(run(piece + QStringList{"2019-05-15", "--to", "2019-05-15"}).code, 2);
    EXPECT_EQ(contentOf("table.txt"), first);
}
