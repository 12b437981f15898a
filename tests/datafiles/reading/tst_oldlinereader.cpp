#include "datafiles/reading/reading.h"

#include <QElapsedTimer>

#include <cmath>

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
    const SpectMath::Spectrum &spectrum(int index) const { return *record(index).spectra.at(0); }
};

TEST_F(OldFiles, every_kind_of_column)
{
    readFile("#Possible operating modes: ions, , particles\n"
             "#Something else: 1, 2\n"
             "#Diagnostic values and voltages: \"flow\", temp,,\n"
             "#Raw electrometer currents: 3 (pos 0 1 , neg 2 2)\n"
             "#Electrometer currents: 3\n"
             "#Result spectrum: \"ions neg\" dif num (1e+06/m^3), mob (0.0001/kg*s^2*A) 0.5, 0.25\n"
             "#Result spectrum: \"size\" density num (1/cm^3) , rad (1e-09*m) 1.1\n",
             row(0, "particles,1,2,3,4, 5,6,x,10,20,,0.5,,2,100,200,3,4,7,0.5") +
                 row(1, "other,,,,,,,,,,,,,,100,200,3,4,,0.5"));
    EXPECT_EQ(complaints(), QStringList());
    ASSERT_EQ(recordCount(), 2);
    const auto &metadata = *reader->metadata();
    QStringList names, humannames, units;
    for (const auto &variable : metadata.variables) {
        names << variable->name;
        humannames << variable->humanname;
        units << variable->unit;
    }
    EXPECT_EQ(names, QStringList({"flow", "sens_flow", "temp", "sens_temp"}));
    EXPECT_EQ(humannames[1], "Sensor flow");
    EXPECT_EQ(units, QStringList({"", "V", "", "V"}));
    EXPECT_EQ(metadata.electrometerNames, QVector<QString>({"0", "1", "2"}));
    EXPECT_EQ(metadata.electrometerGroups.value("pos"), (Spectrometer::ChannelRange{0, 2}));
    EXPECT_EQ(modeOf(0), "particles");
    EXPECT_EQ(record(1).opmode, -1) << "a mode that no header told stays unknown";

    const Record &first = record(0);
    EXPECT_EQ(first.variables[3], 4);
    EXPECT_EQ(first.rawCurrents[0], 5);
    EXPECT_TRUE(std::isnan(first.rawCurrents[2]));
    EXPECT_EQ(first.currents[1], 20);
    EXPECT_EQ(first.currentVariances[0], 0.25);
    EXPECT_TRUE(std::isnan(first.currentVariances[1]));
    EXPECT_TRUE(std::isnan(first.voltages[0]));
    ASSERT_EQ(first.spectra.size(), 2u);
    EXPECT_EQ(spectrum(0).concentrations[1], 200);
    EXPECT_EQ(static_cast<const BandMatrix &>(spectrum(0).covariances)(1, 1), 16);
    EXPECT_EQ(spectrum(0).info->mobilityUnit.name, "cm^2/s/V");
    EXPECT_EQ(spectrum(0).info->mobilities[1], 0.25);
    EXPECT_EQ(first.spectra[1]->info->radii[0], double(1.1f)) << "old axes have float precision";
    EXPECT_EQ(record(1).spectra.size(), 1u) << "an empty field drops that spectrum of the row";
}

TEST_F(OldFiles, a_stretch_that_does_not_suit_is_stepped_over)
{
    const QByteArray tail = "#Result spectrum: \"s\" dif num (1/cm^3), rad (nm) 1,2\n";
    const struct {
        const char *line;
        const char *fields; ///< of that line
        QStringList complaints;
    } cases[] = {
        {"#Electrometer currents: 1 (pos 0 0, pos 0 1)\n",
         "1,2",
         {"Different definition for electrometer channel group pos. Electrometer fields will be ignored in this "
          "file."}},
        {"#Result spectrum: \"t\" frac num (1), rad (nm) 1,2\n", "1,2", {"Not nd spectrum will be ignored"}},
        {"#Result spectrum: \"t\" dif mass (1), rad (nm) 1,2\n", "1,2,3,4", {"Not nd spectrum will be ignored"}},
        {"#Result spectrum: \"t\" dif num (1), rad (nm) 1,two\n", "1,2,3,4", {"Spectrum header: two is not a number"}},
        {"#Result spectrum: \"t\" dif num (1/cm3), rad (nm) 1\n",
         "1,2",
         {"Unit parsing error: Unknown unit 'cm3'", "Spectrum will be ignored"}},
    };
    for (const auto &c : cases) {
        readFile(c.line + tail, row(0, QByteArray("ions,") + c.fields + ",10,20,3,4"));
        EXPECT_EQ(complaints().join('|').toStdString(), c.complaints.join('|').toStdString()) << c.line;
        ASSERT_EQ(recordCount(), 1) << c.line;
        ASSERT_EQ(record(0).spectra.size(), 1u) << c.line;
        EXPECT_EQ(spectrum(0).concentrations[1], 20) << c.line;
        EXPECT_EQ(std::isnan(record(0).currents.size() ? record(0).currents[0] : noValue), true) << c.line;
    }
}

TEST_F(OldFiles, a_row_that_fails_in_one_stretch_is_read_in_the_others)
{
    readFile("#Result spectrum: \"s\" dif num (1/cm^3), rad (nm) 1\n#Diagnostics: flow\n"
             "#Result spectrum: \"t\" dif num (1/cm^3), rad (nm) 2\n",
             row(0, "ions,bad,1,42,7,worse") + row(1, "ions,1,1,43,7,8"));
    EXPECT_EQ(complaints().join('|').toStdString(), "File 2009-05-01.sig, row 6: 'bad' is not a floating point number; "
                                                    "'worse' is not a floating point number");
    EXPECT_EQ(record(0).variables[0], 42);
    EXPECT_TRUE(record(0).spectra.empty());
    EXPECT_EQ(record(1).spectra.size(), 2u);
}

TEST_F(OldFiles, without_a_mode_column_and_with_no_tolerance_for_an_extra_field)
{
    write("1.sig", QByteArray("#Only records\n#Operating modes: ions\n#Diagnostics: a\nbegintime, endtime ,a\n") +
                       row(0, "1") + row(1, "2,"));
    read();
    EXPECT_EQ(complaints(), QStringList("File 1.sig, row 6: 4 fields found, 3 expected"));
    ASSERT_EQ(recordCount(), 1);
    EXPECT_EQ(record(0).opmode, -1);
    EXPECT_EQ(record(0).variables[0], 1);
}

TEST_F(OldFiles, a_second_file_with_the_same_5001_names_is_read)
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

TEST_F(OldFiles, a_header_of_many_comments_is_read_within_16_MB)
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

TEST_F(OldFiles, blanks_between_groups_cost_no_time)
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

TEST_F(OldFiles, a_conflict_of_groups_ends_its_line_before_the_names)
{
    readFile("#Electrometer currents: 1 (pos 0 0, pos 0 1)\n", row(0, "ions,1,2"));
    EXPECT_EQ(complaints().size(), 1);
    EXPECT_EQ(reader->metadata()->totalElectrometers, 1);
    EXPECT_EQ(reader->metadata()->electrometerNames.size(), 0);
}

TEST_F(OldFiles, spectra_are_shared_over_files_by_their_hash)
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
