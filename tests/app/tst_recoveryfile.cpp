#include "app/recoveryfile.h"

#include "support/files.h"

#include <QLockFile>
#include <QTemporaryDir>

#include <thread>

#include <sys/stat.h>

namespace {

const QString header = "# Quilvane recovery file v1";

class RecoveryFileTest : public ::testing::Test {
protected:
    QString path() const { return m_folder.filePath("a.recovery"); }
    int fileCount() const { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden).size(); }

    QTemporaryDir m_folder;
};

} // namespace

TEST(RecoveryFileText, HoldsOneArgumentALine)
{
    const struct {
        QString text;
        bool isRight;
        QStringList arguments;
    } table[] = {
        {QString(), false, {}},
        {"\n", false, {}},
        {header, true, {}},
        {header + '\n', true, {}},
        {header + "\n\n", true, {QString()}}, // one empty last line alone goes
        {header + "\n--morvantide\n", true, {"--morvantide"}},
        {header + "\nprogram\n\na folder", true, {"program", QString(), "a folder"}},
        {header + "\r\n--morvantide\r\n", false, {}},
        {header + " \n", false, {}},
        {"\n" + header, false, {}},
        {"# Quilvane recovery file v2\n", false, {}},
    };
    for (const auto &row : table) {
        const auto arguments = RecoveryFile::argumentsIn(row.text);
        ASSERT_EQ(arguments.has_value(), row.isRight) << qPrintable(row.text);
        EXPECT_EQ(arguments.value_or(QStringList()), row.arguments) << qPrintable(row.text);
    }
}

TEST_F(RecoveryFileTest, WhatIsWrittenIsTakenOnce)
{
    RecoveryFile::write(path());
    EXPECT_EQ(contentOf(path()), "# Quilvane recovery file v1\n--morvantide\n");
    EXPECT_EQ(RecoveryFile::take(path()), QStringList{"--morvantide"});
    EXPECT_EQ(fileCount(), 0);
    EXPECT_FALSE(RecoveryFile::take(path()));
    EXPECT_EQ(fileCount(), 0) << "neither the file that taking made nor a lock stays";
}

TEST_F(RecoveryFileTest, ABadFileIsGoneAllTheSame)
{
    for (const char *content : {"", "# Quilvane recovery file v1\r\n--morvantide\r\n", "nonsense"}) {
        writeFile(path(), content);
        EXPECT_FALSE(RecoveryFile::take(path())) << content;
        EXPECT_EQ(fileCount(), 0) << content;
    }
}

TEST_F(RecoveryFileTest, NothingIsTakenFromAPipe)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_FALSE(RecoveryFile::take(path())) << "and nobody waits for a writer";
}

TEST_F(RecoveryFileTest, TakingWaitsForTheLock)
{
    RecoveryFile::write(path());
    QLockFile lock(path() + ".lock");
    ASSERT_TRUE(lock.lock());
    std::optional<QStringList> taken;
    std::thread other([&] { taken = RecoveryFile::take(path()); });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_TRUE(QFile::exists(path()));
    lock.unlock();
    other.join();
    EXPECT_TRUE(taken);
}

TEST_F(RecoveryFileTest, AFolderThatIsNotThereFails)
{
    RecoveryFile::write(m_folder.filePath("none/a.recovery")); // in silence
    EXPECT_FALSE(RecoveryFile::take(m_folder.filePath("none/a.recovery")));
}
