#include "datafiles/parsing/numberparser.h"

#include "util/numeric.h"

#include <double-conversion/string-to-double.h>

#include <QtEndian>

#include <cstdint>
#include <cstring>

namespace {

__extension__ typedef unsigned __int128 Wide;

// All exact as doubles, so that one multiplication or division of an integer below 2^53 rounds once: correctly.
constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int largestPower = 22;

// Characters lie in a word in the order of the text, the first one lowest. Both words hold characters less '0'.
constexpr std::uint64_t repeated(std::uint8_t byte)
{
    return 0x0101010101010101ull * byte;
}
constexpr std::uint64_t pointLessZero = '.' ^ '0';

/// Bit 7 of each byte that isn't 0 to 9.
std::uint64_t nonDigits(std::uint64_t word)
{
    return (((word & repeated(0x7f)) + repeated(0x76)) | word) & repeated(0x80);
}

/// The number that eight digits make.
std::uint64_t eightDigits(std::uint64_t word)
{
    word = word * 10 + (word >> 8);
    return ((word & 0x000000ff000000ffull) * 0x000f424000000064ull +
            ((word >> 16) & 0x000000ff000000ffull) * 0x0000271000000001ull) >>
           32;
}

std::uint64_t load(const char *text)
{
    return qFromLittleEndian<std::uint64_t>(text) ^ repeated('0');
}

struct Decimal {
    std::uint64_t digits;
    int decimals; ///< digits behind the point; -1: no such number
};
constexpr Decimal notPlain{0, -1};

/// Up to 8 characters: digits with at most one point among them.
Decimal shortDecimal(const char *text, unsigned size)
{
    std::uint64_t word = load(text) << (64 - 8 * size); // ends at the top; zeros come in before the number
    const std::uint64_t odd = nonDigits(word);
    if (odd == 0)
        return {eightDigits(word), 0};
    const unsigned place = unsigned(__builtin_ctzll(odd)) & ~7u;
    if ((odd & (odd - 1)) != 0 || ((word >> place) & 0xff) != pointLessZero || size < 2)
        return notPlain;
    const std::uint64_t before = (std::uint64_t(1) << place) - 1;
    word = (word & ~((before << 8) | 0xff)) | ((word & before) << 8);
    return {eightDigits(word), 7 - int(place / 8)};
}

/// 9 to 16 characters, of which 15 may be digits.
Decimal longDecimal(const char *text, unsigned size)
{
    Wide word = (Wide(load(text + 8)) << 64 | load(text)) << (128 - 8 * size);
    const std::uint64_t oddLow = nonDigits(std::uint64_t(word));
    const std::uint64_t oddHigh = nonDigits(std::uint64_t(word >> 64));
    int decimals = 0;
    if ((oddLow | oddHigh) != 0) {
        const unsigned place =
            (oddLow ? unsigned(__builtin_ctzll(oddLow)) : 64 + unsigned(__builtin_ctzll(oddHigh))) & ~7u;
        const bool single = oddLow ? (oddLow & (oddLow - 1)) == 0 && oddHigh == 0 : (oddHigh & (oddHigh - 1)) == 0;
        if (!single || (std::uint64_t(word >> place) & 0xff) != pointLessZero)
            return notPlain;
        const Wide before = (Wide(1) << place) - 1;
        word = (word & ~((before << 8) | 0xff)) | ((word & before) << 8);
        decimals = 15 - int(place / 8);
    } else if (size == 16) {
        return notPlain;
    }
    return {eightDigits(std::uint64_t(word)) * 100000000 + eightDigits(std::uint64_t(word >> 64)), decimals};
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Cuts "e", a sign and two digits off the end, as printed numbers have them. False if they are not there.
bool takeExponent(TextView &text, int *exponent)
{
    const char *e = text.data() + text.size() - 4;
    if (*e != 'e' || (e[1] != '+' && e[1] != '-') || !isDigit(e[2]) || !isDigit(e[3]))
        return false;
    *exponent = (e[2] - '0') * 10 + (e[3] - '0');
    if (e[1] == '-')
        *exponent = -*exponent;
    text.remove_suffix(4);
    return true;
}

/// The sign bit set or not, without a branch that would be guessed wrong at every other number.
double withSign(double magnitude, bool negative)
{
    std::uint64_t bits;
    std::memcpy(&bits, &magnitude, sizeof bits);
    bits |= std::uint64_t(negative) << 63;
    std::memcpy(&magnitude, &bits, sizeof bits);
    return magnitude;
}

/// Up to 16 characters without sign and exponent.
Decimal plainDecimal(const char *text, std::size_t size, const char *readableEnd)
{
    char copy[16];
    if (readableEnd - text < 16) {
        std::memset(copy, 0, sizeof copy);
        std::memcpy(copy, text, size);
        text = copy;
    }
    return size <= 8 ? shortDecimal(text, unsigned(size)) : longDecimal(text, unsigned(size));
}

/// The numbers that day files are full of: sign, up to 15 digits with a point, small exponent. False for all else.
bool parsePlain(TextView text, const char *readableEnd, double *value)
{
    const bool negative = text.front() == '-';
    text.remove_prefix(negative);
    if (text.size() - 1 >= 20) // empty or long
        return false;
    int exponent = 0;
    Decimal decimal = notPlain;
    if (text.size() <= 16)
        decimal = plainDecimal(text.data(), text.size(), readableEnd);
    if (decimal.decimals < 0) {
        if (text.size() < 5 || !takeExponent(text, &exponent))
            return false;
        decimal = plainDecimal(text.data(), text.size(), readableEnd);
    }
    const int power = exponent - decimal.decimals;
    if (decimal.decimals < 0 || power < -largestPower || power > largestPower)
        return false;
    const auto digits = double(std::int64_t(decimal.digits));
    *value = withSign(power <= 0 ? digits / powersOfTen[-power] : digits * powersOfTen[power], negative);
    return true;
}

double parseUnusual(TextView text)
{
    using double_conversion::StringToDoubleConverter;
    static const StringToDoubleConverter converter(StringToDoubleConverter::ALLOW_CASE_INSENSIBILITY, noValue, noValue,
                                                   "inf", "nan");
    int used = 0;
    return converter.StringToDouble(text.data(), int(text.size()), &used);
}

} // namespace

double parseField(TextView field, const char *readableEnd)
{
    double value;
    if (!field.empty() && parsePlain(field, readableEnd, &value))
        return value;
    return field.empty() ? noValue : parseUnusual(field);
}

void parseFields(TextView line, const std::uint32_t *ends, std::size_t first, double *out, std::size_t count)
{
    const char *text = line.data(), *readableEnd = text + line.size();
    std::size_t begin = first ? ends[first - 1] + 1 : 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t end = ends[first + i];
        out[i] = parseField(TextView(text + begin, end - begin), readableEnd);
        begin = end + 1;
    }
}
