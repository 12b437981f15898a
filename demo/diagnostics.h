#pragma once

#include "demo/atmosphere.h"
#include "demo/random.h"
#include "records/recordmetadata.h"
#include "util/numeric.h"

namespace Demo {

/// The diagnostic variables of the instrument: a dozen quantities, each with the mean and the deviation of a record, and
/// variables that stand beside them: targets, controls, raw values and the like.
class DiagnosticSource {
public:
    /// Places in quantities().
    enum Quantity {
        Temperature,
        Humidity,
        Pressure,
        SampleFlow,
        SheathFlowNeg,
        SheathFlowPos,
        FilterVoltage,
        ChargerCurrentNeg,
        ChargerCurrentPos,
        AnalyserVoltageNeg,
        AnalyserVoltagePos,
        ElectronicsTemperature,
        QuantityCount
    };

    /// Appends the variables "<name>.mean" and "<name>.stddev" of each quantity, and those beside them.
    static void describe(Spectrometer::RecordMetadata &metadata);
    static int meanSlot(Quantity quantity) { return 2 * quantity; }
    static int deviationSlot(Quantity quantity) { return 2 * quantity + 1; }

    /// All variables of a record. While the charger has failed its currents are gone.
    RealVector measure(const Weather &weather, double day, bool charging, bool chargerFailed, Random &random) const;
};

} // namespace Demo
