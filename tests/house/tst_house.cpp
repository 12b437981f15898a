#include "house/rooms.h"
#include "house/sourcetext.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <clocale>

namespace {

const QStringList sourceNames{"*.cpp", "*.h"};

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

QSet<QString> targetsOf(const QVector<Room> &rooms)
{
    QSet<QString> targets;
    for (const Room &room : rooms)
        targets << room.target;
    return targets;
}

void expectNone(const QStringList &faults)
{
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(faults.join('\n'));
}

/// The sources of the product.
QStringList sources()
{
    return filesBelow("src", sourceNames) + filesBelow("demo", sourceNames) + filesBelow("packaging", sourceNames);
}

/// Where the product's code, without comments and texts, has what is sought.
QStringList placesOf(const QRegularExpression &sought)
{
    QStringList places;
    for (const QString &file : sources()) {
        const QString code = withoutCommentsAndTexts(textOf(file));
        for (auto it = sought.globalMatch(code); it.hasNext();)
            places << QString("%1: %2").arg(file, it.next().captured());
    }
    return places;
}

} // namespace

TEST(House, EveryRoomIncludesWhatItNeedsAndNeedsWhatItIncludes)
{
    const QVector<Room> rooms = roomTable();
    QMap<QString, QSet<QString>> unused; // by the room's place
    const QSet<QString> targets = targetsOf(rooms);
    for (const Room &room : rooms)
        unused[room.place] = QSet<QString>(room.needs.begin(), room.needs.end()) & targets;
    QStringList faults;
    for (const QString &file : sources()) {
        const Room *room = roomOf(rooms, file);
        if (!room)
            continue; // built without windows
        for (const QString &include : includesOf(textOf(file))) {
            const Room *other = roomOf(rooms, include);
            if (other)
                unused[room->place].remove(other->target);
            if (other && other != room && !room->needs.contains(other->target))
                faults << QString("%1 includes %2").arg(file, include);
            if (!other && !room->windows && isWindowHeader(include))
                faults << QString("%1 includes the window header %2").arg(file, include);
        }
    }
    for (const Room &room : rooms) {
        for (const QString &target : unused[room.place])
            faults << QString("%1 names %2 but includes nothing of it").arg(room.place, target);
    }
    EXPECT_GT(rooms.size(), 10);
    expectNone(faults);
}

TEST(House, ArrowsRunOneWay)
{
    const QVector<Room> rooms = roomTable();
    const QSet<QString> all = targetsOf(rooms);
    QSet<QString> above;
    QStringList faults;
    for (const Room &room : rooms) {
        for (const QString &need : room.needs) {
            if (all.contains(need) && !above.contains(need))
                faults << QString("%1 needs %2, which comes after it in CMakeLists.txt").arg(room.target, need);
        }
        above << room.target;
    }
    expectNone(faults);
}

TEST(House, NoUnitsIncludeEachOtherInACircle)
{
    EXPECT_EQ(circles({{"a", {"b"}}, {"b", {"c"}}, {"c", {"b"}}, {"d", {"a", "c"}}}), QStringList{"b, c"});
    expectNone(circles(unitArrows(sources())));
}

/// A class is divided by what it owns, not over several sources.
TEST(House, EverySourceHasTheHeaderOfItsName)
{
    const QStringList files = sources();
    QStringList faults;
    for (const QString &file : files) {
        if (file.endsWith(".cpp") && !file.endsWith("/main.cpp") && !files.contains(file.chopped(4) + ".h"))
            faults << file;
    }
    expectNone(faults);
}

TEST(House, NoFolderIsCrowded)
{
    QMap<QString, QSet<QString>> units;
    for (const QString &file : filesBelow("src", sourceNames))
        units[QFileInfo(file).path()] << QFileInfo(file).completeBaseName();
    for (auto it = units.begin(); it != units.end(); ++it)
        EXPECT_LE(it.value().size(), 30) << qPrintable(it.key());
}

TEST(House, TheDocumentedTableOfRoomsIsTheBuilds)
{
    if (QStringLiteral(WINDOW_FOLDERS).isEmpty())
        GTEST_SKIP() << "built without windows, so without half of the rooms";
    const QString text = textOf("ARCHITECTURE.md");
    const QVector<Room> rooms = roomTable();
    const QSet<QString> all = targetsOf(rooms);
    for (const Room &room : rooms) {
        if (room.place.endsWith(".cpp"))
            continue;
        QStringList needs;
        for (const QString &need : room.needs) {
            if (all.contains(need))
                needs << need;
        }
        const QRegularExpression row(QString("^\\| `%1` \\| `%2` \\|.*\\| %3 \\|$")
                                         .arg(room.place, room.target, needs.isEmpty() ? "nothing" : needs.join(", ")),
                                     QRegularExpression::MultilineOption);
        EXPECT_TRUE(text.contains(row)) << qPrintable(row.pattern());
    }
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
                continue; // shared headers are listed by the tests that use them
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
    expectNone(faults);
}

