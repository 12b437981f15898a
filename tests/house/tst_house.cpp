#include "house/sourcetext.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <clocale>

namespace {

const QStringList sourceNames{"*.cpp", "*.h"};

/// A folder, and the folders whose headers it may show or use besides its own. The longest folder that a path starts
/// with is its room.
struct Room {
    const char *folder;
    const char *needs;
    bool windows; ///< may include Qt Gui and Widgets
};

const char gui[] = "log util llama records spectra store datafiles dataexport gui/common";
const Room rooms[] = {
    {"src/log", "util", false},
    {"src/util", "", false},
    {"src/llama", "", false},
    {"src/records", "util", false},
    {"src/spectra", "records llama util log", false},
    {"src/store", "records spectra util", false},
    {"src/datafiles", "store spectra records llama util log", false},
    {"src/dataexport", "store spectra records llama util log", false},
    {"src/gui/common", gui, true},
    {"src/gui/common/tsb", gui, true},
    {"src/gui/common/recordviews", gui, true},
    {"src/gui/common/dataexport", gui, true},
    {"src/gui/frame",
     "log util llama records spectra store datafiles dataexport gui/common gui/common/tsb gui/common/recordviews",
     true},
    {"src/gui/morvantide",
     "log util llama records spectra store datafiles dataexport gui/common gui/common/tsb gui/common/recordviews "
     "gui/common/dataexport gui/frame",
     true},
    {"src/app", "log util records spectra gui/morvantide resources", true},
    {"src/batch", "log util llama records spectra store datafiles dataexport", false},
    {"src/batch/render", "log util llama records spectra store datafiles gui/common gui/common/tsb batch resources",
     true},
    {"demo", "datafiles store spectra records llama util log", false},
    {"resources", "", false},
};

QString roomOf(const QString &path)
{
    QString best;
    for (const Room &room : rooms) {
        const QString folder = room.folder;
        if (path.startsWith(folder + '/') && folder.size() > best.size())
            best = folder;
    }
    return best;
}

/// The room of an include such as "gui/common/uiinfo.h" or "demo/weather.h"; empty for a header of a library.
QString roomOfInclude(const QString &include)
{
    const QString inSources = roomOf("src/" + include);
    return inSources.isEmpty() ? roomOf(include) : inSources;
}

bool isWindowHeader(const QString &include)
{
    if (include.startsWith("QtGui/") || include.startsWith("QtWidgets/"))
        return true;
    for (const QString &folder : QStringLiteral(WINDOW_FOLDERS).split(':', Qt::SkipEmptyParts)) {
        if (QFileInfo::exists(folder + '/' + include))
            return true;
    }
    return false;
}

QString readable(const QStringList &faults)
{
    return faults.join('\n');
}

} // namespace

TEST(House, EveryRoomIncludesOnlyWhatItNeeds)
{
    QStringList faults;
    int seen = 0;
    for (const Room &room : rooms) {
        const QString folder = room.folder;
        QStringList allowed{folder};
        for (const QString &need : QString::fromLatin1(room.needs).split(' ', Qt::SkipEmptyParts))
            allowed << (need == "resources" || need == "demo" ? need : "src/" + need);
        // Programs' own headers of the drawing half stand below src/batch.
        allowed << (folder == "src/batch" ? "src/batch/render" : folder);
        for (const QString &file : filesBelow(folder, sourceNames)) {
            if (roomOf(file) != folder)
                continue;
            ++seen;
            for (const QString &include : includesOf(textOf(file))) {
                const QString other = roomOfInclude(include);
                if (!other.isEmpty() && !allowed.contains(other))
                    faults << QString("%1 includes %2").arg(file, include);
                if (other.isEmpty() && !room.windows && isWindowHeader(include))
                    faults << QString("%1 includes the window header %2").arg(file, include);
            }
        }
    }
    EXPECT_GT(seen, 20);
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(readable(faults));
}

