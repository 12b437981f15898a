#include "gui/morvantide/layoutwindow.h"
#include "gui/morvantide/restoremarks.h"
#include "support/failingcalls.h"
#include "support/logcatcher.h"

#include <QMessageBox>
#include <QStatusBar>

namespace {

class LayoutFiles : public Layouts {
protected:
    QString message() const { return window->statusBar()->currentMessage(); }
    /// Answers the file dialog of a command.
    void choose(const QString &command, const QString &file)
    {
        withDialog<QFileDialog>([this, file](QFileDialog &dialog) {
            dialog.setDirectory(path(""));
            dialog.findChild<QLineEdit *>("fileNameEdit")->setText(file);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        action(command)->trigger();
    }
};

} // namespace

TEST_F(LayoutFiles, ALayoutThatCannotBeRestoredAsAWholeIsKept)
{
    open();
    browser().closeAllViews();
    browser().addOpmodePlot();
    setAutosave(true);
    action("Save layout")->trigger();
    const QByteArray sound = contentOf("demo/default.windowsetup");
    using Change = std::function<void(QVariantMap &)>;
    const auto changed = [&](const Change &change) {
        write("demo/default.windowsetup", sound);
        QVariantMap setup = setupIn(standard());
        change(setup);
        EXPECT_EQ(WindowSetup::writeSetupFile(standard(), setup), QString());
        return contentOf("demo/default.windowsetup");
    };
    const auto with = [](const char *part, const char *key, const QVariant &value) -> Change {
        return [=](QVariantMap &setup) {
            QVariantMap map = setup[part].toMap();
            map[key] = value;
            setup[part] = map;
        };
    };
    const auto ofAnotherProgram = [](QVariantMap &setup) {
        for (const char *key : {"leftcolumn", "scrolled", "spectrumcolors"})
            setup.remove(key);
        QVariantMap main = setup["mainwindow"].toMap();
        main.remove("statechecksum");
        main.remove("geometrychecksum");
        setup["mainwindow"] = main;
    };
    const QVariantMap unsealed{{"state", "000000ff0000000200"}};
    const char *const tooOld = "User-interface configuration file is too old.";
    const char *const notUnderstood = "Failed to understand interface setup file '";
    const struct {
        const char *name;
        QByteArray content;
        const char *warning; ///< null: it is taken
        bool isRestored;     ///< the browser's part
        bool isMarked = false;
    } cases[] = {
        {"sound", sound, nullptr, true},
        {"without docks", changed([](QVariantMap &setup) { setup.remove("mainwindow"); }), nullptr, true},
        {"without checksums and extra keys", changed(ofAnotherProgram), nullptr, true},
        {"brought the program down", sound, "the program ended when it restored it", false, true},
        {"not YAML", "a: [", notUnderstood, false},
        {"no map", "- 1\n", notUnderstood, false},
        {"version 1", changed([](QVariantMap &setup) { setup["version"] = 1; }), tooOld, false},
        {"without version", changed([](QVariantMap &setup) { setup.remove("version"); }), tooOld, false},
        {"damaged state", changed(with("mainwindow", "state", "00ff")), "its checksum doesn't match", true},
        {"damaged state without checksum", changed([&](QVariantMap &setup) { setup["mainwindow"] = unsealed; }),
         "no arrangement of this window's docks", true},
        {"damaged columns", changed(with("diagnosticview", "headerstate", "00")), "its checksum doesn't match", true},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.name);
        write("demo/default.windowsetup.bak", QByteArray());
        restart();
        EXPECT_FALSE(settings().value("restoring").toStringList().contains(standard()));
        write("demo/default.windowsetup", one.content);
        if (one.isMarked) {
            window.reset();
            QSettings(settingsFile(), QSettings::IniFormat).setValue("restoring", QStringList{standard()});
            makeWindow();
        }
        for (const bool byHand : {false, true}) {
            const LogCatcher log;
            open();
            EXPECT_EQ(log.complaints().size(), one.warning ? 1 : 0) << qPrintable(log.complaints().join('\n'));
            EXPECT_TRUE(!one.warning || log.complaints().value(0).contains(one.warning));
            EXPECT_EQ(browser().views().size() == 1, one.isRestored);
            setAutosave(true);
            if (byHand)
                action("Save layout")->trigger();
            window->closeData();
            EXPECT_EQ(log.complaints().filter("The layout isn't saved").size(), one.warning && !byHand ? 1 : 0);
            EXPECT_TRUE(byHand || !one.warning || contentOf("demo/default.windowsetup") == one.content);
        }
        EXPECT_EQ(contentOf("demo/default.windowsetup.bak"), one.warning ? one.content : QByteArray());
        EXPECT_EQ(setupIn(standard())["version"], 2);
        EXPECT_EQ(message(), QString("The layout was saved to '%1'").arg(standard()));
    }
}

TEST_F(LayoutFiles, AFailedSaveLeavesTheOldFile)
{
    EXPECT_FALSE(action("Save layout")->isEnabled());
    open();
    action("Save layout")->trigger();
    const QByteArray before = contentOf("demo/default.windowsetup");
    const LogCatcher log;
    {
        const FailingCalls full(2, ENOSPC);
        browser().closeAllViews();
        action("Save layout")->trigger();
    }
    ASSERT_EQ(log.complaints().size(), 1);
    EXPECT_TRUE(log.complaints()[0].startsWith("The layout could not be saved to '" + standard()));
    EXPECT_EQ(contentOf("demo/default.windowsetup"), before);
    window->closeData();
    EXPECT_FALSE(action("Save layout")->isEnabled());
    EXPECT_EQ(contentOf("demo/default.windowsetup"), before) << "nothing saves by itself at first";
}

TEST_F(LayoutFiles, CopiesComeBackByDialogAndByTheListAndAreUndone)
{
    open();
    const QRect place(5, 30, 790, 600);
    window->setGeometry(place);
    const int all = browser().views().size();
    withDialog<QFileDialog>([this](QFileDialog &dialog) {
        EXPECT_EQ(dialog.directory().path(), path("demo")) << "none was chosen yet";
        dialog.reject();
    });
    action("Save layout copy...")->trigger();
    choose("Save layout copy...", "mine");
    EXPECT_EQ(settings().value("windowsetuppath").toString(), QFileInfo(path("mine")).path());
    EXPECT_EQ(setupIn(path("mine.windowsetup"))["timeseries"].toList().size(), all);
    write("precious.txt", "data");
    const auto yes = [](QMessageBox &box) { box.button(QMessageBox::Yes)->click(); };
    {
        const LogCatcher log;
        QTimer::singleShot(100, [&] { withDialog<QMessageBox>(yes); });
        choose("Save layout copy...", "precious.txt");
        EXPECT_EQ(log.complaints().size(), 1);
        EXPECT_EQ(contentOf("precious.txt"), "data");
    }
    const auto spoil = [&] {
        browser().closeAllViews();
        dock("logDock")->hide();
        window->setGeometry(15, 50, 770, 650);
        setAutosave(true);
        settle();
    };
    const auto restored = [&] {
        settle();
        return browser().views().size() == all && !dock("logDock")->isHidden() && window->geometry() == place &&
               !isAutosaving();
    };
    EXPECT_FALSE(action("Undo restore")->isEnabled());
    spoil();
    choose("Restore layout...", "mine.windowsetup");
    EXPECT_TRUE(restored());
    action("Undo restore")->trigger();
    settle();
    EXPECT_FALSE(browser().hasViews());
    EXPECT_TRUE(dock("logDock")->isHidden() && isAutosaving());
    EXPECT_EQ(window->geometry().topLeft(), QPoint(15, 50));
    EXPECT_FALSE(action("Undo restore")->isEnabled());
    action("Save layout")->trigger();
    EXPECT_TRUE(QFile::exists(standard())) << "a copy isn't the file in use";
    ASSERT_TRUE(found("default.windowsetup") && found("../mine.windowsetup"));
    EXPECT_TRUE(found("default.windowsetup")->isChecked());
    found("../mine.windowsetup")->trigger();
    EXPECT_TRUE(restored());
    spoil();
    action("Undo restore")->trigger();
    choose("Restore layout...", "precious.txt");
    EXPECT_FALSE(action("Undo restore")->isEnabled()) << "nothing was restored";
}

TEST_F(LayoutFiles, UndoIsOfTheLastRestoreThatChangedTheWindow)
{
    action("Restore default layout")->trigger();
    open();
    EXPECT_FALSE(action("Undo restore")->isEnabled()) << "of a time before the data";
    action("Keep time span and record")->setChecked(true);
    window->showRecord(window->datastore()->at(3));
    action("Save layout")->trigger();
    browser().closeAllViews();
    const auto chosen = window->datastore()->at(5);
    window->showRecord(chosen);
    settle();
    found("default.windowsetup")->trigger();
    for (const QByteArray unusable : {"a: [", "version: 1"}) {
        write("demo/other.windowsetup", unusable);
        found("other.windowsetup")->trigger();
    }
    settle();
    ASSERT_TRUE(browser().hasViews());
    EXPECT_EQ(window->shownRecord(), window->datastore()->at(3));
    action("Undo restore")->trigger();
    settle();
    EXPECT_FALSE(browser().hasViews());
    EXPECT_EQ(window->shownRecord(), chosen);
}

TEST_F(LayoutFiles, ADamagedFileInUseGoesToTheBackupForACopyAndOneThatIsGoneIsSaved)
{
    write("demo/default.windowsetup", "a: [");
    open();
    QTimer::singleShot(
        100, [] { withDialog<QMessageBox>([](QMessageBox &box) { box.button(QMessageBox::Yes)->click(); }); });
    choose("Save layout copy...", "demo/default.windowsetup");
    EXPECT_EQ(contentOf("demo/default.windowsetup.bak"), "a: [");
    for (const bool isGone : {false, true}) {
        SCOPED_TRACE(isGone);
        setAutosave(true);
        const LogCatcher log;
        window->closeData();
        EXPECT_EQ(log.complaints(), QStringList());
        EXPECT_EQ(setupIn(standard())["version"], 2);
        write("demo/default.windowsetup", "a: [");
        open();
        QFile::remove(standard());
    }
    action("Save layout")->trigger();
    for (const QByteArray damaged : {"b: [", "version: 1", "version: 2\nmainwindow: {state: 00}"}) {
        write("demo/default.windowsetup", damaged); // after it was opened, or saved
        found("default.windowsetup")->trigger();
        setAutosave(true);
        window->closeData();
        EXPECT_EQ(contentOf("demo/default.windowsetup"), damaged);
        QFile::remove(standard());
        open();
    }
    setAutosave(false);
}

TEST(RestoreMarks, ARestoreIsNotedOnTheDiskBeforeItBegins)
{
    QTemporaryDir folder;
    QSettings settings(folder.filePath("a.conf"), QSettings::IniFormat);
    RestoreMarks first(settings);
    first.begin("/a, b");
    first.finish();
    first.begin("/c");
    ASSERT_TRUE(QFile::copy(settings.fileName(), folder.filePath("b.conf"))); // the program ends here
    QSettings copy(folder.filePath("b.conf"), QSettings::IniFormat);
    RestoreMarks second(copy);
    EXPECT_FALSE(second.hasCrashed("/a, b"));
    EXPECT_TRUE(second.hasCrashed("/c"));
    second.begin("/d");
    second.finish();
    EXPECT_TRUE(RestoreMarks(copy).hasCrashed("/c")) << "until it is restored or saved";
    second.begin("/c");
    second.finish();
    EXPECT_FALSE(copy.contains("restoring"));
}
