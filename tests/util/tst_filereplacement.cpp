#include "util/filereplacement.h"

#include "support/failingcalls.h"
#include "support/files.h"
#include "util/folders.h"

#include <QTemporaryDir>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace {

struct FileReplacements : testing::Test {
    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList names() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    mode_t mode(const QString &name) const
    {
        struct stat status {};
        EXPECT_EQ(stat(qPrintable(path(name)), &status), 0) << qPrintable(name);
        return status.st_mode & 0777;
    }

    QTemporaryDir folder;
    const QByteArray bytes = QByteArray(150000, 'n');
};

TEST_F(FileReplacements, AnyCallThatFailsIsToldAndLeavesWhatStoodThere)
{
    const auto kept = ExistingFile::Kept;
    const struct {
        const char *name;
        const char *before; ///< null: no such file
        std::function<QString()> run;
        QStringList harmless; ///< calls that may fail without loss
    } cases[] = {
        {"replaced", "old", [&] { return replaceFile(path("a"), bytes); }, {}},
        {"made", nullptr, [&] { return replaceFile(path("a"), bytes); }, {}},
        {"made where none may be", nullptr, [&] { return replaceFile(path("a"), bytes, kept); }, {}},
        {"copied", "old", [&] { return copyFile(path("source"), path("a")); }, {"close"}},
        {"moved", "old", [&] { return moveFile(path("source"), path("a")); }, {}},
        {"moved where none may be", nullptr, [&] { return moveFile(path("source"), path("a"), kept); }, {}},
    };
    for (const auto &c : cases) {
        int failures = 0;
        for (bool all = false; !all;) {
            QFile::remove(path("a"));
            if (c.before)
                writeFile(path("a"), c.before);
            writeFile(path("source"), bytes);
            const QStringList before = names();
            QString reason;
            const char *failed = nullptr;
            {
                const FailingCalls calls(++failures);
                reason = c.run();
                failed = calls.failed();
            }
            SCOPED_TRACE(QString("%1, %2 %3").arg(c.name, failed).arg(failures).toStdString());
            all = !failed;
            if (all || (reason.isNull() && c.harmless.contains(failed)) || reason.startsWith("it stands")) {
                EXPECT_EQ(contentOf(path("a")), bytes);
            } else {
                EXPECT_EQ(reason, qt_error_string(EIO));
                EXPECT_EQ(contentOf(path("a")), c.before ? c.before : "");
                EXPECT_EQ(names(), before);
            }
            EXPECT_TRUE(!all || reason.isNull());
        }
        EXPECT_GT(failures, 4) << c.name;
    }
}

TEST_F(FileReplacements, WhatCanNotBeSyncedIsToldUnlessNothingCan)
{
    const auto replaced = [&] { return replaceFile(path("a"), bytes); };
    const struct {
        const char *name;
        int fsyncCall; ///< by its number among all calls
        std::function<QString()> run;
    } cases[] = {{"folder", 2, [&] { return syncFolder(folder.path()); }},
                 {"file", 2, [&] { return syncFile(path("a")); }},
                 {"replaced file", 6, replaced}}; // behind open, fchmod and three writes
    ASSERT_EQ(replaced(), QString());
    for (const auto &c : cases) {
        for (int error : {EINVAL, ENOTSUP, ENOSYS, EIO, ENOSPC}) {
            const FailingCalls calls(c.fsyncCall, error);
            EXPECT_EQ(c.run(), error == EIO || error == ENOSPC ? qt_error_string(error) : QString()) << c.name;
            EXPECT_STREQ(calls.failed(), "fsync");
        }
    }
}

TEST_F(FileReplacements, OfNewFoldersEachNameIsBroughtToTheDisk)
{
    int told = 0;
    for (const char *failed = ""; failed;) {
        const FailingCalls calls(2 + 3 * told); // open, fsync and close for each
        EXPECT_EQ(missingFolders(path("a/./b/c/")), QStringList({path("a"), path("a/b"), path("a/b/c")}));
        const QString reason = makeLastingFolders(path("a/b/c"));
        EXPECT_TRUE(missingFolders(path("a/b/c")).isEmpty());
        failed = calls.failed();
        EXPECT_EQ(reason, failed ? qt_error_string(EIO) : QString());
        told += failed ? 1 : 0;
        EXPECT_TRUE(QDir(path("a")).removeRecursively());
    }
    EXPECT_EQ(told, 3);
}

TEST_F(FileReplacements, NothingButTheContentChanges)
{
    const mode_t mask = umask(027);
    for (mode_t permissions : {0600, 0644, 0666, 0755}) {
        writeFile(path("a"), "old");
        ASSERT_EQ(chmod(qPrintable(path("a")), permissions), 0);
        EXPECT_EQ(replaceFile(path("a"), bytes), QString());
        EXPECT_EQ(mode("a"), permissions);
    }
    EXPECT_EQ(replaceFile(path("new"), bytes), QString());
    EXPECT_EQ(mode("new"), 0640u) << "as any program of the user's makes it";
    EXPECT_EQ(copyFile(path("a"), path("copy")), QString());
    EXPECT_EQ(mode("copy"), 0755u);
    umask(mask);
}

