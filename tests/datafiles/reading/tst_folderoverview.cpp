#include "datafiles/reading/folderoverview.h"

#include "reading.h"

#include <sys/stat.h>

using FolderOverviews = Reading;

namespace {

QByteArray header(const QByteArray &more)
{
    return "# Quilvane records\n# dataproc variant: block\n# file type: records\n# opmodes: [ions, offset]\n# "
           "parameters:\n"
           "# - {name: temp, humanname: Temperature, unit: K}\n" +
           more + "begintime\tendtime\topmode\ttemp\tflags\n";
}

FolderOverview overviewOf(const QString &folder)
{
    FolderSurvey survey;
    for (const QString &name : filesIn(folder))
        survey.add(QDir(folder).filePath(name));
    return survey.overview();
}

} // namespace

TEST_F(FolderOverviews, NamesAndHeadersTellDaysModesAndVariables)
{
    write("20190912-block.records", header("") + "rows that\nnobody reads\n");
    write("2019-09-14-block.records", header("# total electrometers: 0\n").replace("temp,", "hum,"));
    write("20190914-block-ions.spectra", "no header\n");
    const FolderOverview overview = overviewOf(folder.path());
    EXPECT_EQ(overview.files, 3);
    EXPECT_EQ(overview.withoutHeader, 1);
    EXPECT_EQ(overview.days, 2);
    EXPECT_EQ(overview.firstDay, QDate(2019, 9, 12));
    EXPECT_EQ(overview.lastDay, QDate(2019, 9, 14));
    EXPECT_EQ(overview.modes, (QStringList{"ions", "offset"}));
    EXPECT_EQ(overview.variables, (QStringList{"hum", "temp"}));
}

TEST_F(FolderOverviews, HeadersThatAreHardToFind)
{
    const QByteArray plain = header("");
    const struct {
        const char *name;
        QByteArray content;
        bool isFound;
    } cases[] = {
        {"behind other lines", "# a comment\nrow\n" + plain, true},
        {"with carriage returns", QByteArray(plain).replace("\n", "\r\n"), true},
        {"longer than the first chunk", header("# " + QByteArray(100'000, ' ') + "\n"), true},
        {"longer than any", header(QByteArray("# comment: x\n").repeated(1'400'000)), false},
        {"cut off", plain.left(plain.size() - 10), false},
        {"no YAML", header("# {\n"), false},
        {"empty", "", false},
        {"one line without an end", QByteArray(3'000'000, 'x'), false},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        write("20190912.records", each.content);
        const FolderOverview overview = overviewOf(folder.path());
        EXPECT_EQ(overview.withoutHeader, each.isFound ? 0 : 1);
        EXPECT_EQ(overview.modes.isEmpty(), !each.isFound);
    }
    FolderSurvey survey;
    ASSERT_EQ(mkfifo(qPrintable(folder.filePath("20190913.records")), 0600), 0);
    for (const char *none : {"20190913.records", "absent", "."})
        survey.add(folder.filePath(none));
    EXPECT_EQ(survey.overview().withoutHeader, 3);
}

TEST_F(FolderOverviews, NothingIsToldThatAReadDoesNotFind)
{
    const QDir corpus(QStringLiteral(FUZZ_DIRECTORY "/corpus/dayfile"));
    for (const QString &name : corpus.entryList(QDir::Files)) {
        SCOPED_TRACE(name.toStdString());
        FolderSurvey survey;
        survey.add(corpus.filePath(name));
        const FolderOverview overview = survey.overview();
        read({name}, corpus.path());
        const auto &metadata = *reader->metadata();
        for (int i = 0; i < overview.modes.size(); ++i)
            EXPECT_EQ(overview.modes[i], metadata.opmodes.value(i).name);
        ASSERT_LE(overview.variables.size(), metadata.variables.size());
        for (int i = 0; i < overview.variables.size(); ++i)
            EXPECT_EQ(overview.variables[i], metadata.variables[i]->name);
    }
}
