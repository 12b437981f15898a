#include "datafiles/reading/reading.h"

#include <QElapsedTimer>

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

TEST_F(OldFiles, BlanksBetweenGroupsCostNoTime)
{
    const QByteArray blanks = QByteArray(" ").repeated(32000);
    QElapsedTimer clock;
    clock.start();
    readFile("#Electrometer currents: 1 (" + blanks + "pos" + blanks + "0 0" + blanks + ", neg 0 0" + blanks + ")\n",
             row(0, "ions,1,2"));
    EXPECT_LT(clock.elapsed(), 2000);
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

} // namespace
