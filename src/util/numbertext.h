#pragma once

/// Room for the longest text that writeNumber makes.
constexpr int numberTextRoom = 32;

/// Writes exactly the bytes of QString::number(value, 'g', 6) to `out`, without a NUL, and returns the end. Ties round
/// away from zero, -0 is "0", others are "nan", "inf" and "-inf". `out` must have room for numberTextRoom bytes.
char *writeNumber(char *out, double value);
