#include "util/buildinfo.h"
#include "util/textescape.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>

namespace {

/// The rule as a row of replacements, backslashes first.
QString plainlyEscaped(QString text)
{
    text.replace("\\", "\\\\");
    for (const auto &[character, letter] :
         {std::pair('\a', 'a'), {'\b', 'b'}, {'\t', 't'}, {'\v', 'v'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}})
        text.replace(QChar(character), QString("\\") + letter);
    return text;
}

TEST(Escapes, AgreeWithReplacementsAndAreUndone)
{
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        QString text;
        for (unsigned i = random() % 12; i > 0; --i)
            text += QChar(random() % 4 == 0 ? 0x2192u : "\\\"abtvfnrx\a\b\t\v\f\n\r"[random() % 18]);
        const QString escaped = plainlyEscaped(text);
        ASSERT_EQ(escapeTextNoQuote(text), escaped);
        ASSERT_EQ(escapeText(text), QString(escaped).replace("\"", "\\\""));
        ASSERT_EQ(unescapeText(escaped), text);
    }
}

TEST(Escapes, ABackslashBeforeSomethingElseStays)
{
    EXPECT_EQ(unescapeText("\\q\\\"\\\\n\\n\\"), "\\q\\\"\\n\n\\");
    EXPECT_EQ(unescapeText("\\\\\\t"), "\\\t");
}

TEST(FillMarkers, OnePassAndMoreThanNine)
{
    QStringList ten;
    for (int i = 1; i <= 10; ++i)
        ten += QString("v%1").arg(i);
    EXPECT_EQ(fillMarkers("%1 %10 %2%3 %9.", ten), "v1 v10 v2v3 v9.");
    EXPECT_EQ(fillMarkers("%1 %2", {"a%2", "b"}), "a%2 b");
    EXPECT_EQ(fillMarkers("%0 %3 % %% %x %1%", {"a", "b"}), "%0 %3 % %% %x a%");
    EXPECT_EQ(fillMarkers("", {"a"}), "");
}

TEST(Capitalized, OnlyTheFirst)
{
    EXPECT_EQ(capitalized("block mode"), "Block mode");
    EXPECT_EQ(capitalized(QString::fromUtf8("\u00e4a")), QString::fromUtf8("\u00c4a"));
    EXPECT_EQ(capitalized(""), "");
}

TEST(BuildInfo, TextsAreOfTheBuild)
{
    EXPECT_TRUE(QRegularExpression("^[0-9a-f]{40}$").match(BuildInfo::revision()).hasMatch());
    EXPECT_TRUE(
        QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$").match(BuildInfo::buildTime()).hasMatch());
    EXPECT_EQ(BuildInfo::version(), BuildInfo::buildTime().left(10).remove('-'));
}

} // namespace
