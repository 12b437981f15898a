#pragma once

#include <cstddef>

/// results[i] = log10(values[i]), several at once: within 2 units in the last place, and exact for powers of ten up to
/// 22. Zeros give minus infinity; negative numbers and NaN give NaN. The arrays may be the same one.
void log10OfEach(const double *values, double *results, std::size_t size);
