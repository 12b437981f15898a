#include "gui/morvantide/guidewindow.h"
#include "gui/morvantide/installedfiles.h"
#include "gui/morvantide/settingsfile.h"
#include "support/files.h"

#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace {

class InstalledFilesTest : public testing::Test {
protected:
    /// The path of a file, which is made.
    QString make(const QString &name, const QByteArray &content = "x")
    {
        const QString path = m_folder.filePath(name);
        writeFile(path, content);
        return path;
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST_F(InstalledFilesTest, AProgramOfTheSystemKeepsNoSettingsBesideItself)
{
    for (const char *folder : {"/usr/bin", "/usr/local/bin", "/opt/../usr/bin"})
        EXPECT_EQ(settingsFilePath(folder, "/home/me"), "/home/me/morvantide.conf") << folder;
    EXPECT_FALSE(InstalledFiles::belongsToSystem("/usrs/bin"));
}

TEST_F(InstalledFilesTest, LayoutsForAllUsersServeDataWithoutTheirOwn)
{
    using namespace InstalledFiles;
    const QStringList both{"/usr/local/share/morvantide", "/usr/share/morvantide"};
    EXPECT_EQ(sharedFolders("/usr/bin"), QStringList{"/usr/share/morvantide"});
    EXPECT_EQ(sharedFolders("/usr/local/bin"), both);
    EXPECT_EQ(sharedFolders("/home/me/bin"), QStringList());

    const QString own = path("data/own.windowsetup");
    const QStringList folders{path("none"), path("shared")};
    EXPECT_EQ(layoutToRestore(own, folders), own);
    const QString shared = make("shared/default.windowsetup");
    EXPECT_EQ(layoutToRestore(own, folders), shared);
    EXPECT_EQ(layoutsIn(folders), QStringList{shared});
    make("data/own.windowsetup");
    EXPECT_EQ(layoutToRestore(own, folders), own);
}

TEST_F(InstalledFilesTest, TheGuideIsThatOfTheInstallationOrOfTheSourceTree)
{
    make("build/dev/src/app/morvantide");
    make("inst/bin/morvantide");
    EXPECT_EQ(InstalledFiles::userGuidePage(path("build/dev/src/app")), QString());
    const QString source = make("docs/user-guide.md");
    EXPECT_EQ(InstalledFiles::userGuidePage(path("build/dev/src/app")), source);
    const QString installed = make("inst/share/morvantide/guide/user-guide.html");
    EXPECT_EQ(InstalledFiles::userGuidePage(path("inst/bin")), installed);
}

TEST_F(InstalledFilesTest, TheGuidesWindowFollowsLinksAndFindsWords)
{
    make("other.md", "# Other\n\nhere");
    for (const QString &page :
         {make("guide.html", "<title>Start</title><p>one two one <a href='other.md'>other</a></p>"),
          make("guide.md", "# Start\n\none two one [other](other.md)\n")}) {
        GuideWindow window(page);
        window.show();
        auto *const pages = window.findChild<QTextBrowser *>();
        auto *const wanted = window.findChild<QLineEdit *>();
        ASSERT_TRUE(pages && wanted);
        EXPECT_EQ(window.windowTitle(), page.endsWith(".html") ? "User guide: Start" : "User guide");
        QList<int> ends;
        wanted->setText("one");
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(wanted, Qt::Key_Return);
            ends << pages->textCursor().position();
        }
        EXPECT_LT(ends[0], ends[1]);
        EXPECT_EQ(ends[0], ends[2]) << "from the begin again";
        pages->setSource(QUrl("other.md"));
        EXPECT_TRUE(pages->toPlainText().contains("here"));
        EXPECT_TRUE(pages->isBackwardAvailable());
    }
}
