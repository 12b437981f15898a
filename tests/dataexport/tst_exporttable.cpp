#include "dataexport/concentrationfieldsource.h"
#include "dataexport/exportfixture.h"
#include "util/timeparse.h"

#include <limits>

using namespace DataExport;

namespace {

QVariantMap concentration(const QVariantMap &keys)
{
    QVariantMap field{{"type", "concentration"}, {"spectra", QVariantList{"id-ions"}}};
    for (auto key = keys.begin(); key != keys.end(); ++key)
        field.insert(key.key(), key.value());
    return field;
}

QByteArray lineOf(const ExportTable &table, const Record &record)
{
    DelimitedLine line = table.emptyLine();
    table.addLine(record, line);
    return QByteArray(line.data(), int(line.size()));
}

RecordTime timeOf(const char *text)
{
    RecordTime time;
    std::int64_t offset = 0;
    parseTime(QString::fromLatin1(text), &time, &offset);
    return time;
}

Record recordAt(const char *begin, const char *end, std::int64_t offset = 7200)
{
    Record record;
    record.beginTime = timeOf(begin);
    record.endTime = timeOf(end);
    record.beginUtcOffset = record.endUtcOffset = offset;
    record.opmode = 0;
    return record;
}

} // namespace

TEST(ExportTable, TitlesTellLabelQuantityLimitsAndUnits)
{
    const auto ions = infoPerCm3("ions", {0.5, 50}, DistributionScale::radius);
    const auto metadata = testMetadata({"ions"}, {"1+", "2+"}, {"t"});
    metadata->variables[0]->unit = "C";
    const QString decades = "decade_fractions_enabled", custom = "custom_fractions_enabled";
    const struct {
        QVariantMap field;
        QStringList titles;
    } table[] = {
        {concentration({}), {"ions total number (1/cm^3)", "ions total number stddev (1/cm^3)"}},
        {concentration({{"concentration_type", "mass"}}),
         {"ions total mass (mg/cm^3)", "ions total mass stddev (mg/cm^3)"}},
        {concentration({{"total_concentration_enabled", false}, {decades, true}, {"concentration_type", "surface"}}),
         {"ions surface 1 - 10 nm (nm^2*1/cm^3)", "ions surface stddev 1 - 10 nm (nm^2*1/cm^3)",
          "ions surface 10 - 100 nm (nm^2*1/cm^3)", "ions surface stddev 10 - 100 nm (nm^2*1/cm^3)"}},
        {concentration({{"total_concentration_enabled", false},
                        {custom, true},
                        {"custom_fractions_data", "0.5 1e-7"},
                        {"custom_fractions_scale", "mobility"}}),
         {"ions number 0.5 - 1e-07 cm^2/s/V (1/cm^3)", "ions number stddev 0.5 - 1e-07 cm^2/s/V (1/cm^3)"}},
        {concentration({{"total_concentration_enabled", false}}), {}},
        {{{"type", "spectrum"}, {"spectra", QVariantList{"id-ions"}}},
         {"ions number density at 1 nm (1/cm^3)", "ions number density at 100 nm (1/cm^3)"}},
        {{{"type", "spectrum"},
          {"spectra", QVariantList{"id-ions"}},
          {"distribution", "fraction"},
          {"uncertainties", true}},
         {"ions number 1 - 100 nm (1/cm^3)", "ions number stddev 1 - 100 nm (1/cm^3)"}},
        {{{"type", "variable"}, {"variables", QVariantList{"t"}}}, {"t (C)"}},
        {{{"type", "electrometer"},
          {"electrometers", QVariantList{"2+"}},
          {"deviations", true},
          {"raw_currents", true},
          {"voltages", true}},
         {"current 2+ (fA)", "current stddev 2+ (fA)", "raw current 2+ (fA)", "voltage 2+ (V)"}},
        {{{"type", "electrometer"}}, {"current 1+ (fA)", "current 2+ (fA)"}},
    };
    for (const auto &row : table)
        EXPECT_EQ(titlesOf(tableOf({row.field}, exportData({ions}, metadata))), row.titles);
}

TEST(ExportTable, NamesakesAreToldApartAsInTheViews)
{
    auto second = infoPerCm3("ions", {0.5, 50}, DistributionScale::radius);
    second->hash = "other";
    second->inverterName = "%1 new";
    const auto table =
        tableOf({concentration({})}, exportData({infoPerCm3("ions", {0.5, 50}, DistributionScale::radius), second}));
    EXPECT_EQ(titlesOf(table)[0], "ions (id-i) total number (1/cm^3)");
}

