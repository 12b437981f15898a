#include "gui/common/recordviews/diagnosticgroups.h"
#include "gui/common/recordviews/diagnosticvalue.h"
#include "gui/common/recordviews/variablefilter.h"
#include "support/instrument.h"

#include <gtest/gtest.h>

#include <limits>

using namespace RecordViews;

namespace {

/// Each group as its main variable's name and, by slot, the others'.
QStringList groupTexts(const QStringList &names)
{
    const auto metadata = testMetadata({}, {}, names);
    QStringList texts;
    for (const ParameterGroup &group : groupVariables(metadata->variables)) {
        QString text = group.main().name;
        for (int slot = 1; slot < ParameterGroup::SlotCount; ++slot) {
            if (const auto *variable = group.slots[std::size_t(slot)])
                text += QStringLiteral(" %1:%2").arg(QString::number(slot), variable->name);
        }
        texts << text;
    }
    return texts;
}

} // namespace

TEST(DiagnosticGroups, FollowTheNames)
{
    const struct {
        QStringList names, groups;
    } cases[] = {
        {{"a.mean", "a.stddev", "a_on.mean"}, {"a.mean 1:a.stddev 2:a_on.mean"}},
        {{"a_vtgt.stddev", "a_tgt.stddev", "a_tgt.mean", "a_vout.stddev", "a_vout.mean", "a_vin.stddev", "a_vin.mean",
          "a_on.stddev", "a_on.mean", "a.stddev", "a_vtgt.mean", "a.mean"},
         {"a.mean 1:a.stddev 2:a_on.mean 3:a_on.stddev 4:a_vout.mean 5:a_vout.stddev 6:a_tgt.mean 7:a_tgt.stddev "
          "8:a_vin.mean 9:a_vin.stddev 10:a_vtgt.mean 11:a_vtgt.stddev"}},
        {{"a.mean", "a_enabled.mean", "a_raw.mean", "a_control.mean", "a_target.mean", "a_raw_target.mean"},
         {"a.mean 2:a_enabled.mean 4:a_control.mean 6:a_target.mean 8:a_raw.mean 10:a_raw_target.mean"}},
        {{"a.mean", "a.on.mean", "a.vin.mean", "a.vout.mean", "a.tgt.mean", "a.vtgt.mean", "a.vtgt.stddev"},
         {"a.mean 2:a.on.mean 4:a.vout.mean 6:a.tgt.mean 8:a.vin.mean 10:a.vtgt.mean 11:a.vtgt.stddev"}},
        {{"a_voltage.mean", "a_voltage.stddev", "a_sensor_voltage.mean", "a_sensor_voltage.stddev"},
         {"a_voltage.mean 1:a_voltage.stddev 8:a_sensor_voltage.mean 9:a_sensor_voltage.stddev"}},
        {{"a_sensor_voltage.mean", "a_sensor_voltage.stddev"}, {"a_sensor_voltage.mean 1:a_sensor_voltage.stddev"}},
        {{"tgt_a", "sens_a", "a_stddev", "ctrl_a", "a"}, {"a 1:a_stddev 4:ctrl_a 6:tgt_a 8:sens_a"}},
        {{"b", "a.stddev", "a_on.stddev"}, {"b", "a.stddev", "a_on.stddev"}},
        {{"a.mean", "a_on.stddev"}, {"a.mean", "a_on.stddev"}}, // its mean isn't there
        // One quantity may use names of several tables; where two could take a slot, the earlier table's does.
        {{"a.mean", "a_on.mean", "a_raw.mean", "a.tgt.mean", "sens_a.mean", "ctrl_a.mean"},
         {"a.mean 2:a_on.mean 4:ctrl_a.mean 6:a.tgt.mean 8:a_raw.mean", "sens_a.mean"}},
        {{"a_enabled.stddev", "a_enabled.mean", "a_on.mean", "a.mean"},
         {"a_enabled.mean 1:a_enabled.stddev", "a.mean 2:a_on.mean"}},
        // What a claimed variable would claim itself is free.
        {{"a_on_on.mean", "a_on.mean", "a.mean"}, {"a_on_on.mean", "a.mean 2:a_on.mean"}},
        {{"a.mean", "a.mean", "a.stddev", "a.stddev"}, {"a.mean 1:a.stddev", "a.mean 1:a.stddev", "a.stddev"}},
        {{"", ".mean", ".stddev", "(a+)*.mean", "(a+)*.stddev", "[.mean", "aXmean", "aXstddev"},
         {"", ".mean 1:.stddev", "(a+)*.mean 1:(a+)*.stddev", "[.mean", "aXmean", "aXstddev"}},
        {{QString(10000, 'x') + ".mean", QString(10000, 'x') + ".stddev"},
         {QStringLiteral("%1.mean 1:%1.stddev").arg(QString(10000, 'x'))}},
    };
    for (const auto &testCase : cases)
        EXPECT_EQ(groupTexts(testCase.names), testCase.groups) << qPrintable(testCase.names.join(' ').left(200));
}

TEST(DiagnosticValue, FollowsTheDeviationsDigits)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double mean, deviation;
        const char *text;
    } cases[] = {
        {noValue, 1, ""},
        {1013.25, noValue, "1e+03"},
        {20.5, 0, "20"},
        {0.123, 2e-16, "0.12"},
        {0, 0, "0"},
        {infinity, 1, "inf"},
        {5.25, infinity, "5.2"},
        {21.4321, 0.05, "21.432"},
        {21.4321, -0.05, "21.432"},
        {21.4321, 0.5, "21.43"},
        {21.4321, 5, "21.4"},
        {1234.5, 10, "1234"},
        {1234.5, 9.99, "1234.5"},
        {-0.04, 2, "-0.0"},
        {1.5, 1e-7, "1.50000000"},
        {1.5, 9.9e-8, "1.500000000e+0"},
        {1.5e-12, 2e-13, "1.50e-12"},
        {2e-13, 1.5e-12, "0.2e-12"},
        {123456, 1e-9, "1.234560000000000e+5"},
        {1e300, 3e-16, nullptr}, // any digits, no overflow
    };
    for (const auto &testCase : cases) {
        const QString text = diagnosticValueText(testCase.mean, testCase.deviation);
        if (testCase.text)
            EXPECT_EQ(text, testCase.text) << testCase.mean << " +- " << testCase.deviation;
        else
            EXPECT_TRUE(text.endsWith("e+300")) << qPrintable(text);
    }
}

TEST(VariableFilter, TakesWordsInAnyOrderAndCase)
{
    Spectrometer::SystemVariable variable;
    variable.name = "sheath_temp\u2212.mean";
    variable.humanname = "Charger \u2212 flow (max.*)";
    variable.unit = "°C";
    const QString text = VariableFilter::searchedText(variable);
    const struct {
        const char *filter;
        bool passes;
    } cases[] = {{"", true},        {"  ", true},        {"TEMP charg", true}, {"temp !sheath", false},
                 {"temp !b", true}, {"!", true},         {"! xyz", false},     {"!!", true},
                 {"°c", true},      {"Charger -", true}, {"temp-", false},     {"temp\u2212", true},
                 {"(max.*)", true}, {".*", true},        {"m.x", false},       {"flow(", false},
                 {"-flow", false},  {"(max.*)°C", false}};
    for (const auto &testCase : cases)
        EXPECT_EQ(VariableFilter(testCase.filter).passes(text), testCase.passes) << testCase.filter;
}
