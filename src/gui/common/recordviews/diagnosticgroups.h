#pragma once

#include "records/recordmetadata.h"

#include <array>
#include <vector>

namespace RecordViews {

/// The variables that tell about one quantity; one of them, the mean, is the main variable.
struct ParameterGroup {
    enum Slot {
        Mean,
        MeanDeviation,
        OnState,
        OnStateDeviation,
        Output,
        OutputDeviation,
        Target,
        TargetDeviation,
        Input,
        InputDeviation,
        ValueTarget,
        ValueTargetDeviation,
        SlotCount
    };

    /// Null where the quantity has none. The metadata own them.
    std::array<const Spectrometer::SystemVariable *, SlotCount> slots{};

    const Spectrometer::SystemVariable &main() const { return *slots[Mean]; }
};

using VariableList = QVector<std::shared_ptr<Spectrometer::SystemVariable>>;

/// The groups in the order of their main variables, told by the variables' names. Every variable is in some group: one
/// that no main variable claims is a main variable, wherever it stands in the list. A companion's deviation goes with
/// its mean, and stands alone without. Of variables with equal names the first one is claimed. Takes time in
/// proportion to the number of variables.
std::vector<ParameterGroup> groupVariables(const VariableList &variables);

} // namespace RecordViews
