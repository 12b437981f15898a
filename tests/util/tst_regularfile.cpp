#include "util/regularfile.h"

#include "support/files.h"

#include <QTemporaryDir>

#include <cerrno>

#include <sys/stat.h>

TEST(RegularFile, IsToldFromWhatWouldBlockOrNeverEndBeforeItIsOpened)
{
    const QTemporaryDir folder;
    const auto path = [&folder](const char *name) { return folder.filePath(name); };
    writeFile(path("file"), "text");
    ASSERT_EQ(::mkfifo(path("pipe").toLocal8Bit(), 0600), 0);
    QFile::link(path("file"), path("link"));
    QFile::link(path("pipe"), path("link to a pipe"));
    QFile::link(path("gone"), path("link to nothing"));
    const struct {
        QString path;
        QString reason;
    } cases[] = {
        {path("file"), {}},
        {path("link"), {}},
        {path(""), "It is a folder"},
        {path("pipe"), "It is a pipe"},
        {path("link to a pipe"), "It is a pipe"},
        {"/dev/zero", "It is a device"},
        {path("gone"), qt_error_string(ENOENT)},
        {path("link to nothing"), qt_error_string(ENOENT)},
        {path("file/below"), qt_error_string(ENOTDIR)},
    };
    for (const auto &c : cases) {
        QFile file(c.path);
        QString reason;
        EXPECT_EQ(openRegularFile(file, &reason), c.reason.isNull()) << qPrintable(c.path);
        EXPECT_EQ(file.isOpen(), c.reason.isNull());
        EXPECT_EQ(reason, c.reason) << qPrintable(c.path);
    }
}

TEST(RegularFile, IsReadUpToABoundForWhichNoMemoryIsTaken)
{
    const QTemporaryDir folder;
    const QByteArray text(150'000, 'x');
    writeFile(folder.filePath("file"), text);
    for (const qint64 most : {qint64(0), qint64(65'536), qint64(149'999), qint64(150'000), qint64(1) << 40}) {
        QFile file(folder.filePath("file"));
        ASSERT_TRUE(openRegularFile(file));
        EXPECT_EQ(readUpTo(file, most).size(), std::min<qint64>(most, text.size()));
    }
}
