#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/readprogress.h"
#include "gui/morvantide/recentfolders.h"
#include "gui/morvantide/settingsfile.h"
#include "support/files.h"
#include "support/logcatcher.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

struct Dialog {
    DataChooserDialog dialog;

    template<class T>
    T *find(const char *name)
    {
        return dialog.findChild<T *>(name);
    }
    void click(const char *name) { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
    bool isOkEnabled() { return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled(); }
};

const QDateTime day(int month, int number)
{
    return QDateTime(QDate(2019, month, number), QTime(1, 2, 3));
}

} // namespace

TEST(DataChooserDialog, GivesBackWhatItWasGiven)
{
    Dialog d;
    EXPECT_FALSE(d.isOkEnabled()) << "no folder";
    const QVariantMap first{{"folderName", "/a b/ä"}, {"beginTime", day(9, 12)}, {"endTime", day(9, 13)},
                            {"limitBegin", true},     {"limitEnd", true},        {"variant", "7s"},
                            {"legacyFiles", true},    {"assumedOpmode", "fog"}};
    d.dialog.setOldPaths({"/x", "/y"});
    d.dialog.setChoice(first);
    EXPECT_EQ(d.dialog.choice(), first);
    EXPECT_TRUE(d.isOkEnabled());
    EXPECT_TRUE(d.find<QDateTimeEdit>("beginTimeEdit")->isEnabled());
    EXPECT_FALSE(d.find<QComboBox>("variantComboBox")->isEnabled());
    EXPECT_TRUE(d.find<QComboBox>("assumedOpmodeComboBox")->isEnabled());

    d.dialog.setChoice({{"limitEnd", false}, {"legacyFiles", false}});
    QVariantMap second = first;
    second["limitEnd"] = second["legacyFiles"] = false;
    EXPECT_EQ(d.dialog.choice(), second) << "keys that are missing change nothing";
    EXPECT_FALSE(d.find<QDateTimeEdit>("endTimeEdit")->isEnabled());
    EXPECT_FALSE(d.find<QComboBox>("assumedOpmodeComboBox")->isEnabled());
}

TEST(DataChooserDialog, TellsWhatTheChosenFilesHoldBeforeTheyAreRead)
{
    const QTemporaryDir folder;
    const QByteArray header =
        "# Quilvane records\n# opmodes: [ions, offset]\n# parameters:\n# - {name: temp, humanname: T, unit: K}\n"
        "begintime\tendtime\topmode\ttemp\tflags\n";
    for (const char *name : {"20190912-block.records", "20190913-block.records"})
        writeFile(folder.filePath(name), header);
    writeFile(folder.filePath("20190912-1s.records"), "# Quilvane records\n# [\nbegintime\n");
    Dialog d;
    const auto *label = d.find<QLabel>("overviewLabel");
    LogCatcher log;
    const auto tells = [&](const char *text) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return label->text().contains(text); })) << qPrintable(label->text());
    };
    d.dialog.setChoice({{"folderName", folder.path()}, {"variant", "block"}});
    tells("2 days; 2 files; 270 bytes; modes: ions, offset; 1 variable");
    d.dialog.setChoice({{"limitEnd", true}, {"endTime", day(9, 12)}});
    tells("1 days; 1 files;");
    d.dialog.setChoice({{"endTime", day(9, 11)}});
    tells("No file of these days; the folder has 2019-09-12 to 2019-09-13.");
    d.dialog.setChoice({{"endTime", day(9, 12)}, {"variant", "1s"}});
    tells("1 without a header");
    d.dialog.setChoice({{"variant", "none"}});
    tells("No file matches.");
    EXPECT_EQ(label->toolTip(), QString()) << "that of the choice before";
    EXPECT_EQ(log.complaints(), QStringList()) << "they are told when the files are read";
    QByteArray names;
    for (int i = 0; i < 5000; ++i)
        names += ", <b>" + QByteArray::number(i).repeated(50);
    writeFile(folder.filePath("20190912-many.diagnostics"),
              "# Quilvane flags\n# opmodes: [a" + names + "]\n# parameters: [a" + names + "]\nbegin_time\n");
    d.dialog.setChoice({{"variant", "many"}});
    tells("modes: a, <b>0");
    EXPECT_LT(label->text().size(), 1000) << "megabytes would keep the window waiting";
    EXPECT_LT(label->toolTip().size(), 10'000);
    EXPECT_TRUE(label->toolTip().contains("&lt;b&gt;")) << "names are no markup";
}

TEST(DataChooserDialog, ADateThatIsTypedReplacesTheYearToo)
{
    for (const auto before : {QKeySequence::SelectAll, QKeySequence::MoveToStartOfLine}) {
        Dialog d;
        d.click("timespan7dButton");
        auto *const edit = d.find<QDateTimeEdit>("beginTimeEdit");
        QTest::keySequence(edit, before);
        QTest::keyClicks(edit, "2019-05-17");
        EXPECT_EQ(edit->date(), QDate(2019, 5, 17)) << int(before);
    }
}

TEST(DataChooserDialog, StartsTodayWithTheBlockVariant)
{
    Dialog d;
    const QVariantMap choice = d.dialog.choice();
    EXPECT_EQ(choice.size(), 8);
    EXPECT_EQ(choice["beginTime"].toDate(), QDate::currentDate());
    EXPECT_EQ(choice["endTime"].toDate(), QDate::currentDate());
    EXPECT_FALSE(choice["limitBegin"].toBool());
    EXPECT_FALSE(choice["legacyFiles"].toBool());
    EXPECT_EQ(choice["variant"].toString(), "block");
    EXPECT_EQ(choice["assumedOpmode"].toString(), "") << "only the user can know";
    EXPECT_EQ(d.find<QDateTimeEdit>("beginTimeEdit")->displayFormat(), "yyyy-MM-dd");
}

