#include "datafiles/parsing/valuereader.h"
#include "support/seeds.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

void expectAsTheToolkit(const std::string &text)
{
    bool isNumber = false;
    const double expected = QString::fromStdString(text).toDouble(&isNumber);
    double value = -1;
    ASSERT_EQ(readOldNumber(text, &value), isNumber) << text;
    if (!isNumber)
        return;
    ASSERT_EQ(std::isnan(value), std::isnan(expected)) << text;
    if (!std::isnan(expected)) {
        ASSERT_EQ(value, expected) << text;
        ASSERT_EQ(std::signbit(value), std::signbit(expected)) << text;
    }
}

class OldNumbers : public Seeded<> {};

} // namespace

INSTANTIATE_TEST_SUITE_P(Seeds, OldNumbers, ::testing::ValuesIn(seeds(3)));

TEST_P(OldNumbers, AreReadAsTheToolkitReadsThem)
{
    const std::string alphabet = "0123456789+-.eE naifx_,";
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (int k = pick(0, 9); k > 0; --k)
            text += alphabet[std::size_t(pick(0, pick(0, 1) ? 14 : int(alphabet.size()) - 1))];
        expectAsTheToolkit(text);
    }
}

TEST(OldNumber, OddOnes)
{
    for (const char *text : {"",
                             "0",
                             "-0",
                             "0.000",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "4.9e-324",
                             "inf",
                             "-INF",
                             "nan",
                             "NaN",
                             "infinity",
                             ".5",
                             "5.",
                             "+5",
                             "1e5",
                             "1.e+5",
                             "0x10",
                             "1,5",
                             "1 5",
                             "\xc2\xa0"
                             "5",
                             "1e",
                             "e5",
                             "--1",
                             "123456789012345678901234567890"})
        expectAsTheToolkit(text);
}
