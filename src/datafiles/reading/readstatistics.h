#pragma once

#include <cstdint>

/// The findings of a read so far.
struct ReadStatistics {
    std::int64_t rows = 0;        ///< lines of all kinds
    std::int64_t ignoredRows = 0; ///< lines that no reader took: outside of any block, behind a bad header, of a header
                                  ///< without an end, too long
    std::int64_t bytes = 0;
};
