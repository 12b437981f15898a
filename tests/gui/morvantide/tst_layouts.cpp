#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/browser/views/view.h"
#include "gui/common/recordviews/recordview.h"
#include "gui/morvantide/restoremarks.h"
#include "gui/morvantide/reviewwindow.h"
#include "support/failingcalls.h"
#include "support/gestures.h"
#include "support/logcatcher.h"
#include "windowsetup/setupfile.h"

#include <QAbstractButton>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSettings>
#include <QStatusBar>

namespace {

constexpr int twoHours = 7200;

/// The largest difference of a color's part between two images of one size; 255 for images of two sizes.
/// The library of fonts makes outlines of letters that come out up to 4 apart from one window to the next.
int farthest(const QImage &left, const QImage &right)
{
    if (left.size() != right.size())
        return 255;
    int farthest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const QRgb a = left.pixel(x, y); // to convert whole images, the toolkit starts threads of its own
            const QRgb b = right.pixel(x, y);
            farthest = std::max({farthest, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                 std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return farthest;
}

/// A demonstration with few records, a window of one size upon it, and the layouts beside the data.
class Layouts : public ReviewWindow {
protected:
    Layouts() : ReviewWindow(twoHours) { show(); }
    ~Layouts() override { window.reset(); } // while there is a folder to save in

    void show()
    {
        window->resize(1300, 900);
        window->show();
        settle();
    }
    /// Ends the program and starts it again.
    void restart()
    {
        window->close();
        window.reset();
        makeWindow();
        show();
    }
    void open(const QString &name = "demo")
    {
        ReviewWindow::open(name);
        settleDrawing();
    }
    /// Until plots that repaint at their own pace have done so.
    static void settleDrawing()
    {
        QTest::qWait(30);
        settle();
    }
    Tsb::TimeSeriesBrowser &browser() const { return *window->browser(); }
    QImage picture() const
    {
        QTest::qWait(250); // values off a scale are counted a moment after its drawing
        return browser().grab().toImage();
    }
    QDockWidget *dock(const QString &name) const { return window->findChild<QDockWidget *>(name); }
    /// Of the docks, in the window or outside; empty for hidden ones.
    QMap<QString, QRect> places() const
    {
        QMap<QString, QRect> all;
        for (const QDockWidget *one : window->findChildren<QDockWidget *>())
            all[one->objectName()] = one->isHidden() ? QRect() : QRect(one->mapTo(one->window(), {}), one->size());
        return all;
    }
    QVector<QPair<double, double>> colorLimits() const
    {
        QVector<QPair<double, double>> all;
        for (const Colorbar *bar : browser().findChildren<Colorbar *>())
            all.append({bar->lower(), bar->upper()});
        return all;
    }
    /// The area of each dock, and how many others share its tabs; 0 for one outside, or hidden.
    QMap<QString, QPair<int, int>> neighbours() const
    {
        QMap<QString, QPair<int, int>> all;
        for (QDockWidget *one : window->findChildren<QDockWidget *>())
            all[one->objectName()] = {one->isHidden() || one->isFloating() ? 0 : window->dockWidgetArea(one),
                                      window->tabifiedDockWidgets(one).size()};
        return all;
    }
    void setAutosave(bool on) const { action("Autosave layout")->setChecked(on); }
    bool isAutosaving() const { return action("Autosave layout")->isChecked(); }
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
    QAction *found(const QString &name) const
    {
        auto *const menu = action("Layouts of the data")->menu();
        Q_EMIT menu->aboutToShow();
        for (QAction *one : menu->actions())
            if (one->text() == name)
                return one;
        return nullptr;
    }
    static QVariantMap setupIn(const QString &file) { return WindowSetup::readSetupFile(file).setup; }
    QString standard() const { return path("demo/default.windowsetup"); }
    QSettings settings() const { return QSettings(settingsFile(), QSettings::IniFormat); }
};

} // namespace

TEST_F(Layouts, TheNextRunShowsTheSamePictureAndDocks)
{
    open();
    const int before = browser().views().size();
    ASSERT_GT(before, 3);
    browser().closeView(browser().views()[1]);
    browser().addElectrometerPlot(2);
    browser().addFlagPlot("none");
    browser().setLeftColumnWidth(150);
    browser().views()[2]->setFixedHeight(123);
    dock("commentList")->hide();
    dock("diagnosticStatus")->setFloating(true);
    window->addDockWidget(Qt::BottomDockWidgetArea, dock("spectraView"));
    window->resizeDocks({dock("currentrecordform")}, {260}, Qt::Horizontal);
    settle();
    window->fitTimescale();
    browser().allFitScale();
    settleDrawing();
    const QImage image = picture();
    const auto docks = places();
    const auto limits = colorLimits();
    setAutosave(true);
    restart();
    EXPECT_EQ(places(), docks) << "before there are data";
    EXPECT_FALSE(action("Autosave layout")->isChecked());
    open();
    EXPECT_EQ(places(), docks);
    EXPECT_EQ(browser().views().size(), before + 1);
    EXPECT_TRUE(action("Autosave layout")->isChecked());
    EXPECT_EQ(colorLimits(), limits);
    EXPECT_LE(farthest(picture(), image), 8);
}

TEST_F(Layouts, ALayoutThatCannotBeRestoredAsAWholeIsKept)
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

TEST_F(Layouts, AFailedSaveLeavesTheOldFile)
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

TEST_F(Layouts, CopiesComeBackByDialogAndByTheListAndAreUndone)
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

TEST_F(Layouts, UndoIsOfTheLastRestoreThatChangedTheWindow)
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

TEST_F(Layouts, ADamagedFileInUseGoesToTheBackupForACopyAndOneThatIsGoneIsSaved)
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

TEST_F(Layouts, TheDefaultLayoutConcernsDocksAndRecordsAlone)
{
    open();
    const auto docks = neighbours();
    const auto *const plots = window->findChild<RecordViews::RecordView *>("spectraView");
    const QVariantMap standardChoices = plots->setup();
    dock("logDock")->hide();
    dock("commentList")->setFloating(true);
    window->addDockWidget(Qt::LeftDockWidgetArea, dock("electrometersView"));
    window->findChild<RecordViews::RecordView *>("spectraView")->restoreSetup({{"single_plot", false}});
    setAutosave(true);
    browser().closeAllViews();
    settle();
    action("Restore default layout")->trigger();
    settle();
    EXPECT_EQ(neighbours(), docks);
    EXPECT_EQ(plots->setup(), standardChoices);
    EXPECT_TRUE(isAutosaving());
    EXPECT_FALSE(browser().hasViews());
    action("Undo restore")->trigger();
    settle();
    EXPECT_TRUE(dock("logDock")->isHidden() && dock("commentList")->isFloating());
    EXPECT_EQ(plots->setup()["single_plot"], false);
}

TEST_F(Layouts, OpeningDataNeverMovesTheWindowAndKeepsTheChosenColours)
{
    open();
    const auto spectrum = window->uiInfo()->spectrumInfos().first();
    window->uiInfo()->setSpectrumColor(spectrum.get(), Qt::magenta);
    window->uiInfo()->publish();
    action("Save layout")->trigger();
    window->close();
    window.reset();
    QFile::remove(settingsFile());
    makeWindow();
    window->setGeometry(10, 20, 1000, 700);
    window->show();
    open();
    EXPECT_EQ(window->geometry(), QRect(10, 20, 1000, 700));
    EXPECT_EQ(window->uiInfo()->spectrumColor(spectrum.get()), QColor(Qt::magenta));
    setAutosave(true);
    window->closeData();
    EXPECT_TRUE(isAutosaving());
    QFile::remove(standard());
    open();
    EXPECT_TRUE(isAutosaving()) << "without a file the choice stays";
}

TEST_F(Layouts, TimeSpanAndRecordAreKeptIfTheUserWants)
{
    open();
    for (const bool isKept : {false, true}) {
        window->fitTimescale();
        const TimeScale whole = browser().timeScale();
        window->showRecord(window->datastore()->at(3));
        browser().timeView()->changeZoom(0.37, 200);
        const TimeScale shown = browser().timeScale();
        action("Keep time span and record")->setChecked(isKept);
        setAutosave(true);
        restart();
        EXPECT_FALSE(action("Keep time span and record")->isChecked());
        open();
        EXPECT_EQ(action("Keep time span and record")->isChecked(), isKept);
        EXPECT_EQ(browser().timeScale().rebased(0), (isKept ? shown : whole).rebased(0));
        EXPECT_EQ(window->shownRecord(), isKept ? window->datastore()->at(3) : nullptr);
        EXPECT_FALSE(action("Previous view")->isEnabled());
    }
    restart();
    QVariantMap setup = setupIn(standard());
    setup["keptplace"] = QVariantMap{{"begin", "0"}, {"end", "36000000000"}};
    EXPECT_EQ(WindowSetup::writeSetupFile(standard(), setup), QString());
    open();
    const TimeScale shown = browser().timeScale();
    window->fitTimescale();
    EXPECT_EQ(browser().timeScale(), shown) << "a span without any of these data";
}

TEST_F(Layouts, DocksComeBackWithoutData)
{
    dock("varGridView")->hide();
    window->addDockWidget(Qt::LeftDockWidgetArea, dock("logDock"));
    settle();
    const auto docks = places();
    restart();
    EXPECT_EQ(places(), docks);
    window->close();
    window.reset();
    makeWindow();
    window->close(); // by a signal that came before it was shown
    restart();
    EXPECT_EQ(places(), docks);
    window->close();
    window.reset();
    const struct {
        const char *name, *key;
        QVariant value;
        const char *warning;
    } cases[] = {{"damaged", "MainWindow/state", "00ff", "checksum doesn't match"},
                 {"no text", "MainWindow/state", QVariantList{1, 2}, "The docks stand"},
                 {"brought the program down", "restoring", settingsFile(), "the program ended"}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.name);
        const QByteArray sound = ::contentOf(settingsFile());
        QSettings(settingsFile(), QSettings::IniFormat).setValue(one.key, one.value);
        const LogCatcher log;
        makeWindow();
        show();
        ASSERT_EQ(log.complaints().size(), 1);
        EXPECT_TRUE(log.complaints()[0].contains(one.warning));
        EXPECT_FALSE(dock("varGridView")->isHidden());
        window->close(); // keeps docks that are sound
        window.reset();
        EXPECT_FALSE(settings().contains("restoring"));
        writeFile(settingsFile(), sound);
    }
}

TEST_F(Layouts, DocksOfAMaximizedWindowComeBackAsTheyWereThoughItBeginsSmaller)
{
    open();
    window->resize(620, 500);
    window->showMaximized();
    settle();
    window->resizeDocks({dock("currentrecordform")}, {320}, Qt::Horizontal);
    window->resizeDocks({dock("logDock")}, {400}, Qt::Vertical);
    window->resizeDocks({dock("currentrecordform")}, {380}, Qt::Vertical);
    settle();
    const auto docks = places();
    action("Save layout")->trigger();
    window->showNormal();
    settle();
    ASSERT_NE(places(), docks);
    found("default.windowsetup")->trigger();
    settle();
    EXPECT_EQ(places(), docks) << "restored by hand";
    window->close();
    window.reset();
    makeWindow();
    window->show();
    settle();
    EXPECT_EQ(places(), docks) << "in the next run";
}

TEST_F(Layouts, TheLogStillShowsItsEndAfterARestoreMadeItSmaller)
{
    open();
    action("Save layout")->trigger();
    for (int i = 0; i < 60; ++i)
        Log::Logger("gui").log(Log::Info, QString("line %1").arg(i));
    const QScrollBar *const bar = dock("logDock")->findChild<QPlainTextEdit *>()->verticalScrollBar();
    for (QAction *command : {found("default.windowsetup"), action("Restore default layout"), action("Undo restore")}) {
        SCOPED_TRACE(command->text().toStdString());
        window->resizeDocks({dock("logDock")}, {command == action("Undo restore") ? 60 : 400}, Qt::Vertical);
        settle();
        const int page = bar->pageStep();
        command->trigger();
        settle();
        EXPECT_NE(bar->pageStep(), page);
        EXPECT_EQ(bar->value(), bar->maximum());
    }
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
