#pragma once

#include "store/datastore.h"

#include <QString>

#include <vector>

/// A report on how well the spectra in memory explain the currents that they were made from.
namespace InversionStatistics {

/// The elements at 10, 50 and 90 per cent of the sorted values, at least one of which there must be.
struct Quantiles {
    double q10 = 0;
    double q50 = 0;
    double q90 = 0;
};
Quantiles quantiles(std::vector<double> values);

/// "Inversion statistics report:" and a table in plain text: one row for each spectrum description with more than ten
/// root mean square errors of currents, ordered by name, inverter name and hash.
QString report(const Datastore &store);

} // namespace InversionStatistics
