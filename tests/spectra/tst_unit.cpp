#include "spectra/unit.h"

#include "spectra/unitparser.h"
#include "support/shortmemory.h"

#include <gtest/gtest.h>

#include <cmath>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using SpectMath::parseUnit;
using SpectMath::UnitParsingError;

std::string text(const Unit &unit)
{
    return unit.toString().toStdString();
}

Unit unnamed(double multiplier, const Unit::Exponents &exponents)
{
    return Unit(QString(), multiplier, exponents);
}

TEST(Unit, LackOfMemoryWhileATextIsReadEndsNoProcess)
{
    if (!ShortMemory::isPossible)
        GTEST_SKIP() << "the sanitizer has an allocator of its own";
    for (int nth = 1; nth < 240; nth += 2) {
        const pid_t child = fork();
        if (child == 0) {
            ShortMemory::letFail(false, nth, 100);
            try {
                parseUnit(QStringLiteral("1/cm^3"), unitTable());
            } catch (const std::bad_alloc &) {
            }
            _exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_EQ(status, 0) << nth;
    }
}

TEST(Unit, ReadsTextsLeftToRight)
{
    struct Case {
        const char *text;
        double multiplier;
        Unit::Exponents exponents;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {"m", 1.0, {1}},
        {"nm", 1e-9, {1}},
        {"cm^2/s/V", 1e-4, {0, -1, 2, 1}},
        {"1/cm^3", 1.0 / std::pow(0.01, 3), {-3}},
        {"cm^2", 0.01 * 0.01, {2}},
        {"m/s*V", 1.0, {3, 1, -4, -1}},
        {"kV", 1000.0, {2, 1, -3, -1}},
        {"m^2^3", 1.0, {6}},
        {"m^-2", 1.0, {-2}},
        {"m^+4", 1.0, {4}},
        {"m^2e1", 1.0, {}},         // not a whole number text: the power 0
        {"m^99999999999", 1.0, {}}, // neither is what exceeds 32 bits
        {"2.5e3*nm", 2.5e3 * 1e-9, {1}},
        {"-.5", -0.5, {}},
        {"1/0", inf, {}},
        {"1e400", inf, {}},
        {"nm ", 1e-9, {1}},
        {"m * s ^ 2 / kg", 1.0, {1, -1, 2}},
        {"mol*cd*K*A", 1.0, {0, 0, 0, 1, 1, 1, 1}},
    };
    for (const Case &c : cases) {
        const Unit unit = parseUnit(c.text, unitTable());
        EXPECT_DOUBLE_EQ(unit.multiplier, c.multiplier) << c.text;
        EXPECT_EQ(unit.exponents, c.exponents) << c.text;
        EXPECT_EQ(unit.name, QString(c.text)) << "named by its text";
        EXPECT_EQ(parseUnit(c.text, unitTable(), "given").name, "given") << c.text;
    }
}

TEST(Unit, RefusesBadTextsInItsWords)
{
    const struct {
        QString text;
        const char *message;
    } cases[] = {
        {"", "Bad syntax"},
        {"m^", "Bad syntax"},
        {"m*", "Bad syntax"},
        {"2 m", "Bad syntax"},
        {"m)", "Bad syntax"},
        {"m^x", "Bad syntax"},
        {" nm", "Unknown unit ''"},
        {"(m)", "Unknown unit ''"},
        {"um", "Unknown unit 'um'"},
        {"cm3", "Unknown unit 'cm3'"},
        {QString::fromUtf8("µm"), "Unknown unit 'µm'"},
        {QString::fromUtf8("°C"), "Unknown unit ''"},
        {"m/%1", "Unknown unit ''"},
    };
    for (const auto &c : cases) {
        try {
            parseUnit(c.text, unitTable());
            ADD_FAILURE() << c.text.toStdString() << " was read";
        } catch (const UnitParsingError &error) {
            EXPECT_EQ(error.message().toStdString(), c.message) << c.text.toStdString();
        }
    }
}

TEST(Unit, PrintsNameOrBaseUnits)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(text(Unit::mobilityCgs), "cm^2/s/V");
    EXPECT_EQ(text(Unit()), "1");
    EXPECT_EQ(text(unnamed(1e6, {-3})), "1e+06/m^3");
    EXPECT_EQ(text(1.0 * Unit::nanometre), "1e-09*m");
    EXPECT_EQ(text(1.0 * Unit::mobilityCgs), "0.0001/kg*s^2*A");
    EXPECT_EQ(text(unnamed(1.0, {0, -1, 2})), "1/kg*s^2");
    EXPECT_EQ(text(unnamed(1.0, {1, 0, 0, 0, 0, 0, -1})), "m/cd");
    EXPECT_EQ(text(unnamed(nan, {1})), "nan*m");
    EXPECT_EQ(text(unnamed(-0.0, {})), "0");
    EXPECT_EQ(text(unnamed(0.1234567, {})), "0.123457");
    EXPECT_EQ(text(unnamed(1.0, {std::numeric_limits<std::int32_t>::min()})), "1/m^2147483648");
}

TEST(Unit, ArithmeticKeepsOrDropsNames)
{
    const Unit a("a*b", 2.0, {1});
    const Unit b("b", 4.0, {0, 1});
    EXPECT_EQ(a * b, Unit("a*b*b", 8.0, {1, 1}));
    EXPECT_EQ(a / b, Unit("a*b/b", 0.5, {1, -1})) << "operators outside of parentheses don't matter";
    EXPECT_EQ(a.pow(2), Unit("a*b^2", 4.0, {2}));
    EXPECT_EQ(b / Unit("(x/y)", 1.0, {}), Unit("b/((x/y))", 4.0, {0, 1}));
    EXPECT_EQ(Unit("f(x)", 1.0, {}).pow(3).name, "f(x)^3");
    EXPECT_EQ((a * Unit("", 1.0, {})).name, QString());
    EXPECT_EQ(Unit("a%2", 1.0, {}) * b, Unit("a%2*b", 4.0, {0, 1})) << "a marker in a name is text";
    EXPECT_EQ(a * 3.0, unnamed(6.0, {1}));
    EXPECT_EQ(a / 4.0, unnamed(0.5, {1}));
    EXPECT_EQ(1.0 / b, unnamed(0.25, {0, -1}));
    EXPECT_EQ(a.named(QString()), a);
    EXPECT_EQ(a.named("z"), Unit("z", 2.0, {1}));
    EXPECT_DOUBLE_EQ(Unit::nanometre.factorTo(unitTable().value("cm")), 1e-7);
    EXPECT_NE(a, Unit("other", 2.0, {1}));
    EXPECT_TRUE(a.sameDimension(Unit::metre));
    EXPECT_EQ(Unit("m", 1.0, {2000000000}).pow(3).exponents[0], std::numeric_limits<std::int32_t>::max());
}

TEST(Unit, TableAndConstantsAgree)
{
    EXPECT_EQ(unitTable().size(), 11);
    for (auto entry = unitTable().begin(); entry != unitTable().end(); ++entry)
        EXPECT_EQ(entry->name, entry.key());
    EXPECT_EQ(unitTable().value("V"), Unit::volt);
    EXPECT_EQ(Unit::volt.exponents, (Unit::Exponents{2, 1, -3, -1}));
    EXPECT_EQ(parseUnit("cm^2/s/V", unitTable()), Unit::mobilityCgs) << "same route, same last bit";
    EXPECT_EQ(unitTable().value("kV").multiplier, 1000.0);
    EXPECT_TRUE(Unit::dimensionless.name.isNull());
}

} // namespace
