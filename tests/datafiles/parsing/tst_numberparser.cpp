#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/numberparser.h"

#include <double-conversion/string-to-double.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>

namespace {

double reference(const std::string &text)
{
    using double_conversion::StringToDoubleConverter;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    static const StringToDoubleConverter converter(StringToDoubleConverter::ALLOW_CASE_INSENSIBILITY, nan, nan, "inf",
                                                   "nan");
    int used = 0;
    return converter.StringToDouble(text.data(), int(text.size()), &used);
}

std::uint64_t bitsOf(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// The field alone in memory of its own size, and in front of other bytes that may be looked at.
void expectLikeReference(const std::string &text)
{
    const std::uint64_t expected = bitsOf(reference(text));
    const std::unique_ptr<char[]> alone(new char[text.size() + 1]);
    std::memcpy(alone.get(), text.data(), text.size());
    ASSERT_EQ(bitsOf(parseField(TextView(alone.get(), text.size()))), expected) << '"' << text << '"';
    for (const char *behind : {"\t7.5e-05\t1.25\t99999999999", "9999999999999999", ".e-09\n"}) {
        const std::string line = text + behind;
        ASSERT_EQ(bitsOf(parseField(TextView(line.data(), text.size()), line.data() + line.size())), expected)
            << '"' << text << "\" before " << behind;
    }
}

TEST(ParseField, PlainTruths)
{
    EXPECT_EQ(parseField("12.5"), 12.5);
    EXPECT_EQ(parseField("-1.23457e-05"), -1.23457e-05);
    EXPECT_EQ(parseField("INF"), INFINITY);
    EXPECT_EQ(parseField("-inf"), -INFINITY);
    EXPECT_EQ(parseField("1e400"), INFINITY);
    EXPECT_EQ(bitsOf(parseField("")), 0x7FF8000000000000u);
    for (const char *junk : {"abc", "1,5", "1.5abc", " 1.5", "1.5 ", "nan(123)", "infinity", "0x10", "1e", ".", "-"})
        EXPECT_TRUE(std::isnan(parseField(junk))) << junk;
}

TEST(ParseField, OddBytesAndLongFieldsAreLikeTheReferenceToTheBit)
{
    for (const char *field : {"1 000", "\x80", "1\xb2", "\xff\xff\xff\xff", "\t1", "1\r"})
        expectLikeReference(field);
    for (const auto &field :
         {std::string("\0", 1), std::string("1\0", 2), std::string("\0001", 2), std::string("1\0002", 3)})
        expectLikeReference(field);
    for (const int digits : {16, 17, 100, 800, 5000})
        for (const char *end : {"", ".", ".5", "e-05", "e+05"})
            expectLikeReference(std::string(std::size_t(digits), '7') + end);
    expectLikeReference("0." + std::string(500, '0') + "1");
}

TEST(ParseField, RandomFieldsAreLikeTheReferenceToTheBit)
{
    std::mt19937_64 random(20190912);
    char text[64];
    for (int i = 0; i < 300000; ++i) {
        const double value = std::ldexp(double(std::int64_t(random())), int(random() % 140) - 130);
        const int precision = random() % 4 ? 6 : 1 + int(random() % 17);
        const char *form = random() % 3 ? "%.*g" : "%.*f";
        int size = std::snprintf(text, sizeof text, form, precision > 9 && form[2] == 'f' ? 9 : precision, value);
        for (char *c = text; *c; ++c) // whatever the locale's point
            if (*c == ',')
                *c = '.';
        expectLikeReference(std::string(text, std::size_t(std::min<int>(size, sizeof text - 1))));
    }
    const char alphabet[] = "0123456789012345678901234567890123456789....--++eeE/: ,nainfx";
    for (int i = 0; i < 300000; ++i) {
        std::string field(random() % 20, '\0');
        for (char &c : field)
            c = alphabet[random() % (sizeof alphabet - 1)];
        expectLikeReference(field);
    }
}

TEST(FieldSplitter, CutsAsAPlainSplitDoes)
{
    std::mt19937 random(7);
    FieldSplitter splitter;
    for (int i = 0; i < 3000; ++i) {
        QByteArray line(int(random() % 90), 'x');
        for (char &c : line)
            c = random() % 5 ? 'x' : '\t';
        const QList<QByteArray> expected = line.split('\t');
        const auto limit = std::size_t(random() % 40);
        splitter.split(viewOf(line), '\t', limit);
        ASSERT_EQ(splitter.size(), std::size_t(expected.size()));
        for (std::size_t k = 0; k < std::min(limit, splitter.size()); ++k)
            ASSERT_EQ(splitter[k], viewOf(expected[int(k)]));
    }
}

} // namespace
