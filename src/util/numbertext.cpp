#include "util/numbertext.h"

#include <QString>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

/// The powers of ten that a double holds exactly.
constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// value · 10^power with a single rounding; |power| is at most 22.
inline double scaled(double value, int power)
{
    return power >= 0 ? value * powersOfTen[std::size_t(power)] : value / powersOfTen[std::size_t(-power)];
}

struct DigitPairs {
    char text[200];
    constexpr DigitPairs() : text()
    {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = char('0' + i / 10);
            text[2 * i + 1] = char('0' + i % 10);
        }
    }
};
constexpr DigitPairs digitPairs;

inline void putPair(char *out, unsigned pair)
{
    std::memcpy(out, digitPairs.text + 2 * pair, 2);
}

char *writeByQt(char *out, double value)
{
    const QByteArray text = QString::number(value, 'g', 6).toLatin1();
    std::memcpy(out, text.constData(), std::size_t(text.size()));
    return out + text.size();
}

/// Six digits, of which the first stands for 10^exponent, as "%g" lays them out. Exponents have two digits here.
inline char *layOut(char *out, unsigned sixDigits, int exponent)
{
    char digits[8];
    putPair(digits, sixDigits / 10000);
    putPair(digits + 2, sixDigits / 100 % 100);
    putPair(digits + 4, sixDigits % 100);
    int count = 6;
    while (digits[count - 1] == '0')
        --count;

    if (exponent < -4 || exponent > 5) {
        *out++ = digits[0];
        if (count > 1) {
            *out++ = '.';
            std::memcpy(out, digits + 1, 5);
            out += count - 1;
        }
        *out++ = 'e';
        *out++ = exponent < 0 ? '-' : '+';
        putPair(out, unsigned(std::abs(exponent)));
        return out + 2;
    }
    if (exponent < 0) {
        std::memcpy(out, "0.000", 5); // NOLINT(bugprone-not-null-terminated-result): the caller knows the end
        out += 1 - exponent;
        std::memcpy(out, digits, 6);
        return out + count;
    }
    const int whole = exponent + 1;
    std::memcpy(out, digits, 6);
    if (count <= whole)
        return out + whole;
    out[whole] = '.';
    std::memcpy(out + whole + 1, digits + whole, std::size_t(6 - whole));
    return out + count + 1;
}

} // namespace

char *writeNumber(char *out, double value)
{
    const double magnitude = std::fabs(value);
    if (magnitude == 0) {
        *out = '0';
        return out + 1;
    }
    // Beyond these the power of ten isn't exact. Not-a-number goes here too.
    if (!(magnitude >= 1e-16 && magnitude < 1e26))
        return writeByQt(out, value);

    std::uint64_t bits;
    std::memcpy(&bits, &magnitude, sizeof bits);
    const int binaryExponent = int(bits >> 52) - 1023;
    int exponent = (binaryExponent * 1233) >> 12; // floor(binaryExponent · log10(2)), or one off
    double six = scaled(magnitude, 5 - exponent);
    if (six >= 1e6)
        six = scaled(magnitude, 5 - ++exponent);
    else if (six < 1e5)
        six = scaled(magnitude, 5 - --exponent);

    // The scaled value is off by 6e-11 at most. What lies nearer to a tie is decided by exact arithmetic.
    unsigned digits = unsigned(six);
    const double rest = six - digits;
    if (std::fabs(rest - 0.5) < 1e-9)
        return writeByQt(out, value);
    digits += rest > 0.5;
    if (digits == 1000000) {
        digits = 100000;
        ++exponent;
    }
    if (value < 0)
        *out++ = '-';
    return layOut(out, digits, exponent);
}
