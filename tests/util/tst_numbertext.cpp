#include "util/numbertext.h"

#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

std::string ours(double value)
{
    char text[numberTextRoom];
    return std::string(text, writeNumber(text, value));
}

std::string qts(double value)
{
    return QString::number(value, 'g', 6).toStdString();
}

/// The value and its nearest neighbours, with both signs.
void expectAsQtAround(double value)
{
    for (double v : {value, std::nextafter(value, 0.0), std::nextafter(value, std::numeric_limits<double>::infinity())})
        for (double signedValue : {v, -v})
            ASSERT_EQ(ours(signedValue), qts(signedValue)) << "for " << value;
}

} // namespace

TEST(NumberText, KnownTexts)
{
    const double inf = std::numeric_limits<double>::infinity();
    const std::pair<double, const char *> cases[] = {{-0.0, "0"},         {-1.5, "-1.5"},
                                                     {999999.5, "1e+06"}, {1.5e-300, "1.5e-300"},
                                                     {-inf, "-inf"},      {-std::nan(""), "nan"}};
    for (const auto &[value, text] : cases)
        EXPECT_EQ(ours(value), text);
    for (double value : {0.0, 1.0, 123456.5, 9582.125, 999999.4, 0.0001, 0.00001, 1e100, 1e6, 1234567.0, inf, 0.1})
        expectAsQtAround(value);
}

TEST(NumberText, EveryPowerOfTenAndItsNeighbours)
{
    for (int power = -320; power <= 308; ++power)
        for (double factor : {1.0, 1.5, 9.99999, 9.999995, 9.999994999, 1.000005})
            expectAsQtAround(factor * std::pow(10.0, power));
}

TEST(NumberText, ExactTies)
{
    // Halves, quarters and eighths that have a five as their seventh digit and nothing behind it, and their neighbours.
    std::mt19937_64 random(7);
    for (int i = 0; i < 40000; ++i) {
        const double whole = double(100000 + random() % 900000);
        expectAsQtAround(whole + 0.5);
        expectAsQtAround(std::floor(whole / 10) + 0.25 + 0.5 * double(random() % 2));
        expectAsQtAround(std::floor(whole / 100) + 0.125 + 0.25 * double(random() % 4));
        expectAsQtAround((whole * 10 + 5) * 1000);
    }
}

TEST(NumberText, DecimalsNearTies)
{
    // A seven-digit decimal that ends in five is nearly always a tie that the binary number just misses.
    std::mt19937_64 random(11);
    for (int i = 0; i < 150000; ++i) {
        const double decimal = double(random() % 1000000) * 10 + 5;
        expectAsQtAround(decimal * std::pow(10.0, int(random() % 45) - 22));
        expectAsQtAround(decimal / std::pow(10.0, int(random() % 22)));
    }
}

TEST(NumberText, RandomValues)
{
    std::mt19937_64 random(13);
    for (int i = 0; i < 1500000; ++i) {
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        ASSERT_EQ(ours(value), qts(value)) << bits; // all exponents alike
        const double usual =
            (double(random() >> 11) / 9007199254740992.0 - 0.3) * std::pow(10.0, int(random() % 20) - 8);
        ASSERT_EQ(ours(usual), qts(usual)) << usual;
    }
}
