#include "demo/diagnostics.h"

#include <cmath>

namespace Demo {

namespace {

struct QuantityText {
    const char *name;
    const char *humanname;
    const char *unit;
    double unrest; ///< usual deviation within a record
};

constexpr QuantityText quantityTexts[DiagnosticSource::QuantityCount] = {
    {"temperature", "Sample temperature", "°C", 0.05},
    {"relative_humidity", "Sample relative humidity", "%", 0.3},
    {"pressure", "Sample pressure", "hPa", 0.08},
    {"sample_flow", "Sample flow", "l/min", 0.12},
    {"sheath_flow_neg", "Negative analyser sheath flow", "l/min", 0.09},
    {"sheath_flow_pos", "Positive analyser sheath flow", "l/min", 0.1},
    {"filter_voltage", "Electrostatic filter", "V", 0.6},
    {"charger_current_neg", "Negative charger current", "nA", 0.35},
    {"charger_current_pos", "Positive charger current", "nA", 0.4},
    {"analyser_voltage_neg", "Negative analyser voltage", "V", 0.25},
    {"analyser_voltage_pos", "Positive analyser voltage", "V", 0.25},
    {"electronics_temperature", "Electronics temperature", "°C", 0.02},
};

struct VariableText {
    const char *name;
    const char *humanname;
    const char *unit;
};

/// Beside the quantities, in this order.
enum Companion {
    ChargerTarget,
    ChargerControl,
    ChargerRaw,
    ChargerRawDeviation,
    ChargerOnState,
    FilterSensor,
    FilterSensorDeviation,
    Heater,
    HeaterSensor,
    HeaterTarget,
    CompanionCount
};
constexpr VariableText companionTexts[CompanionCount] = {
    {"charger_current_pos_target.mean", "Positive charger current target", "nA"},
    {"charger_current_pos_control.mean", "Positive charger control", "%"},
    {"charger_current_pos_raw.mean", "Positive charger current signal", "V"},
    {"charger_current_pos_raw.stddev", "Positive charger current signal deviation", "V"},
    {"charger_current_pos_enabled.mean", "Positive charger current while on", "nA"},
    {"filter_sensor_voltage.mean", "Electrostatic filter sensor", "V"},
    {"filter_sensor_voltage.stddev", "Electrostatic filter sensor deviation", "V"},
    {"inlet_heater", "Inlet heater", "°C"},
    {"sens_inlet_heater", "Inlet heater sensor", "V"},
    {"tgt_inlet_heater", "Inlet heater target", "°C"},
};

constexpr double chargerTarget = 31;    // nA
constexpr double chargerSignal = 0.08;  // V for each nA
constexpr double filterDivider = 0.015; // of the filter's voltage
constexpr double heaterTarget = 30;     // °C

void measureCompanions(double *values, const RealVector &quantities, bool charging, Random &random)
{
    const double current = quantities[std::size_t(DiagnosticSource::meanSlot(DiagnosticSource::ChargerCurrentPos))];
    const double filter = quantities[std::size_t(DiagnosticSource::meanSlot(DiagnosticSource::FilterVoltage))];
    values[ChargerTarget] = charging ? chargerTarget : 0;
    values[ChargerControl] = charging ? 42 + chargerTarget - current : 0;
    values[ChargerRaw] = 0.02 + chargerSignal * current;
    values[ChargerRawDeviation] = 0.03 * std::exp(0.25 * random.normal());
    values[ChargerOnState] = charging ? current : noValue;
    values[FilterSensor] = filterDivider * filter;
    values[FilterSensorDeviation] = 0.004 * std::exp(0.25 * random.normal());
    values[Heater] = heaterTarget + 0.1 * random.normal();
    values[HeaterSensor] = 0.01 * values[Heater];
    values[HeaterTarget] = heaterTarget;
}

void addVariable(Spectrometer::RecordMetadata &metadata, const QString &name, const QString &humanname,
                 const QString &unit)
{
    auto variable = std::make_shared<Spectrometer::SystemVariable>();
    variable->name = name;
    variable->humanname = humanname;
    variable->unit = unit;
    variable->index = metadata.variables.size();
    variable->valueIndex = metadata.variableCount++;
    metadata.variables << variable;
}

} // namespace

void DiagnosticSource::describe(Spectrometer::RecordMetadata &metadata)
{
    for (const QuantityText &text : quantityTexts) {
        const QString name = QString::fromUtf8(text.name);
        const QString humanname = QString::fromUtf8(text.humanname);
        addVariable(metadata, name + QStringLiteral(".mean"), humanname, QString::fromUtf8(text.unit));
        addVariable(metadata, name + QStringLiteral(".stddev"), humanname + QStringLiteral(" deviation"),
                    QString::fromUtf8(text.unit));
    }
    for (const VariableText &text : companionTexts)
        addVariable(metadata, QString::fromUtf8(text.name), QString::fromUtf8(text.humanname),
                    QString::fromUtf8(text.unit));
}

RealVector DiagnosticSource::measure(const Weather &weather, double day, bool charging, bool chargerFailed,
                                     Random &random) const
{
    double means[QuantityCount];
    const double warmth = weather.temperature - 12.5;
    means[Temperature] = weather.temperature + 4; // the inlet is warmer than the air
    means[Humidity] = weather.relativeHumidity * 0.8;
    means[Pressure] = weather.pressure - 1.9;
    means[SampleFlow] = 60 - 0.05 * warmth;
    means[SheathFlowNeg] = 29.8 + 0.1 * std::sin(9 * day);
    means[SheathFlowPos] = 30.1 + 0.1 * std::sin(7 * day + 1);
    means[FilterVoltage] = charging ? 148 : 0.4;
    means[ChargerCurrentNeg] = charging ? 27 + 0.1 * warmth : 0;
    means[ChargerCurrentPos] = charging && !chargerFailed ? 31 + 0.1 * warmth : 0;
    const double hour = 24 * (day - std::floor(day));
    if (hour > 20.3 && hour < 21.2) // its needle is dirty
        means[ChargerCurrentPos] *= 0.85;
    means[AnalyserVoltageNeg] = -798 + 0.03 * warmth;
    means[AnalyserVoltagePos] = 801 + 0.03 * warmth;
    means[ElectronicsTemperature] = 31 + 0.6 * warmth;

    RealVector values(2 * QuantityCount + CompanionCount);
    for (int i = 0; i < QuantityCount; ++i) {
        const bool off = means[i] == 0;
        const double unrest = off ? 0.01 : quantityTexts[i].unrest;
        values[std::size_t(meanSlot(Quantity(i)))] = means[i] + 0.2 * unrest * random.normal();
        values[std::size_t(deviationSlot(Quantity(i)))] = unrest * std::exp(0.25 * random.normal());
    }
    measureCompanions(&values[2 * QuantityCount], values, charging, random);
    return values;
}

} // namespace Demo
