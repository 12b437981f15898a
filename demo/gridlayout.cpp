#include "demo/gridlayout.h"

#include "util/filereplacement.h"

#include <QDir>

namespace Demo {

namespace {

// For people to read and to change.
const char layouts[] = R"(# Tables of the dock "Record variables".
cols:
  what: {}
  neg: {title: Negative, width_str: "-0000.00 l/min"}
  pos: {title: Positive, width_str: "-0000.00 l/min"}
  value: {title: Value, width_str: "0000.00 (target 00.0) hPa"}
rows:
  sheath:
    what: {text: Sheath flow}
    neg: {text: "{:.2f} l/min", variables: [sheath_flow_neg.mean], align: right}
    pos: {text: "{:.2f} l/min", variables: [sheath_flow_pos.mean], align: right}
  analyser:
    what: {text: Analyser}
    neg: {text: "{:.1f} V", variables: [analyser_voltage_neg.mean], align: right}
    pos: {text: "{:.1f} V", variables: [analyser_voltage_pos.mean], align: right}
  charger:
    what: {text: Charger, font_weight: bold}
    neg: {text: "{:.3g} nA", variables: [charger_current_neg.mean], align: right, font_weight: bold}
    pos: {text: "{:.3g} nA", variables: [charger_current_pos.mean], align: right, font_weight: bold}
  temperature:
    what: {text: Temperature}
    value: {text: "{:.2f} °C", variables: [temperature.mean], align: right}
  humidity:
    what: {text: Humidity}
    value: {text: "{:.1f} %", variables: [relative_humidity.mean], align: right}
  pressure:
    what: {text: Pressure}
    value: {text: "{:.1f} hPa", variables: [pressure.mean], align: right}
  heater:
    what: {text: Inlet heater}
    value: {text: "{:.1f} (target {:.1f}) °C", variables: [inlet_heater, tgt_inlet_heater], align: right, color: "#3465a4"}
layouts:
  - name: Analysers
    rows: [sheath, analyser, charger]
    cols: [what, neg, pos]
    first_column_is_header: true
  - name: Sample
    rows: [temperature, humidity, pressure, heater]
    cols: [what, value]
    first_column_is_header: true
)";

} // namespace

bool writeGridLayouts(const QString &folder)
{
    return replaceFile(QDir(folder).filePath(QStringLiteral("var_grid_layouts.yaml")), QByteArray(layouts)).isNull();
}

} // namespace Demo
