#include "dataexport/exportfixture.h"
#include "dataexport/exportsetup.h"
#include "llama/qyaml.h"

using namespace DataExport;

namespace {

QVariant treeOf(const char *yaml)
{
    return Llama::yamlLoad(QByteArray(yaml)).value(0);
}

ExportSetup setupOf(const QByteArray &field, const QByteArray &general = {})
{
    return exportSetupFrom(treeOf("general: {" + general + "}\nfields: [{" + field + "}]"));
}

} // namespace

TEST(ExportSetup, AbsentKeysHaveTheFirstValuesOfTheDialogs)
{
    const ExportSetup setup = setupOf("type: concentration");
    EXPECT_EQ(setup.errors, QStringList());
    EXPECT_EQ(setup.general.separator, "\t");
    EXPECT_EQ(setup.general.timeFormat, "%Y-%m-%d %H:%M:%s");
    EXPECT_FALSE(setup.general.local || setup.general.addDate || setup.general.addOpmode);
    const auto &field = std::get<ConcentrationField>(setup.fields.at(0));
    EXPECT_TRUE(field.total);
    EXPECT_FALSE(field.decades.isEnabled || field.decades.hasRange || field.quantity.isMass);
    EXPECT_TRUE(field.spectra.isEmpty() && field.customFractions.empty());
    EXPECT_EQ(std::tuple(field.decades.from, field.decades.to, field.decades.perDecade, field.quantity.density),
              std::tuple(1.0, 1000.0, 1, 1.0));
    EXPECT_EQ(field.decades.scale, DistributionScale::diameter);
}

TEST(ExportSetup, ReadsEveryKey)
{
    const ExportSetup setup = setupOf(
        "type: concentration, spectra: [a, b], total_concentration_enabled: false, decade_fractions_enabled: true,"
        "decade_fractions_scale: mobility_custom, decade_fractions_from: 0.01, decade_fractions_to: 1e1,"
        "decade_fractions_number: 4, custom_fractions_enabled: true, custom_fractions_data: \"1 3 10\","
        "custom_fractions_scale: mobility, concentration_type: mass, material_density: 2, mass_unit: µg/m^3",
        "output_file: a.txt, time_zone: local, file_name_add_date: true, file_name_add_opmode: true,"
        "field_separator: ', ', time_format: '%H', comment_lines: true, opmodes: [ions]");
    EXPECT_EQ(setup.errors, QStringList());
    const GeneralSettings &general = setup.general;
    EXPECT_TRUE(general.local && general.addDate && general.addOpmode && general.commentLines);
    EXPECT_EQ((QStringList{general.outputFile, general.separator, general.timeFormat} + general.opmodes),
              (QStringList{"a.txt", ", ", "%H", "ions"}));
    const auto &field = std::get<ConcentrationField>(setup.fields.at(0));
    EXPECT_EQ(field.spectra, (QStringList{"a", "b"}));
    EXPECT_TRUE(!field.total && field.decades.isEnabled && field.decades.hasRange);
    EXPECT_EQ(std::tuple(field.decades.scale, field.decades.from, field.decades.to, field.decades.perDecade),
              std::tuple(DistributionScale::mobility, 0.01, 10.0, 4));
    EXPECT_EQ(field.customFractions, (std::vector<Limits>{{1, 3}, {3, 10}}));
    EXPECT_EQ(field.customScale, DistributionScale::mobility);
    EXPECT_TRUE(field.quantity.isMass && field.quantity.inMicrograms && field.quantity.density == 2);
}