TEST(House, WindowHeadersAreKnownFromOthers)
{
    if (QStringLiteral(WINDOW_FOLDERS).isEmpty())
        GTEST_SKIP() << "built without windows";
    for (const char *name : {"QImage", "QWidget", "QtWidgets/QLabel", "qwt_plot.h", "QTest"})
        EXPECT_TRUE(isWindowHeader(name)) << name;
    for (const char *name : {"QString", "vector", "QtCore/QFile", "fmt/format.h"})
        EXPECT_FALSE(isWindowHeader(name)) << name;
}

TEST(House, EverySourceIsListedByItsFolder)
{
    QStringList faults;
    const QStringList folders{"src", "demo", "tests", "bench"};
    QString testLists;
    for (const QString &list : filesBelow("tests", {"CMakeLists.txt"}))
        testLists += textOf(list);
    for (const QString &folder : folders) {
        for (const QString &file : filesBelow(folder, {"*.cpp", "*.h"})) {
            const bool isRoom = folder == "src" || folder == "demo";
            if (!isRoom && file.endsWith(".h"))
                continue; // declares no QObject, or its target says so
            if (file.startsWith("tests/support/") && testLists.contains(QFileInfo(file).fileName()))
                continue; // helpers are listed by the tests that use them
            // The list of a folder may stand in a CMakeLists.txt above it.
            bool listed = false;
            for (QString parent = QFileInfo(file).path(); !listed && parent != "."; parent = QFileInfo(parent).path()) {
                const QString list = textOf(parent + "/CMakeLists.txt");
                const QString name = QRegularExpression::escape(file.mid(parent.size() + 1));
                listed = list.contains(QRegularExpression(QString("(^|[\\s/])%1[\\s)]").arg(name)));
            }
            if (!listed && !textOf("cmake/Rooms.cmake").contains(QFileInfo(file).fileName()))
                faults << file;
        }
    }
    EXPECT_TRUE(faults.isEmpty()) << "in no list of sources:\n" << qPrintable(readable(faults));
}

/// Number conversions that obey the user's locale would read "1.5" as 1 where a comma is the decimal point.
TEST(House, NoConversionObeysTheUsersLocale)
{
    static const QRegularExpression call(
        QStringLiteral("\\b(strtod|strtof|strtold|atof|stod|stof|stold|sscanf|snprintf|sprintf|ostringstream|"
                       "istringstream|stringstream)\\b\\s*[(<\\w]|\\bto_string\\s*\\("));
    QStringList faults;
    for (const char *folder : {"src", "demo"}) {
        for (const QString &file : filesBelow(folder, sourceNames)) {
            const QString code = withoutCommentsAndTexts(textOf(file));
            for (auto it = call.globalMatch(code); it.hasNext();)
                faults << QString("%1: %2").arg(file, it.next().captured());
        }
    }
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(readable(faults));
}

/// "%1 %2" filled by two calls in a row fills a "%2" inside the first value as well.
TEST(House, MarkersAreFilledInOnePass)
{
    EXPECT_EQ(chainedArgLines("a.arg(b(1), c);\nx.arg(y(\")\"))\n  .arg(z);"), QList<int>{2});
    EXPECT_EQ(chainedArgLines("a.arg(b.arg(c)); // x.arg(1).arg(2)"), QList<int>{});
    QStringList faults;
    for (const char *folder : {"src", "demo"}) {
        for (const QString &file : filesBelow(folder, sourceNames)) {
            for (int line : chainedArgLines(textOf(file)))
                faults << QString("%1:%2").arg(file, QString::number(line));
        }
    }
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(readable(faults));
}

/// A run under a comma locale means something only if the locale is there.
TEST(House, TheLocaleOfTheEnvironmentIsActive)
{
    const QByteArray wanted = qgetenv("LC_ALL");
    const char expected = wanted.startsWith("de_DE") ? ',' : '.';
    EXPECT_EQ(std::localeconv()->decimal_point[0], expected) << wanted.constData();
}
