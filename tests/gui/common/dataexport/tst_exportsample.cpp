#include "gui/common/dataexport/exporteddata.h"
#include "gui/common/dataexport/exportsample.h"

#include <gtest/gtest.h>

namespace {

class Sample : public ::testing::Test, protected ExportedData {
protected:
    ExportSample of(const QVariantMap &general, const QVariantList &fields = {},
                    const std::optional<ExportSource::Span> &span = {}, const QString &setupPath = {})
    {
        return ExportSample::of(source, QVariantMap{{"general", general}, {"fields", fields}}, setupPath, span);
    }
};

const QVariantMap variables{{"type", "variable"}, {"variables", QVariantList{"pressure"}}};

} // namespace

TEST_F(Sample, ShowsTheFirstRowsWhateverTheSeparator)
{
    const ExportSample sample = of({{"time_format", "%S, a"}, {"field_separator", ", "}}, {variables});
    EXPECT_EQ(sample.titles, (QStringList{"begin time", "end time", "opmode", "pressure"}));
    ASSERT_EQ(sample.rows.size(), 5);
    EXPECT_EQ(sample.rows[1], (QStringList{"01, a", "02, a", "particles", "21"}));
    EXPECT_EQ(sample.errors, QStringList());
    EXPECT_EQ(sample.files, QStringList()) << "none is named";
}

TEST_F(Sample, NamesFilesByTheFirstRecords)
{
    EXPECT_EQ(of({{"output_file", "x.txt"}}).files, QStringList{"/data/x.txt"});
    EXPECT_EQ(of({{"output_file", "x.txt"}}, {}, {}, "/setups/s.exportsetup").files, QStringList{"/setups/x.txt"});
    const QVariantMap byDayAndMode{
        {"output_file", "/y/x.txt"}, {"file_name_add_date", true}, {"file_name_add_opmode", true}};
    EXPECT_EQ(of(byDayAndMode).files, (QStringList{"/y/x-19700102-ions.txt", "/y/x-19700102-particles.txt"}));
    EXPECT_FALSE(of(byDayAndMode).mayHaveMoreFiles);
    for (int day = 1; day < 4; ++day)
        add(day * 86400, 0);
    EXPECT_EQ(of(byDayAndMode).files.size(), ExportSample::mostFiles);
    EXPECT_TRUE(of(byDayAndMode).mayHaveMoreFiles);
}

TEST_F(Sample, TakesRecordsOfTheSpanAndOfTheModes)
{
    const ExportSource::Span some{timeOf(3), timeOf(6)}; // ends and begins that only touch are outside
    EXPECT_EQ(source.places(some), std::make_pair(3, 6));
    const ExportSample sample = of({{"opmodes", QVariantList{"particles"}}, {"time_format", "%S"}}, {}, some);
    ASSERT_EQ(sample.rows.size(), 2);
    EXPECT_EQ(sample.rows[0][0] + sample.rows[1][0], "0305");
    EXPECT_EQ(of({}, {variables}, ExportSource::Span(timeOf(100), timeOf(200))).rows.size(), 0);
    EXPECT_EQ(source.places(ExportSource::Span(timeOf(-200), timeOf(-100))), std::make_pair(0, 0));
}

TEST_F(Sample, LooksAtNoMoreThanSomeRecordsAndShowsNoMoreThanSomeColumns)
{
    for (int i = records; i < 2 * ExportSample::mostRecords; ++i)
        add(i, 0);
    add(2 * ExportSample::mostRecords, 7); // a mode without a name
    EXPECT_EQ(of({{"opmodes", QVariantList{""}}}).rows.size(), 0) << "it walked to the end";
    const QVariantMap many{{"type", "concentration"},
                           {"spectra", QVariantList{"id-ions neg"}},
                           {"decade_fractions_enabled", true},
                           {"decade_fractions_number", 100}};
    const ExportSample sample = of({}, {many});
    EXPECT_EQ(sample.titles.size(), ExportSample::mostColumns);
    EXPECT_EQ(sample.rows.value(0).size(), ExportSample::mostColumns);
    EXPECT_GT(sample.columns, 300);
}

TEST_F(Sample, TellsWhatIsWrong)
{
    const QVariantMap unknown{{"type", "concentration"}, {"spectra", QVariantList{"gone"}}};
    EXPECT_EQ(of({{"field_separator", ""}}, {unknown}).errors,
              (QStringList{"Invalid field separator ''.", "Unknown spectrum 'gone'."}));
    EXPECT_EQ(ExportSample::of(source, QVariant(), {}, {}).errors, QStringList{"It isn't a map"});
}