TEST(ExportSetup, BadFieldsCostThemselvesOrTheirFractionsAndAnErrorLine)
{
    const QByteArray decades = "type: concentration, decade_fractions_enabled: true, ";
    const struct {
        QByteArray field;
        const char *error;
        bool isKept = false;
    } table[] = {
        {"type: concentration, spectra: 3", "' → fields → [0] → spectra' must be QVariantList, but was int"},
        {"type: concentration, spectra: [a, 3]", "' → fields → [0] → spectra → [1]' must be QString, but was int"},
        {"type: concentration, total_concentration_enabled: 1",
         "' → fields → [0] → total_concentration_enabled' must be bool, but was int"},
        {"type: concentration, concentration_type: weight", "Invalid concentration type 'weight'."},
        {"type: concentration, custom_fractions_scale: radius", "Invalid custom fraction scale 'radius'."},
        {"type: concentration, mass_unit: kg", "Invalid mass unit 'kg'."},
        {"type: concentration, concentration_type: mass, material_density: -1", "Invalid material density -1."},
        {"type: concentration, material_density: heavy",
         "' → fields → [0] → material_density' must be double, but was QString"},
        {"type: spectrum, scale: radius", "Invalid scale 'radius'."},
        {"type: spectrum, distribution: sum", "Invalid distribution 'sum'."},
        {"type: variable, variables: t", "' → fields → [0] → variables' must be QVariantList, but was QString"},
        {"type: electrometer, voltages: []", "' → fields → [0] → voltages' must be bool, but was QVariantList"},
        {"type: picture", "Unknown field type 'picture'."},
        {"kind: spectrum", "Unknown field type ''."},
        {decades + "decade_fractions_scale: radius", "Invalid decade fraction scale 'radius'.", true},
        {decades + "decade_fractions_number: 0", "Invalid number of fractions per decade: 0.", true},
        {decades + "decade_fractions_number: 101", "Invalid number of fractions per decade: 101.", true},
        {decades + "decade_fractions_number: 1.0e+300", "Invalid number of fractions per decade: 2147483647.", true},
        {decades + "decade_fractions_scale: diameter_custom, decade_fractions_from: 5, decade_fractions_to: 5",
         "Invalid range of decade fractions: 5 to 5.", true},
        {decades + "decade_fractions_scale: mobility_custom, decade_fractions_from: 0",
         "Invalid range of decade fractions: 0 to 1000.", true},
        {decades + "decade_fractions_scale: diameter_custom, decade_fractions_to: .nan",
         "Invalid range of decade fractions: 1 to nan.", true},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.field.toStdString());
        const ExportSetup setup = setupOf(row.field);
        EXPECT_EQ(setup.errors.join("|").toStdString(), row.error);
        EXPECT_EQ(setup.fields.size(), row.isKept);
        if (row.isKept) {
            EXPECT_FALSE(std::get<ConcentrationField>(setup.fields[0]).decades.isEnabled);
        }
    }
}

TEST(ExportSetup, GeneralKeysOfAWrongTypeKeepTheirDefaults)
{
    const ExportSetup setup = setupOf("type: variable", "output_file: 3, field_separator: '', time_format: [],"
                                                        "file_name_add_date: 1, opmodes: ions, comment_lines: true");
    EXPECT_EQ(setup.errors.size(), 5);
    EXPECT_TRUE(setup.general.commentLines);
    EXPECT_TRUE(setup.general.outputFile.isNull() && !setup.general.addDate && setup.general.opmodes.isEmpty());
    EXPECT_EQ(setup.general.separator + setup.general.timeFormat, "\t%Y-%m-%d %H:%M:%s");
    for (const char *separator : {"\\n", "a\\rb", "\\\"", "\\0"})
        EXPECT_EQ(setupOf({}, QByteArray("field_separator: \"") + separator + '"').general.separator, "\t")
            << separator;
}

TEST(ExportSetup, TreesThatAreNoSetupAreRefused)
{
    for (const char *text : {"", "[]", "general: {}", "fields: []", "general: []\nfields: []",
                             "general: {}\nfields: {}", "general: {}\nfields: []\nquilvane_data_export_version: 2"})
        EXPECT_THROW(exportSetupFrom(treeOf(text)), SetupError) << text;
    EXPECT_NO_THROW(exportSetupFrom(treeOf("general: {}\nfields: []\nquilvane_data_export_version: 1")));
    EXPECT_THROW(loadExportSetup("/"), SetupError);
}

TEST(CustomFractions, PairNeighboursOfALine)
{
    const struct {
        const char *text;
        std::vector<Limits> fractions;
        QStringList errors;
    } table[] = {
        {"1 3 10", {{1, 3}, {3, 10}}, {}},
        {" 1\t 3 \r\n\n 4  2 \n", {{1, 3}, {4, 2}}, {}},
        {"1\n3", {}, {}},
        {"1 x 3 -2 0 nan inf 1,5 1e1",
         {{1, 3}, {3, 10}},
         {"Invalid custom limit 'x'.", "Invalid custom limit '-2'.", "Invalid custom limit '0'.",
          "Invalid custom limit 'nan'.", "Invalid custom limit 'inf'.", "Invalid custom limit '1,5'."}},
    };
    for (const auto &row : table) {
        QStringList errors;
        EXPECT_EQ(customFractions(row.text, &errors), row.fractions) << row.text;
        EXPECT_EQ(errors, row.errors) << row.text;
    }
    QStringList errors;
    customFractions(QString("x ").repeated(100'000), &errors);
    EXPECT_EQ(errors.size(), 21) << "a flood of errors is cut";
}