TEST(DataChooserDialog, SpanButtons)
{
    const struct {
        const char *button;
        bool endBefore;
        bool begin, end;
        int days; ///< 0 leaves the times
    } table[] = {{"allTimespanButton", true, false, false, 0},
                 {"timespan7dButton", true, true, true, 7},
                 {"timespan7dButton", false, true, false, 7},
                 {"timespan30dButton", true, true, false, 30},
                 {"timespan30dButton", false, true, false, 30}};
    for (const auto &row : table) {
        Dialog d;
        d.dialog.setChoice({{"beginTime", day(1, 1)}, {"endTime", day(1, 2)}, {"limitEnd", row.endBefore}});
        d.click(row.button);
        const QVariantMap choice = d.dialog.choice();
        EXPECT_EQ(choice["limitBegin"].toBool(), row.begin) << row.button;
        EXPECT_EQ(choice["limitEnd"].toBool(), row.end) << row.button;
        const QDate begin = row.days ? QDate::currentDate().addDays(-row.days) : QDate(2019, 1, 1);
        const QDate end = row.days ? QDate::currentDate() : QDate(2019, 1, 2);
        EXPECT_EQ(choice["beginTime"].toDate(), begin) << row.button;
        EXPECT_EQ(choice["endTime"].toDate(), end) << row.button;
    }
}

TEST(DataChooserDialog, ListsTheVariantsOfTheFolder)
{
    QTemporaryDir folder;
    for (const char *name : {"20190912-90s.records", "20190912-5min.records", "notes.txt"})
        writeFile(folder.filePath(name));
    Dialog d;
    auto *box = d.find<QComboBox>("variantComboBox");
    const auto items = [box] {
        QStringList list;
        for (int i = 0; i < box->count(); ++i)
            list.append(box->itemText(i));
        return list;
    };
    EXPECT_EQ(items(), (QStringList{"block", "10s", "1s"}));
    d.dialog.setChoice({{"folderName", folder.path()}});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return items() == QStringList{"5min", "90s"};
    })) << items().join(' ').toStdString();
    EXPECT_EQ(box->currentText(), "block") << "what the user typed stays";
    d.dialog.setChoice({{"folderName", folder.path() + "/none"}});
    QTest::qWait(500);
    EXPECT_EQ(items(), (QStringList{"5min", "90s"}));
}

TEST(DataChooserDialog, EverythingIsReachedByTab)
{
    Dialog d;
    d.dialog.setChoice({{"folderName", "/"}, {"limitBegin", true}, {"limitEnd", true}});
    d.dialog.show();
    d.dialog.activateWindow();
    QSet<QString> reached;
    for (int i = 0; i < 30; ++i) {
        if (QWidget *focus = d.dialog.focusWidget())
            reached.insert(focus->objectName());
        QTest::keyClick(d.dialog.focusWidget() ? d.dialog.focusWidget() : &d.dialog, Qt::Key_Tab);
    }
    for (const char *name : {"folderNameComboBox", "chooseFolderButton", "limitBeginCheckBox", "beginTimeEdit",
                             "limitEndCheckBox", "endTimeEdit", "allTimespanButton", "timespan7dButton",
                             "timespan30dButton", "averagingVariantRadioButton", "variantComboBox"})
        EXPECT_TRUE(reached.contains(name)) << name;
}

TEST(RecentFolders, NewestFirstAndAtMostTwenty)
{
    QStringList twenty;
    for (int i = 0; i < 20; ++i)
        twenty.append(QString::number(i));
    const QStringList known = recentFoldersWith(twenty, "7");
    EXPECT_EQ(known.size(), 20);
    EXPECT_EQ(known.mid(0, 2), (QStringList{"7", "0"}));
    EXPECT_EQ(known.count("7"), 1);
    const QStringList pushed = recentFoldersWith(twenty, "new");
    EXPECT_EQ(pushed.size(), 20);
    EXPECT_EQ(pushed.first(), "new");
    EXPECT_EQ(pushed.last(), "18");
    EXPECT_EQ(recentFoldersWith(twenty + twenty, "new").size(), 20);
    EXPECT_EQ(recentFoldersWith({}, "a"), QStringList{"a"});
}

TEST(ReadProgress, Text)
{
    EXPECT_EQ(progressText({0, 3, "", 0, 0}), "");
    EXPECT_EQ(progressText({0, 3, "Reading %1", 0, 0}), "Reading %1 (1 of 3)");
    EXPECT_EQ(progressText({2, 3, "Reading c", 50, 200}), "Reading c (3 of 3), 25 %");
    EXPECT_EQ(progressText({3, 3, "Reading c", 300, 200}), "Reading c (3 of 3), 100 %");
}

TEST(SettingsFile, BesideTheExecutableWhereItCanBe)
{
    QTemporaryDir application, user;
    const QString beside = application.filePath("morvantide.conf");
    EXPECT_EQ(settingsFilePath(application.path(), user.path()), beside);
    EXPECT_EQ(settingsFilePath("/proc/self", user.path()), user.filePath("morvantide.conf"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(beside).constData(), 0600), 0);
    EXPECT_EQ(settingsFilePath(application.path(), user.path()), user.filePath("morvantide.conf")) << "not from a pipe";
}
