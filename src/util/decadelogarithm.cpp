#include "util/decadelogarithm.h"

#include "util/functionclones.h"

#include <cstdint>
#include <cstring>
#include <limits>

namespace {

constexpr std::uint64_t mantissaBits = 0x000fffffffffffff;
constexpr std::uint64_t oneBits = 0x3ff0000000000000;        // of 1.0
constexpr std::uint64_t rootOfHalfBits = 0x3fe6a09e00000000; // of sqrt(0.5), a little less
constexpr std::uint64_t twoTo52Bits = 0x4330000000000000;    // of 2^52, where the last bit counts 1
constexpr double twoTo52 = 4503599627370496.0;
constexpr double twoTo54 = 18014398509481984.0;

// log10(2) in two parts: the first has so few bits that its products with exponents are exact.
constexpr double log10Of2High = 3.01029995663611771306e-01, log10Of2Low = 3.69423907715893078616e-13;
constexpr double log10OfE = 4.34294481903251816668e-01;

template<typename To, typename From>
inline To bitsAs(From from)
{
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

/// ln(1 + f) for 1 + f from sqrt(0.5) to sqrt(2): the series of atanh(s) with s = f / (2 + f), its last terms by a
/// polynomial of least greatest error.
inline double lnOfOnePlus(double f)
{
    const double s = f / (2.0 + f), z = s * s, w = z * z;
    const double even = w * (3.999999999940941908e-01 + w * (2.222219843214978396e-01 + w * 1.531383769920937332e-01));
    const double odd =
        z * (6.666666666666735130e-01 +
             w * (2.857142874366239149e-01 + w * (1.818357216161805012e-01 + w * 1.479819860511658591e-01)));
    const double halfSquare = 0.5 * f * f;
    return f - (halfSquare - s * (halfSquare + (even + odd)));
}

/// Without branches, so that the loop over it takes several numbers at once.
inline double log10Of(double value)
{
    const bool isTiny = value < std::numeric_limits<double>::min();
    const auto bits = bitsAs<std::uint64_t>(value * (isTiny ? twoTo54 : 1.0)) + (oneBits - rootOfHalfBits);
    const double exponent = bitsAs<double>((bits >> 52) | twoTo52Bits) - (twoTo52 + 1023) - (isTiny ? 54.0 : 0.0);
    const auto mantissa = bitsAs<double>((bits & mantissaBits) + rootOfHalfBits);
    const double finite = exponent * log10Of2Low + log10OfE * lnOfOnePlus(mantissa - 1.0) + exponent * log10Of2High;
    const double positive = value < std::numeric_limits<double>::infinity() ? finite : value;
    const double belowZero =
        value == 0 ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::quiet_NaN();
    return value > 0 ? positive : belowZero;
}

} // namespace

MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
void log10OfEach(const double *values, double *results, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        results[i] = log10Of(values[i]);
}
