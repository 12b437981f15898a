#pragma once

#include <cstddef>
#include <limits>

namespace Tsb {

/// The least and the greatest of many numbers. Numbers that aren't finite don't count.
struct FiniteRange {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return least > greatest; }
    void include(const double *values, std::size_t count);
};

} // namespace Tsb
