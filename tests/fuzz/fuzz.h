#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What a fuzz target defines: it takes any bytes, and aborts when something that must hold doesn't.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Doesn't hold: %s\n", what);
    std::abort();
}
