#include "app/recoveryfile.h"

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace {

const QString header = QStringLiteral("# Quilvane recovery file v1");

class RecoveryFileTest : public ::testing::Test {
protected:
    QString path() const { return m_folder.filePath(QStringLiteral("a.recovery")); }
    void write(const QByteArray &content)
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
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
        {QStringLiteral("\n"), false, {}},
        {header, true, {}},
        {header + QLatin1Char('\n'), true, {}},
        {header + QStringLiteral("\n\n"), true, {QString()}}, // one empty last line alone goes
        {header + QStringLiteral("\n--morvantide\n"), true, {QStringLiteral("--morvantide")}},
        {header + QStringLiteral("\nprogram\n\na folder"),
         true,
         {QStringLiteral("program"), QString(), QStringLiteral("a folder")}},
        {header + QStringLiteral("\r\n--morvantide\r\n"), false, {}},
        {header + QStringLiteral(" \n"), false, {}},
        {QStringLiteral("\n") + header, false, {}},
        {QStringLiteral("# Quilvane recovery file v2\n"), false, {}},
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
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "# Quilvane recovery file v1\n--morvantide\n");
    EXPECT_EQ(RecoveryFile::take(path()), QStringList{QStringLiteral("--morvantide")});
    EXPECT_EQ(fileCount(), 0);
    EXPECT_FALSE(RecoveryFile::take(path()));
    EXPECT_EQ(fileCount(), 0) << "neither the file that taking made nor a lock stays";
}

TEST_F(RecoveryFileTest, ABadFileIsGoneAllTheSame)
{
    for (const char *content : {"", "# Quilvane recovery file v1\r\n--morvantide\r\n", "nonsense"}) {
        write(content);
        EXPECT_FALSE(RecoveryFile::take(path())) << content;
        EXPECT_EQ(fileCount(), 0) << content;
    }
}

TEST_F(RecoveryFileTest, TakingWaitsForTheLock)
{
    RecoveryFile::write(path());
    QLockFile lock(path() + QStringLiteral(".lock"));
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
    RecoveryFile::write(m_folder.filePath(QStringLiteral("none/a.recovery"))); // in silence
    EXPECT_FALSE(RecoveryFile::take(m_folder.filePath(QStringLiteral("none/a.recovery"))));
}