TEST(ExportTable, LinesHaveTimesModeAndFields)
{
    const auto metadata = testMetadata({"ions", "odd, mode"}, {}, {"t"});
    Record record = recordAt("2019-09-12 22:00:00.5", "2019-09-12 22:01:00");
    record.variables = RealVector(1, 1.5);
    const QVariantMap field{{"type", "variable"}, {"variables", QVariantList{"t"}}};
    const struct {
        QVariantMap general;
        int opmode;
        const char *line;
    } table[] = {
        {{}, 0, "2019-09-12 22:00:00.500000\t2019-09-12 22:01:00.000000\tions\t1.5\n"},
        {{{"time_zone", "local"}, {"time_format", "%d %H:%M%z"}, {"field_separator", ";"}},
         -1,
         "13 00:00+02:00;13 00:01+02:00;;1.5\n"},
        {{{"time_format", "%H"}, {"field_separator", ","}}, 1, "22,22,\"odd, mode\",1.5\n"},
        // Every time has a blank.
        {{{"time_format", "%d %H"}, {"field_separator", "; "}}, 0, "\"12 22\"; \"12 22\"; ions; 1.5\n"},
        {{{"time_format", "%H"}, {"field_separator", "."}}, 0, "22.22.ions.\"1.5\"\n"},
        {{{"time_format", "a\"b"}, {"field_separator", "b"}}, 0, "\"a\"\"b\"b\"a\"\"b\"bionsb1.5\n"},
        {{{"time_format", "a\"b"}}, 0, "a\"b\ta\"b\tions\t1.5\n"},
    };
    for (const auto &row : table) {
        auto exported = tableOf({field}, exportData({}, metadata), row.general);
        record.opmode = row.opmode;
        EXPECT_EQ(lineOf(exported, record).toStdString(), row.line);
    }
    auto exported = tableOf({field}, exportData({}, metadata));
    EXPECT_EQ(lineOf(exported, Record()).toStdString(), "\t\t\t\n") << "nothing is known of it";
}

TEST(ExportTable, TitlesThatHoldTheSeparatorAreQuoted)
{
    const auto metadata = testMetadata({}, {}, {"a;b"});
    const auto table = tableOf({QVariantMap{{"type", "variable"}, {"variables", QVariantList{"a;b"}}}},
                               exportData({}, metadata), {{"field_separator", ";"}});
    EXPECT_EQ(table.head().toStdString(), "begin time;end time;opmode;\"a;b\"\n");
}

TEST(ExportTable, SpectraThatFailedLackOrMissPointsLeaveEmptyFields)
{
    const auto ions = infoPerCm3("ions", {1, 10, 100}, DistributionScale::radius);
    // From 1 to 10 and from 10 to 100 nm of radius, each one decade.
    auto table = tableOf({concentration({{"total_concentration_enabled", false},
                                         {"custom_fractions_enabled", true},
                                         {"custom_fractions_data", "2 20 200"}})},
                         exportData({ions}));
    constexpr double inf = std::numeric_limits<double>::infinity();
    const auto fields = [&](const std::shared_ptr<SpectMath::Spectrum> &spectrum) {
        Record record;
        record.spectra = {nullptr, spectrum};
        return fieldsOf(table, record).join(' ');
    };
    EXPECT_EQ(fields(spectrumOf(ions, {2, 4, 6}, 1)), "3 1 5 1");
    EXPECT_EQ(fields(spectrumOf(ions, {2, 4, noValue}, 1)), " 1  1") << "0 times a missing value is missing";
    EXPECT_EQ(fields(spectrumOf(ions, {inf, 4, 6}, 1)), "inf 1  1") << "and so is 0 times infinity";
    EXPECT_EQ(fields(spectrumOf(ions, {2, 4, 6}, -1)), "3  5 ");
    auto spectrum = spectrumOf(ions, {2, 4, 6}, 1);
    spectrum->covariances = BandMatrix(1, 1, 0, 0);
    EXPECT_EQ(fields(spectrum), "3  5 ");
    spectrum->status = 2;
    EXPECT_EQ(fields(spectrum), "   ");
    EXPECT_EQ(fields(testSpectrum(infoPerCm3("ions", {1, 10}, DistributionScale::radius), 1)), "   ");
    EXPECT_EQ(fields(nullptr), "   ");

    auto whole =
        tableOf({QVariantMap{{"type", "spectrum"}, {"spectra", QVariantList{"id-ions"}}, {"uncertainties", true}}},
                exportData({ions}));
    Record record;
    EXPECT_EQ(fieldsOf(whole, record).join(' '), "     ");
    record.spectra = {spectrumOf(ions, {2, noValue, 6}, 1)};
    record.spectra[0]->covariances = BandMatrix(1, 1, 0, 0);
    EXPECT_EQ(fieldsOf(whole, record).join(' '), "2    6 ") << "values don't need covariances";
    const auto equal = std::make_shared<SpectMath::SpectrumInfo>(*ions);
    EXPECT_EQ(fields(spectrumOf(equal, {2, 4, 6}, 1)), "3 1 5 1") << "an equal description is the same";
}

