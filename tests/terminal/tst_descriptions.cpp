#include "terminal/completion.h"
#include "terminal/manualpage.h"

#include <CLI/CLI.hpp>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// A program with two commands.
class Descriptions : public testing::Test {
protected:
    Descriptions()
    {
        app.set_version_flag("--version", "1");
        CLI::App *const draw = app.add_subcommand("draw", "Draws.\n\n.hidden\\stays");
        draw->add_option("FOLDER", "The folder")->required();
        draw->add_option("-o,--output", "The file")->required()->type_name("FILE");
        draw->add_option("--into", "The other folder")->type_name("FOLDER");
        draw->add_option("--scale", "Pixels")->check(CLI::IsMember({"1", "2"}));
        draw->add_option("--name", "A name");
        app.add_subcommand("tell", "Tells");
    }

    CLI::App app{"Makes 'pictures'.", "tool-x"};
};

/// Standard output and errors of bash in a folder.
QByteArray outputOf(const QStringList &arguments, const QString &folder)
{
    QProcess bash;
    bash.setProcessChannelMode(QProcess::MergedChannels);
    bash.setWorkingDirectory(folder);
    bash.start("bash", arguments);
    EXPECT_TRUE(bash.waitForFinished());
    return bash.readAll();
}

} // namespace

TEST_F(Descriptions, AManualPageTellsAllOptionsOfAllCommands)
{
    const std::string page = Terminal::manualPage(app, {{"FILES", "one\n\n.two"}});
    for (const char *part : {".TH TOOL-X 1 20", "tool-x \\- makes 'pictures'\n", ".SS draw\n", ".SS tell\n",
                             "\\fB\\-o\\fR, \\fB\\-\\-output\\fR FILE REQUIRED\n", "\\fB\\-\\-version\\fR\n",
                             "\n\\&.hidden\\(rsstays\n", ".SH FILES\none\n.PP\n\\&.two\n"})
        EXPECT_NE(page.find(part), std::string::npos) << part << " in\n" << page;
}

TEST_F(Descriptions, BashCompletesCommandsOptionsChoicesAndFiles)
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("some folder");
    QFile file(folder.filePath("some.png"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString script = QString::fromStdString(Terminal::bashCompletion(app)) +
                           "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tool_x; printf '%s|' \"${COMPREPLY[@]}\"";
    const struct {
        QStringList line;
        const char *words; ///< completions, sorted
    } table[] = {
        {{""}, "--help|--version|-h|draw|tell"},
        {{"d"}, "draw"},
        {{"draw", ""}, "some folder"},
        {{"draw", "--o"}, "--output"},
        {{"draw", "--output", ""}, "some folder|some.png"},
        {{"draw", "-o", "some."}, "some.png"},
        {{"draw", "--into", "s"}, "some folder"},
        {{"draw", "--scale", ""}, "1|2"},
        {{"draw", "--name", ""}, ""},
        {{"tell", "-"}, "--help|-h"},
    };
    for (const auto &row : table) {
        const QByteArray output =
            outputOf(QStringList{"--norc", "-c", script, "bash", "tool-x"} + row.line, folder.path());
        QStringList words = QString::fromLocal8Bit(output).split('|', Qt::SkipEmptyParts);
        words.sort();
        EXPECT_EQ(words.join('|').toStdString(), row.words) << qPrintable(row.line.join(' '));
    }
}
