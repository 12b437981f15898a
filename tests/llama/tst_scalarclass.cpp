#include "llama/scalarclass.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Llama {

/// For the messages of failed tests.
void PrintTo(ScalarClass scalarClass, std::ostream *out)
{
    *out << "class " << int(scalarClass);
}

} // namespace Llama

namespace {

using Llama::ScalarClass;

TEST(ScalarClass, ClassesOfTexts)
{
    const struct {
        ScalarClass scalarClass;
        std::vector<const char *> texts;
    } table[] = {
        {ScalarClass::Null, {"", "~", "null", "Null", "NULL"}},
        {ScalarClass::True, {"true", "True", "TRUE", "yes", "Yes", "YES", "on", "On", "ON"}},
        {ScalarClass::False, {"false", "False", "FALSE", "no", "No", "NO", "off", "Off", "OFF"}},
        {ScalarClass::Hex, {"0x1F", "-0x1F", "+0xab,CD", "0x0", "0x80000000", "0x,"}},
        {ScalarClass::Octal, {"017", "-017", "+00", "0,7", "0777"}},
        {ScalarClass::Decimal, {"0", "+0", "-0", "1", "-12", "+98", "1,000", "12345678901", "1,"}},
        {ScalarClass::Float, {"1.5", "1.", "-0.5", "+10.25", "09.5", "1,000.5", "1.5,0", "0.", "00.1"}},
        {ScalarClass::Exponent, {"1e+5", "1E-5", "-1.5e+3", "09e+3", "017e+1", "1.e+1", "1,0e+5", "1.0e-999"}},
        {ScalarClass::PlusInf, {".inf", ".Inf", ".INF", "+.inf", "+.Inf", "+.INF"}},
        {ScalarClass::MinusInf, {"-.inf", "-.Inf", "-.INF"}},
        {ScalarClass::NaN, {".nan", ".NaN", ".NAN"}},
        {ScalarClass::Sexagesimal, {"1:30", "12:59:59", "1:3", "190:20:30.15", "0:00"}},
        {ScalarClass::Date, {"2019-09-12", "0000-99-99"}},
        {ScalarClass::Timestamp,
         {"2019-09-12T12:16:52Z", "2019-09-12t12:16:52.5Z", "2019-09-12T12:16:52+02:00", "2019-09-12 12:16:52.10 -5",
          "2019-09-12 \t 12:16:52Z", "2019-09-12 12:16:52+2"}},
        {ScalarClass::Equals, {"="}},
        {ScalarClass::Merge, {"<<"}},
    };
    for (const auto &[scalarClass, texts] : table) {
        for (const char *text : texts)
            EXPECT_EQ(Llama::classifyScalar(text), scalarClass) << text;
    }
    const QString plain =
        "abc|nUll|tRue|y|n|Y|N|yes | 1|1 |1e5|1.5e3|1e+|1.5e+5x|.5|-.5|+|-|.|09|0x|0X1F|0o7|1_000|+.nan|"
        "-.nan|inf|nan|+-1|--1|0x1G|1.5.2|1-2|,1|1:60|1:|1:300|:30|1:2x|2019-9-12|2019-09-1|2019-09-12 |"
        "2019-09-12 12:16:52|2019-09-12T12:16:52|2019-09-12T12:16Z|2019-09-12T12:16:52 Z|"
        "2019-09-12T12:16:52+|2019-09-12T1:16:52Z|2019-09-12T12:16:52+02:0|==|<|<<<|1\u00b5|\u2192|\x7f|~~|"
        "NaN|0x-1";
    for (const QString &text : plain.split('|'))
        EXPECT_EQ(Llama::classifyScalar(text.toUtf8().constData()), ScalarClass::String) << text.toStdString();
}

TEST(ScalarClass, NotANumberHasNoSign)
{
    const double nan = Llama::scalarValue(ScalarClass::NaN, ".nan").toDouble();
    EXPECT_TRUE(std::isnan(nan) && !std::signbit(nan));
}

} // namespace