TEST(ExportTable, WholeSpectraAndElectrometersHaveTheRecordsValues)
{
    const auto ions = infoPerCm3("ions", {1, 10, 100}, DistributionScale::radius);
    Record record;
    record.spectra = {spectrumOf(ions, {2, 4, 6}, 1)};
    record.currents = RealVector(1, 7);
    record.currentVariances = RealVector(1, 9);
    record.voltages = RealVector(2, 5);
    const struct {
        QVariantMap field;
        const char *values;
    } table[] = {
        {{{"type", "spectrum"}, {"uncertainties", true}}, "2 1 4 1 6 1"},
        {{{"type", "spectrum"}, {"distribution", "fraction"}}, "3 5"},
        {{{"type", "spectrum"}, {"concentration_type", "diameter"}}, "4 80 1200"},
        {{{"type", "electrometer"}, {"deviations", true}, {"voltages", true}}, "7 3 5   5"},
    };
    for (auto row : table) {
        row.field.insert("spectra", QVariantList{"id-ions"});
        auto exported = tableOf({row.field}, exportData({ions}, testMetadata({}, {"1+", "2+"})));
        EXPECT_EQ(fieldsOf(exported, record).join(' ').toStdString(), row.values);
    }
}

TEST(ExportTable, WhatIsUnknownOrTooWideCostsItselfAndAnErrorLine)
{
    const auto ions = infoPerCm3("ions", {1, 10, 100}, DistributionScale::radius);
    const auto single = infoPerCm3("single", {1}, DistributionScale::radius);
    const auto errorsOf = [&](const QVariantMap &field) {
        return tableOf({field, concentration({})}, exportData({ions, single})).errors().join('|');
    };
    const QString tooWide = "A field was left out: a table has no more than 10000 columns.";
    EXPECT_EQ(errorsOf({{"type", "variable"}, {"variables", QVariantList{"t"}}}), "Unknown variable 't'.");
    EXPECT_EQ(errorsOf({{"type", "electrometer"}, {"electrometers", QVariantList{"1+"}}}),
              "Unknown electrometer '1+'.");
    EXPECT_EQ(errorsOf({{"type", "spectrum"}, {"spectra", QVariantList{"x"}}}), "Unknown spectrum 'x'.");
    EXPECT_EQ(errorsOf(concentration({{"spectra", QVariantList{"id-single"}}, {"decade_fractions_enabled", true}})),
              "The grid of \"single\" has no decades.");
    const QString limits = QString("1 2 ").repeated(50'000);
    const QVariantMap wide = concentration({{"custom_fractions_enabled", true}, {"custom_fractions_data", limits}});
    EXPECT_EQ(errorsOf(wide), tooWide);
    QStringList errors;
    EXPECT_FALSE(ConcentrationFieldSource(ConcentrationField(), 1).addSpectrum(ions, "total", &errors))
        << "weights are made for no field that is left out, of two hundred at each key in the dialog";
    EXPECT_EQ(titlesOf(tableOf({wide, concentration({})}, exportData({ions}))).size(), 2);

    EXPECT_TRUE(tableOf({QVariantMap{{"type", "spectrum"}, {"spectra", QVariantList{"x"}}}}, exportData({ions}))
                    .lacksSpectra());
    EXPECT_FALSE(tableOf({QVariantMap{{"type", "variable"}}}, exportData({ions})).lacksSpectra());
}

TEST(ExportTable, TakesTheModesThatAreAskedFor)
{
    const auto metadata = testMetadata({"ions", "particles"});
    const auto table = tableOf({}, exportData({}, metadata), {{"opmodes", QVariantList{"particles"}}});
    const auto all = tableOf({}, exportData({}, metadata));
    for (const int mode : {-1, 0, 1, 7}) {
        Record record;
        record.opmode = mode;
        EXPECT_EQ(table.takes(record), mode == 1) << mode;
        EXPECT_TRUE(all.takes(record)) << mode;
    }
}

TEST(ExportTable, CommentLinesTellWhereTheTableComesFrom)
{
    auto info = infoPerCm3("ions", {1, 10}, DistributionScale::radius);
    info->inverterName = "x\ny";
    ExportData data = exportData({info}, testMetadata({"ions", "particles"}));
    data.folder = "/data";
    data.files = QStringList{"a", "b"};
    data.first = recordAt("2019-09-12 22:00:00", "2019-09-12 22:01:00");
    data.last = recordAt("2019-09-12 22:01:00", "2019-09-12 22:02:00");
    const auto table = tableOf({concentration({})}, data, {{"comment_lines", true}, {"time_format", "%H:%M"}});
    const QList<QByteArray> lines = table.head().split('\n');
    EXPECT_EQ(lines.at(0), "# program: Morvantide");
    EXPECT_TRUE(lines.at(1).startsWith("# version: "));
    EXPECT_EQ(lines.mid(2, 5).join('|'), "# folder: /data|# files: a, b|# span: 22:00 - 22:02|# modes: ions, particles|"
                                         "# spectrum: ions, id id-ions, inverter x\\ny");
    EXPECT_TRUE(lines.at(7).startsWith("begin time\t"));
}