TEST_F(FileReplacements, LinksAreFollowedWhereverTheyLead)
{
    writeFile(path("deep/er/there"), "old");
    const struct {
        const char *target; ///< of the link "a"; "b" is a link to "deep/er"
        QString file;       ///< that gets the bytes; empty: none
    } cases[] = {
        {"deep/er/there", "deep/er/there"},
        {"b/../made", "deep/made"},
        {"b/new", "deep/er/new"},
        {"c", "deep/er/there"},
        {"a", ""},
        {"none/a", ""},
    };
    ASSERT_EQ(symlink("deep/er", qPrintable(path("b"))), 0);
    ASSERT_EQ(symlink(qPrintable(path("b/there")), qPrintable(path("c"))), 0);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.target);
        QFile::remove(path("a"));
        ASSERT_EQ(symlink(c.target, qPrintable(path("a"))), 0);
        EXPECT_EQ(replaceFile(path("a"), c.target).isNull(), !c.file.isEmpty());
        EXPECT_TRUE(QFileInfo(path("a")).isSymLink());
        if (c.file.isEmpty())
            continue;
        EXPECT_EQ(contentOf(path(c.file)), c.target);
        writeFile(path("source"), bytes);
        EXPECT_EQ(moveFile(path("source"), path("a")), QString());
        EXPECT_EQ(contentOf(path(c.file)), bytes);
    }
}

TEST_F(FileReplacements, AMoveToAnotherFileSystemCopies)
{
    writeFile(path("source"), bytes);
    writeFile(path("a"), "old");
    {
        const FailingCalls calls(4, EXDEV);
        EXPECT_EQ(moveFile(path("source"), path("a")), QString());
        EXPECT_STREQ(calls.failed(), "rename");
    }
    EXPECT_EQ(contentOf(path("a")), bytes);
    EXPECT_EQ(names(), QStringList{"a"});
}

TEST_F(FileReplacements, WhatMustNotBeReplacedStays)
{
    writeFile(path("file"), "old");
    QDir().mkpath(path("folder"));
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0666), 0);
    ASSERT_TRUE(QFile::link(path("nowhere"), path("link")));
    ASSERT_TRUE(QFile::link("/dev/null", path("device")));
    writeFile(path("locked"), "old");
    ASSERT_EQ(chmod(qPrintable(path("locked")), 0444), 0);
    const auto replaced = ExistingFile::Replaced, kept = ExistingFile::Kept;
    const struct {
        const char *name;
        ExistingFile existing;
        QString reason;
    } cases[] = {
        {"folder", replaced, qt_error_string(EISDIR)},
        {"pipe", replaced, "Not a regular file"},
        {"device", replaced, "Not a regular file"},
        {"none/file", replaced, qt_error_string(ENOENT)},
        {"file/file", replaced, qt_error_string(ENOTDIR)},
        {"file", kept, qt_error_string(EEXIST)},
        {"folder", kept, qt_error_string(EEXIST)},
        {"link", kept, qt_error_string(EEXIST)},
        {"locked", replaced, geteuid() == 0 ? QString() : qt_error_string(EACCES)},
    };
    const QStringList before = names();
    for (const auto &c : cases) {
        EXPECT_EQ(replaceFile(path(c.name), bytes, c.existing), c.reason) << c.name;
        EXPECT_EQ(names(), before) << c.name;
    }
    EXPECT_EQ(contentOf(path("file")), "old");
    for (const char *odd : {"folder", "pipe", "none"})
        EXPECT_FALSE(copyFile(path(odd), path("copy")).isNull()) << odd;

    // A file that came while the bytes were written.
    FileReplacement late(path("late"), kept);
    EXPECT_TRUE(late.write(bytes));
    writeFile(path("late"), "others'");
    EXPECT_FALSE(late.commit());
    EXPECT_EQ(late.error(), qt_error_string(EEXIST));
    EXPECT_EQ(contentOf(path("late")), "others'");
}

TEST_F(FileReplacements, WhatIsNotCommittedLeavesNothing)
{
    writeFile(path("a"), "old");
    writeFile(path("a.tmp"), "left by a run that was killed, or another's");
    {
        FileReplacement file(path("a"));
        EXPECT_TRUE(file.write("half"));
        EXPECT_EQ(names().size(), 3);
    }
    EXPECT_EQ(names(), (QStringList{"a", "a.tmp"}));
    EXPECT_EQ(contentOf(path("a")), "old");
    EXPECT_EQ(replaceFile(path(QString(255, 'x')), bytes), QString());
    EXPECT_EQ(contentOf(path(QString(255, 'x'))), bytes) << "there is no room for a longer name";
}

} // namespace
