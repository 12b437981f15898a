#include "app/commandline.h"

#include <gtest/gtest.h>

namespace {

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

TEST(CommandLine, PositionalArgumentsAreTheWordsThatAreNoOptions)
{
    const struct {
        const char *line, *positional;
    } table[] = {
        {"", ""},
        {"morvantide", ""},
        {"morvantide folder variant", "folder variant"},
        {"morvantide --morvantide folder -x variant third", "folder variant third"},
        {"morvantide - --quilvane", ""},
        {"folder --morvantide", ""}, // the first stands where the program's name does
    };
    for (const auto &row : table)
        EXPECT_EQ(CommandLine::positionalArguments(words(row.line)), words(row.positional)) << row.line;
}

TEST(CommandLine, TheFirstRecoverOptionCounts)
{
    const struct {
        const char *line;
        bool isGiven;
        const char *file; ///< null: none
    } table[] = {
        {"morvantide folder", false, nullptr},
        {"morvantide --recover", true, nullptr},
        {"morvantide folder --recover a b", true, "a"},
        {"morvantide --recover a --recover b", true, "a"},
        {"morvantide --recover --recover", true, "--recover"},
        {"--recover a", true, "a"},
        {"morvantide --recover=a", false, nullptr},
    };
    for (const auto &row : table) {
        const CommandLine::RecoverOption option = CommandLine::recoverOption(words(row.line));
        EXPECT_EQ(option.isGiven, row.isGiven) << row.line;
        EXPECT_EQ(option.file.isNull(), row.file == nullptr) << row.line;
        EXPECT_EQ(option.file, QString::fromLatin1(row.file)) << row.line;
    }
}

TEST(CommandLine, HelpAndVersionAreAnsweredAloneOnTheLine)
{
    for (const char *line : {"morvantide --help", "morvantide -h"})
        EXPECT_TRUE(CommandLine::answerTo(words(line)).contains("[FOLDER] [VARIANT]")) << line;
    EXPECT_TRUE(CommandLine::answerTo(words("morvantide --version")).startsWith("morvantide 20"));
    for (const char *line : {"morvantide", "--help", "morvantide --help folder", "morvantide --morvantide --version",
                             "morvantide --helpful", "morvantide help"})
        EXPECT_TRUE(CommandLine::answerTo(words(line)).isNull()) << line;
}
