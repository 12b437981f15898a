#include "windowsetup/setupfile.h"

#include "support/failingcalls.h"
#include "support/files.h"
#include "windowsetup/sealedstate.h"

#include <QBitArray>
#include <QTemporaryDir>

using namespace WindowSetup;

namespace {

struct SetupFiles : ::testing::Test {
    QTemporaryDir folder;
    const QString path = folder.filePath("a.windowsetup");
};

} // namespace

TEST_F(SetupFiles, WhatIsWrittenIsRead)
{
    QVariantMap main;
    const QByteArray state("\0\x12\xff 1e5", 7);
    seal(main, "state", state);
    seal(main, "geometry", QByteArray("\x12\x34\x56")); // digits alone, which are no number
    const QVariantMap setup{{"version", 2}, {"mainwindow", main}, {"timeseries", QVariantList{1.5, "x", true}}};
    ASSERT_EQ(writeSetupFile(path, setup), QString());
    const SetupFile file = readSetupFile(path);
    ASSERT_EQ(file.condition, SetupFile::Sound);
    EXPECT_EQ(file.setup, setup);
    EXPECT_FALSE(isTooOld(file.setup));
    const State read = unseal(file.setup["mainwindow"].toMap(), "state");
    EXPECT_TRUE(read.isSealed);
    EXPECT_EQ(read.bytes, state);
}

TEST_F(SetupFiles, OthersAreToldByName)
{
    const struct {
        const char *name;
        QByteArray content;
        SetupFile::Condition condition;
        const char *complaint;
    } cases[] = {
        {"text that isn't YAML", "a: [", SetupFile::NotUnderstood, "Failed to understand interface setup file"},
        {"nothing", "", SetupFile::NotUnderstood, "it isn't a map"},
        {"a list", "- a\n", SetupFile::NotUnderstood, "it isn't a map"},
        {"binary", QByteArray(1000, '\0'), SetupFile::NotUnderstood, "Failed to understand"},
        {"too long", "a: \"" + QByteArray(16'000'000, 'x') + "\"", SetupFile::NotUnderstood, "longer than any layout"},
        {"too many values", "a: [" + QByteArray("0,").repeated(1'000'001) + "0]", SetupFile::NotUnderstood, "Failed"},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        writeFile(path, each.content);
        const SetupFile file = readSetupFile(path);
        EXPECT_EQ(file.condition, each.condition);
        EXPECT_TRUE(file.complaint.contains(path) && file.complaint.contains(each.complaint))
            << qPrintable(file.complaint);
    }
    for (const QString &absent : {folder.filePath("none"), folder.path()})
        EXPECT_EQ(readSetupFile(absent).complaint, QString("Failed to open interface setup file '%1'").arg(absent));
}

TEST_F(SetupFiles, VersionsUpToOneAreTooOld)
{
    for (const QVariant &version : {QVariant(), QVariant(1), QVariant("x"), QVariant(-5)})
        EXPECT_TRUE(isTooOld({{"version", version}}));
    for (const QVariant &version : {QVariant(2), QVariant("2"), QVariant(100)})
        EXPECT_FALSE(isTooOld({{"version", version}}));
}

TEST_F(SetupFiles, AFailedSaveLeavesTheOldFile)
{
    writeFile(path, "old");
    EXPECT_EQ(writeSetupFile(path, {{"a", QBitArray(3)}}), "Failed to emit yaml document.");
    EXPECT_EQ(contentOf(path), "old");
    const FailingCalls calls(2, ENOSPC); // the write, or what comes before it
    EXPECT_NE(writeSetupFile(path, {{"a", 1}}), QString());
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(filesIn(folder.path()), QStringList{"a.windowsetup"});
}

TEST_F(SetupFiles, ABackupTakesThePlaceOfTheFormer)
{
    for (const QByteArray content : {"first", "second"}) {
        writeFile(path, content);
        EXPECT_EQ(moveToBackup(path), QString());
        EXPECT_EQ(contentOf(path + ".bak"), content);
        EXPECT_FALSE(QFile::exists(path));
    }
    EXPECT_NE(moveToBackup(path), QString());
}

TEST(SealedState, WhatCannotBeTrustedIsRefused)
{
    QVariantMap sealed;
    seal(sealed, "state", "Qt");
    const QVariant checksum = sealed["statechecksum"];
    const struct {
        const char *name;
        QVariantMap map;
        const char *complaint; ///< null: none
        QByteArray bytes;
    } cases[] = {
        {"absent", {}, nullptr, {}},
        {"empty", {{"state", ""}}, nullptr, {}},
        {"sealed", sealed, nullptr, "Qt"},
        {"without checksum", {{"state", "5174"}}, nullptr, "Qt"},
        {"capitals", {{"state", "4B"}}, nullptr, "K"},
        {"read as a number", {{"state", 5174}}, nullptr, "Qt"},
        {"another byte", {{"state", "5175"}, {"statechecksum", checksum}}, "damaged", {}},
        {"cut", {{"state", "51"}, {"statechecksum", checksum}}, "damaged", {}},
        {"checksum of no text", {{"state", "5174"}, {"statechecksum", QVariantList{1}}}, "damaged", {}},
        {"odd", {{"state", "517"}}, "hexadecimal", {}},
        {"no digits", {{"state", "51 74"}}, "hexadecimal", {}},
        {"a list", {{"state", QVariantList{51}}}, "hexadecimal", {}},
        {"too long", {{"state", QString(100'002, '0')}}, "too long", {}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        const State state = unseal(each.map, "state");
        EXPECT_EQ(state.bytes, each.bytes);
        EXPECT_EQ(state.complaint.isNull(), each.complaint == nullptr);
        EXPECT_TRUE(state.complaint.contains(each.complaint)) << qPrintable(state.complaint);
    }
}
