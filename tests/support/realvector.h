#pragma once

#include "util/numeric.h"

#include <algorithm>

inline RealVector realVector(std::initializer_list<double> values)
{
    RealVector vector(values.size());
    std::copy(values.begin(), values.end(), vector.begin());
    return vector;
}
