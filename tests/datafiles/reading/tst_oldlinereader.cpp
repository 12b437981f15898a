#include "datafiles/reading/reading.h"
#include "support/processorclock.h"

namespace {

const char columnRow[] = "begintime,endtime,opmode,x\n";

QByteArray row(int minute, const QByteArray &fields)
{
    const QByteArray m = QByteArray::number(minute).rightJustified(2, '0');
    return "2009-05-01 10:" + m + ":00,2009-05-01 10:" + m + ":30," + fields + '\n';
}

class OldFiles : public Reading {
protected:
    /// Reads one file of those header lines and rows.
    void readFile(const QByteArray &header, const QByteArray &rows)
    {
        write("2009-05-01.sig", "#All measured records\n" + header + columnRow + rows);
        read();
    }
};

TEST_F(OldFiles, ASecondFileWithTheSame5001NamesIsRead)
{
    QByteArray names, fields("ions");
    for (int i = 0; i < 5001; ++i) {
        names += 'd' + QByteArray::number(i) + ',';
        fields += ",1";
    }
    for (const char *name : {"1.sig", "2.sig"})
        write(name, "#Only records\n#Diagnostics: " + names + '\n' + columnRow + row(name[0] - '0', fields));
    read();
    EXPECT_EQ(complaints(), QStringList());
    EXPECT_EQ(recordCount(), 2);
}

TEST_F(OldFiles, AHeaderOfManyCommentsIsReadWithin16MB)
{
    const QByteArray comment = '#' + QByteArray("x").repeated(498) + '\n';
    readFile(comment.repeated(30000) + "#Diagnostics: flow\n", row(0, "ions,5"));
    EXPECT_EQ(complaints(), QStringList());
    ASSERT_EQ(recordCount(), 1);
    EXPECT_EQ(record(0).variables[0], 5);
    readFile(comment.repeated(34000), row(0, "ions,5"));
    ASSERT_EQ(complaints().size(), 1);
    EXPECT_TRUE(complaints()[0].contains("Header too long"));
}

TEST_F(OldFiles, AHundredThousandOfAnythingCostTheirBlockOrRowAlone)
{
    const auto many = [](const char *text) { return QByteArray(text).repeated(100000); };
    const struct {
        QByteArray header, fields;
        const char *complaint;
    } table[] = {{"#Diagnostics: d" + many(",\"d\""), "1", "too many values"},
                 {"#Diagnostic values and voltages: d" + many(", d"), "1", "too many values"},
                 {"#Operating modes: ions" + many(", m"), "1", "too many values"},
                 {"#Electrometer currents: 100000", "1", "too many values"},
                 {"#Raw electrometer currents: 2 (a 0 0" + many(",a 0 0") + ")", "1,2", "too many values"},
                 {"#Result spectrum: \"s\" dif num (1/cm^3), rad (nm) 1" + many(",1"), "1", "too many values"},
                 {"#Diagnostics: d" + many("\n#Diagnostics: d"), "1", "too many values"},
                 {"#Diagnostics: d", "1" + many(",1"), "100004 fields found, 4 expected"},
                 {"#Diagnostics: \"d" + many("x"), "1" + many("1"), nullptr}};
    for (const auto &each : table) {
        const QByteArray sound = QByteArray("#Only records\n#Diagnostics: flow\n") + columnRow + row(1, "ions,5");
        const ProcessorClock clock;
        readFile(each.header + '\n', row(0, "ions," + each.fields) + sound);
        EXPECT_LT(clock.milliseconds(), 2000) << each.header.left(20).constData();
        ASSERT_EQ(complaints().size(), each.complaint ? 1 : 0) << each.header.left(20).constData();
        EXPECT_TRUE(!each.complaint || complaints()[0].contains(each.complaint)) << complaints()[0].toStdString();
        const auto flow = reader->metadata()->variable("flow");
        ASSERT_TRUE(flow && recordCount() > 0) << each.header.left(20).constData();
        EXPECT_EQ(record(recordCount() - 1).variables[std::size_t(flow->valueIndex)], 5);
    }
}

TEST_F(OldFiles, BlanksBetweenGroupsCostNoTime)
{
    const QByteArray blanks = QByteArray(" ").repeated(32000);
    const ProcessorClock clock;
    readFile("#Electrometer currents: 1 (" + blanks + "pos" + blanks + "0 0" + blanks + ", neg 0 0" + blanks + ")\n",
             row(0, "ions,1,2"));
    EXPECT_LT(clock.milliseconds(), 2000);
    EXPECT_EQ(complaints(), QStringList());
    EXPECT_EQ(reader->metadata()->electrometerGroups.keys(), QStringList({"neg", "pos"}));
}

TEST_F(OldFiles, SpectraAreSharedOverFilesByTheirHash)
{
    const QByteArray header =
        QByteArray("#Only records\n#Result spectrum: \"s\" dif num (1/cm^3), rad (nm) 1,2\n") + columnRow;
    write("1.nds", header + row(0, "ions,1,2,3,4"));
    write("2.nds", header + row(0, "ions,5,6,7,8"));
    read();
    EXPECT_EQ(reader->spectrumInfos().size(), 1);
    ASSERT_EQ(recordCount(), 1);
    EXPECT_EQ(record(0).spectra.size(), 2u);
    EXPECT_EQ(record(0).spectra[0]->info, record(0).spectra[1]->info);
}

TEST_F(OldFiles, ReadTogetherWithOthersGiveOneStore)
{
    const QByteArray old = "#Only records\n#Operating modes: ions\n";
    write("2009-05-01.log",
          old + "#Diagnostics: flow\nbegintime,endtime,flow\n2009-05-01 10:00:00,2009-05-01 10:00:30,5\n"
                "2009-05-01 10:01:00,2009-05-01 10:01:30,6\n2009-05-01 10:02:00,2009-05-01 10:02:30,7\n");
    write("2009-05-01.nds",
          old + "#Result spectrum: \"s\" dif num (1/cm^3), rad (nm) 1,2\n" + columnRow + row(1, "ions,1,2,3,4"));
    write("20090501-block.records", {"# Quilvane records", "# opmodes: [particles]", "# parameters:", "# - temp",
                                     "# - flow", "# ", "begin_time\tend_time\topmode\ttemp\tflow\tflags",
                                     "2009-05-01 10:02:00\t2009-05-01 10:02:30\tparticles\t20\t8\t",
                                     "2009-05-01 10:03:00\t2009-05-01 10:03:30\tparticles\t21\t9\t"});
    QStringList paths;
    for (const QString &name : filesIn(folder.path()))
        paths << folder.filePath(name);
    for (const char *assumed : {"", "fog"}) {
        assumedOpmode = assumed;
        read(paths, folder.path());
        EXPECT_EQ(complaints(), QStringList());
        ASSERT_EQ(recordCount(), 4);
        QStringList modes;
        for (int i = 0; i < recordCount(); ++i)
            modes << modeOf(i);
        EXPECT_EQ(modes, (QStringList{assumed, "ions", assumed, "particles"})) << "a later file may tell the mode";
        EXPECT_EQ(record(1).spectra.size(), 1u);
        EXPECT_EQ(record(1).variables[0], 6);
        EXPECT_EQ(record(2).variables[0], 8);
        EXPECT_EQ(record(2).variables[1], 20);
    }
}

} // namespace