/// Number conversions that obey the user's locale would read "1.5" as 1 where a comma is the decimal point.
TEST(House, NoConversionObeysTheUsersLocale)
{
    static const QRegularExpression call(
        QStringLiteral("\\b(strtod|strtof|strtold|atof|stod|stof|stold|sscanf|snprintf|sprintf|ostringstream|"
                       "istringstream|stringstream)\\b\\s*[(<\\w]|\\bto_string\\s*\\("));
    expectNone(placesOf(call));
}

/// The toolkit's own dialog ends the program where a file can't be renamed.
TEST(House, FilesAreAskedForByTheProgramsOwnDialog)
{
    static const QRegularExpression made(
        QStringLiteral("\\bQFileDialog\\s+\\w|\\bnew\\s+QFileDialog\\b|\\bQFileDialog::(get|saveFile)\\w+"));
    EXPECT_TRUE(made.match("QFileDialog::getOpenFileName(this)").hasMatch());
    EXPECT_TRUE(made.match("QFileDialog dialog(this);").hasMatch());
    expectNone(placesOf(made));
}

/// "%1 %2" filled by two calls in a row fills a "%2" inside the first value as well.
TEST(House, MarkersAreFilledInOnePass)
{
    EXPECT_EQ(chainedArgLines("a.arg(b(1), c);\nx.arg(y(\")\"))\n  .arg(z);"), QList<int>{2});
    EXPECT_EQ(chainedArgLines("a.arg(b.arg(c)); // x.arg(1).arg(2)"), QList<int>{});
    QStringList faults;
    for (const QString &file : sources()) {
        for (int line : chainedArgLines(textOf(file)))
            faults << QString("%1:%2").arg(file, QString::number(line));
    }
    expectNone(faults);
}

/// A window translates what others complain of by the complaint's words.
TEST(House, ComplaintsThatTheWindowTranslatesAreMadeSomewhere)
{
    const QString window = "src/gui/common/complainttext.cpp";
    QString others;
    for (const QString &file : sources())
        if (file != window)
            others += textOf(file);
    static const QRegularExpression pattern(R"re("Complaint", (".*"))re");
    const QString ours = textOf(window).section("systemWords", 0, 0);
    int count = 0;
    for (auto it = pattern.globalMatch(ours); it.hasNext(); ++count) {
        const QString words = it.next().captured(1);
        EXPECT_TRUE(others.contains(words)) << qPrintable(words);
    }
    EXPECT_GT(count, 30);
}

/// Somebody else is sent the log, and searches it by its words.
TEST(House, LogEntriesAreNotTranslated)
{
    static const QRegularExpression call(R"re(\blog\(\s*Log::\w+,\s*(\w+::)*(tr|translate)\()re");
    EXPECT_TRUE(call.match("m_logger.log(\n    Log::Warning, Words::tr(\"x\"));").hasMatch());
    QStringList faults;
    for (const QString &file : sources())
        if (textOf(file).contains(call))
            faults << file;
    expectNone(faults);
}

/// Who filters or searches the log goes by a few areas. A plot's line of debugging tells its place instead.
TEST(House, LogAreasAreTheFewThatAreKnown)
{
    const QStringList known{"main",       "gui",       "comments",        "dataexport",      "filereader",
                            "filewriter", "inversion", "new_line_reader", "old_line_reader", "src/gui/common/tsb/plot"};
    static const QRegularExpression logger("(?:Logger(?: \\w+)?|m_logger)[({]QStringLiteral\\(\"([^\"]*)\"");
    int count = 0;
    for (const QString &file : filesBelow("src", sourceNames)) {
        const QString text = textOf(file);
        for (auto it = logger.globalMatch(text); it.hasNext(); ++count) {
            const QString area = it.next().captured(1);
            EXPECT_TRUE(known.contains(area)) << qPrintable(file) << ": " << qPrintable(area);
        }
    }
    EXPECT_GT(count, 10);
}

/// A run under a comma locale means something only if the locale is there.
TEST(House, TheLocaleOfTheEnvironmentIsActive)
{
    const QByteArray wanted = qgetenv("LC_ALL");
    const char expected = wanted.startsWith("de_DE") ? ',' : '.';
    EXPECT_EQ(std::localeconv()->decimal_point[0], expected) << wanted.constData();
}
