#include "demo/eventflags.h"

#include "records/recordflagparser.h"

namespace Demo {

namespace {

/// `subject` are further entries of the definition: the variables and electrometers that the flag is about.
EventFlags::Pointer makeFlag(const char *type, const char *message, const char *subject = "")
{
    return Spectrometer::makeRecordFlag(QStringLiteral("{type: \"%1\", message: \"%2\"%3}")
                                            .arg(QLatin1String(type), QLatin1String(message), QLatin1String(subject)));
}

} // namespace

const EventFlags &EventFlags::instance()
{
    // The electrometers are those whose zero drifts the most, and those behind the positive charger.
    static const EventFlags flags{
        makeFlag("note", "Inlet was cleaned"),
        makeFlag("note", "Electrometer zero drifts with temperature",
                 ", vars: [electronics_temperature.mean], elms: [0, 13, 26, 39]"),
        makeFlag("warning", "Sample relative humidity is high", ", vars: [relative_humidity.mean]"),
        makeFlag("warning", "Charger current is below its target",
                 ", vars: [charger_current_pos.mean], elms: [21, 22, 23, 24, 25, 26, 27]"),
        makeFlag("failure", "Positive charger has failed",
                 ", vars: [charger_current_pos.mean, filter_voltage.mean], elms: [21, 22, 23, 24, 25, 26, 27, 28, 29, "
                 "30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41]")};
    return flags;
}

} // namespace Demo
