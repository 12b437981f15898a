#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/dayfolder.h"
#include "gui/morvantide/readprogressdialog.h"
#include "gui/morvantide/windowtest.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "support/gestures.h"
#include "support/logcatcher.h"

#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QToolBar>
#include <QToolButton>

namespace {

class MorvantideMainWindowTest : public WindowTest {
protected:
    QSettings settings() const { return QSettings(settingsFile(), QSettings::IniFormat); }
    void startOpening(const QVariantMap &choice = {}) { WindowTest::startOpening(data.path(), choice); }
    void open(const QVariantMap &choice = {})
    {
        startOpening(choice);
        waitForRead();
    }
    int recordCount() const { return window->datastore() ? window->datastore()->size() : -1; }
    QString title() const { return window->windowTitle(); }
    QString folderName() const { return QDir(data.path()).dirName(); }

    DayFolder data;
};

} // namespace

TEST_F(MorvantideMainWindowTest, OpensAFolder)
{
    data.writeDay(255);
    data.writeDay(256);
    data.writeDay(256, "10s");
    window->resize(1000, 700);
    window->show();
    EXPECT_EQ(title(), "Morvantide");
    EXPECT_FALSE(window->browser()->isEnabled());
    open();
    EXPECT_EQ(recordCount(), 2 * DayFolder::recordsOfDay);
    EXPECT_EQ(title(), folderName() + " - Morvantide");
    EXPECT_TRUE(window->browser()->isEnabled());
    EXPECT_EQ(window->currentDatastoreFor(0), window->datastore());
    EXPECT_EQ(window->currentDatastoreFor(1), nullptr);
    EXPECT_EQ(window->browser()->timeView()->timeOffset(), 7200);

    const auto metadata = window->uiInfo()->metadata();
    ASSERT_EQ(metadata->dpVariants.size(), 1);
    EXPECT_EQ(metadata->dpVariants[0].name, "block");
    EXPECT_FALSE(metadata->dpVariants[0].followAtOnce || metadata->dpVariants[0].skipOffsets);
    EXPECT_EQ(window->uiInfo()->opmodeColors().size(), 2u);

    QTest::qWait(1);
    const TimeScale scale = window->browser()->timeScale();
    EXPECT_GE(scale.positionOf(window->datastore()->at(0)->beginTime), 0);
    EXPECT_LE(scale.positionOf(window->datastore()->records().back()->endTime),
              window->browser()->timeView()->contentsRect().width() + 1);

    window->setFollowLast(true);
    EXPECT_EQ(window->shownRecord(), window->datastore()->records().back());
    QTest::qWait(1);
    EXPECT_EQ(window->findChild<QLabel *>("dateLabel")->text(), "2019-09-14 (UTC+2)");
    EXPECT_EQ(window->findChild<QLabel *>("opmodeLabel")->text(), "particles");
}

TEST_F(MorvantideMainWindowTest, ASecondOpenWhileReadingIsRefused)
{
    constexpr int seconds = 300000;
    data.writeLong(seconds);
    startOpening();
    DayFolder other;
    other.writeDay(1);
    startOpening({{"folderName", other.path()}});
    ASSERT_TRUE(window->isReading()) << "or this test tells nothing";
    waitForRead();
    EXPECT_TRUE(log().contains("error] Can not open files while reading previous files is in progress"));
    EXPECT_EQ(title(), folderName() + " - Morvantide");
    EXPECT_EQ(recordCount(), seconds);
    EXPECT_EQ(settings().value("datachooserOldPaths").toStringList(), (QStringList{other.path(), data.path()}))
        << "the choice is kept even so";
}

TEST_F(MorvantideMainWindowTest, CancelKeepsWhatWasRead)
{
    data.writeLongDays(300);
    window->show();
    startOpening();
    const QPointer<ReadProgressDialog> dialog = window->findChild<ReadProgressDialog *>();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowTitle(), "Reading data files");
    EXPECT_EQ(dialog->findChild<QProgressBar *>()->text(), "0 / 300");
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog)); // before, no shortcut hears of a key
    QTest::keyClick(dialog, Qt::Key_Escape);
    ASSERT_TRUE(dialog && dialog->isVisible()) << "it stands until the file is done";
    EXPECT_EQ(dialog->findChild<QLabel *>()->text(), "Stopping after this file");
    dialog->close();
    EXPECT_TRUE(dialog->isVisible());
    waitForRead();
    EXPECT_FALSE(dialog);
    EXPECT_EQ(recordCount(), DayFolder::secondsOfDay) << "of the first file";
    EXPECT_EQ(title(), folderName() + " - Morvantide (incomplete)");
    EXPECT_TRUE(log().contains(QRegularExpression("Reading was cancelled after [0-9]+ of 300 files.")));

    open({{"limitEnd", true}, {"endTime", QDateTime(QDate(2019, 1, 3), {})}});
    EXPECT_EQ(title(), folderName() + " - Morvantide") << "a later read starts afresh";
}

TEST_F(MorvantideMainWindowTest, NothingFoundLeavesAnEmptyWindow)
{
    data.writeDay(1);
    data.writeDay(1, "90s");
    open();
    EXPECT_GT(recordCount(), 0);
    open({{"variant", "10s"}});
    EXPECT_EQ(recordCount(), -1);
    EXPECT_EQ(title(), "Morvantide");
    EXPECT_FALSE(window->browser()->isEnabled());
    EXPECT_TRUE(window->folderPath().isNull());
    EXPECT_EQ(window->uiInfo()->metadata(), nullptr);
    EXPECT_TRUE(log().contains("error] Nothing found"));
    EXPECT_TRUE(log().contains("\"90s\", \"block\"")) << "what there is instead";

    data.write("20190912-block.records", "no header\n");
    const int before = log().count("holds:");
    open({{"limitBegin", true}, {"beginTime", QDateTime(QDate(2019, 9, 12), {})}});
    EXPECT_EQ(recordCount(), -1);
    EXPECT_EQ(log().count("Nothing found"), 2);
    EXPECT_EQ(log().count("holds:"), before) << "files matched, but held no rows";

    const QStringList recent = settings().value("datachooserOldPaths").toStringList();
    open({{"folderName", data.path() + "/none"}});
    EXPECT_EQ(settings().value("datachooserOldPaths").toStringList(), recent) << "a folder that there isn't";
}

TEST_F(MorvantideMainWindowTest, AnotherFolderTakesThePlaceOfTheFirst)
{
    data.writeDay(1);
    open();
    window->setFollowLast(true);
    const std::weak_ptr<Datastore> old = window->datastore();
    DayFolder other;
    other.writeDay(5);
    other.writeDay(6);
    open({{"folderName", other.path()}});
    EXPECT_EQ(recordCount(), 2 * DayFolder::recordsOfDay);
    EXPECT_EQ(window->shownRecord(), window->datastore()->records().back()) << "the latest is followed on";
    EXPECT_TRUE(old.expired()) << "nothing holds on to the old data";
    window->closeData();
    window->closeData();
    EXPECT_EQ(recordCount(), -1);
    EXPECT_EQ(title(), "Morvantide");
}

TEST_F(MorvantideMainWindowTest, FilesPickedByHand)
{
    DayFolder other;
    other.writeDay(3);
    data.writeDay(1);
    data.writeDay(2);
    open();
    withDialog<QFileDialog>([&](QFileDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Select files");
        EXPECT_EQ(dialog.directory().path(), data.path()) << "the data's, and not the program's current one";
        dialog.findChild<QLineEdit *>("fileNameEdit")
            ->setText(QString("\"%1\" \"20190101-block.flags\"").arg(other.filePath("20190103-block.flags")));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    window->showDataFileChoice();
    waitForRead();
    EXPECT_EQ(recordCount(), 2 * DayFolder::recordsOfDay);
    EXPECT_EQ(title(), folderName() + " - Morvantide");
    EXPECT_EQ(window->uiInfo()->metadata()->dpVariants[0].name, "");
    EXPECT_EQ(settings().value("lastpathpickfiles").toString(), data.path());
}

TEST_F(MorvantideMainWindowTest, SavesTheOpenDataAndRemembersWhere)
{
    QTemporaryDir output;
    QString variant, folder;
    const auto save = [&](const QString &newVariant, const QString &newFolder) {
        withDialog<DataSaverDialog>([&](DataSaverDialog &dialog) {
            variant = dialog.variant();
            folder = dialog.folder();
            dialog.setVariant(newVariant);
            dialog.findChild<QLineEdit *>("folderEdit")->setText(newFolder);
            dialog.close();
        });
        action("Save data...")->trigger();
    };
    EXPECT_FALSE(action("Save data...")->isEnabled());
    EXPECT_TRUE(action("Spectra info")->isEnabled()) << "it shows that there are none";
    data.writeDay(1);
    open();
    save("mine", output.path());
    EXPECT_EQ(variant + ' ' + folder, "block-reinv ");
    save("mine", output.path());
    EXPECT_EQ(variant + ' ' + folder, "mine " + output.path());
    EXPECT_EQ(settings().value("datasaver/folder").toString(), output.path());
    EXPECT_EQ(settings().allKeys().filter("datasaver"), QStringList{"datasaver/folder"}) << "the variant isn't stored";
    open();
    save("mine", output.path());
    EXPECT_EQ(variant, "block-reinv") << "other data, another name";
    EXPECT_TRUE(action("Spectra info")->isEnabled());
    window->closeData();
    EXPECT_FALSE(action("Save data...")->isEnabled());
    EXPECT_FALSE(action("Spectra info")->isEnabled());
}

TEST_F(MorvantideMainWindowTest, OldStyleDataAreSavedUnderTheirOwnVariantAndAssumedMode)
{
    data.write("2010-05-14.sig", ::contentOf(FUZZ_CORPUS "/dayfile/old-plain.sig"));
    for (const char *assumed : {"", "fog"}) {
        open({{"legacyFiles", true}, {"variant", "10s"}, {"assumedOpmode", assumed}});
        const QString output = path(QString("out") + assumed);
        withDialog<DataSaverDialog>([&](DataSaverDialog &dialog) {
            dialog.findChild<QLineEdit *>("folderEdit")->setText(output);
            dialog.saveData();
            dialog.close();
        });
        action("Save data...")->trigger();
        QStringList files{"20190912-legacy-reinv-ions.spectra"};
        if (*assumed)
            files.prepend("20190912-legacy-reinv-fog.spectra");
        EXPECT_EQ(filesIn(output), files);
        EXPECT_EQ(log().count("1 spectra were written to no file"), 1) << "of the first time";
    }
}

TEST_F(MorvantideMainWindowTest, AWishToQuitEndsASaveUnderWay)
{
    for (int day = 1; day <= 20; ++day)
        data.writeDay(day);
    open();
    QTemporaryDir output;
    bool wasSaving = false;
    withDialog<DataSaverDialog>([&](DataSaverDialog &dialog) {
        dialog.findChild<QLineEdit *>("folderEdit")->setText(output.path());
        QTimer::singleShot(0, &dialog, [&] {
            wasSaving = dialog.isSaving();
            window->terminateSignal();
        });
        dialog.saveData();
    });
    QTimer::singleShot(0, window.get(), &MorvantideMainWindow::saveData);
    QApplication::exec();
    EXPECT_TRUE(wasSaving);
    EXPECT_TRUE(log().contains("Saving was stopped after 100 of"));
}

TEST_F(MorvantideMainWindowTest, OffersTheCommandLinesFolder)
{
    QVariantMap offered;
    withDialog<DataChooserDialog>([&offered](DataChooserDialog &dialog) {
        offered = dialog.choice();
        dialog.reject();
    });
    window->setPositionalArguments({data.path() + "/./", "90s"});
    EXPECT_TRUE(offered.isEmpty()) << "the window shows first";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !offered.isEmpty() && !QApplication::activeModalWidget(); }));
    EXPECT_EQ(offered["folderName"].toString(), data.path());
    EXPECT_EQ(offered["variant"].toString(), "90s");
    EXPECT_FALSE(settings().contains("datachooser")) << "a choice that wasn't accepted isn't kept";
    window->setPositionalArguments({});
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(MorvantideMainWindowTest, KeepsItsGeometryAndNothingOfOlderSettings)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    EXPECT_LT(window->height(), screen->availableSize().height()) << "no room for the title bar";
    window->show();
    window->setGeometry(40, 50, 790, 600);
    QTest::qWait(20);
    window->close();
    EXPECT_EQ(settings().value("version").toInt(), 3);
    makeWindow();
    EXPECT_EQ(window->size(), QSize(790, 600));
    window.reset();

    QByteArray geometry = settings().value("MainWindow/geometry").toByteArray();
    for (int i = 0; i < 300; ++i) { // a damaged settings file costs the geometry at most
        QByteArray damaged = geometry;
        damaged[(i * 7) % damaged.size()] = char(i * 37);
        settings().setValue("MainWindow/geometry", damaged);
        MorvantideMainWindow other(settingsFile());
        EXPECT_LE(other.width(), 4000) << i;
    }
    settings().setValue("MainWindow/geometry", "rubbish");
    EXPECT_GT(MorvantideMainWindow(settingsFile()).width(), 790);

    settings().setValue("version", 2);
    settings().setValue("datachooserOldPaths", QStringList{"/a"});
    settings().setValue("MainWindow/geometry", geometry);
    makeWindow();
    EXPECT_GT(window->width(), 790);
    EXPECT_EQ(settings().allKeys(), (QStringList{"colormapoffered", "version"}))
        << settings().allKeys().join(' ').toStdString();
}

TEST_F(MorvantideMainWindowTest, SettingsThatAFullDiskRefusesAreToldAndTheOldOnesStay)
{
    window->show();
    window->close();
    const QByteArray old = ::contentOf(settingsFile());
    ASSERT_GT(old.size(), 100);
    window->resize(801, 602);
    const LogCatcher log;
    {
        const FullDisk disk(100);
        window->close();
    }
    EXPECT_EQ(log.complaints(), QStringList{"The settings could not be saved to '" + settingsFile() + "'."});
    EXPECT_EQ(::contentOf(settingsFile()), old);
}

TEST_F(MorvantideMainWindowTest, NewSpectrogramsTakeTheChosenMapAndTheSafeOneIsOfferedOnce)
{
    const auto mapOfNewView = [this] {
        auto *const view = new Tsb::SpectrogramView;
        window->browser()->addView(view);
        const QString name = view->colormapName();
        return name + (view->isWhiteBackground() ? "-w" : "-d");
    };
    const auto offer = [this] { return window->findChild<QLabel *>("colormapOffer"); };
    window->show();
    settle();
    ASSERT_TRUE(offer() && offer()->isVisible());
    EXPECT_EQ(mapOfNewView(), "jet-w");
    window->close();
    makeWindow();
    EXPECT_FALSE(offer()) << "at the first start alone";
    EXPECT_EQ(mapOfNewView(), "jet-w");
    window->findChild<QMenu *>("defaultColormap")->actions()[4]->trigger();
    EXPECT_EQ(mapOfNewView(), "hot-w");
    open();
    window->closeData();
    EXPECT_EQ(mapOfNewView(), "hot-w") << "data come and go";
    auto *const stored = new Tsb::SpectrogramView;
    window->browser()->addView(stored);
    stored->setSettings(QVariantMap{{"height", 100}});
    EXPECT_EQ(stored->colormapName(), "jet") << "the setup of a view means what it meant";

    window.reset();
    QFile::remove(settingsFile());
    makeWindow();
    auto *const standing = new Tsb::SpectrogramView;
    window->browser()->addView(standing);
    Q_EMIT offer()->linkActivated("viridis");
    settle();
    EXPECT_FALSE(offer());
    EXPECT_EQ(standing->colormapName(), "viridis");
    window->close();
    makeWindow();
    EXPECT_EQ(mapOfNewView(), "viridis-w");
    EXPECT_FALSE(offer());
}

TEST_F(MorvantideMainWindowTest, MenusAndToolbarHoldWhatThereIs)
{
    QStringList titles, buttons;
    QMap<QString, QString> commands;
    for (const QAction *menu : window->menuBar()->actions()) {
        titles << menu->text();
        for (const QAction *command : menu->menu()->actions())
            commands[menu->text()] += command->text() + '|';
    }
    EXPECT_EQ(titles.join('|'), "&File|&Timeseries|&Spectra|&View|&Window|&Help");
    EXPECT_EQ(commands["&File"], "Open data folder...|Manually select data files...|Recent folders|Read again|"
                                 "Follow folder||Export data...|Save data...||&Quit|");
    EXPECT_EQ(commands["&Window"], "Save layout|Save layout copy...|Restore layout...|Layouts of the data|"
                                   "Restore default layout|Undo restore||Autosave layout|Keep time span and record|");
    EXPECT_EQ(commands["&Spectra"], "Reinvert...|Cancel reinversion|Show inversion statistics|Spectra info|");
    EXPECT_EQ(commands["&View"], "Log|Selected record|Record variable list|Record variables|Inversion report|"
                                 "Electrometer signals|Electrometer signal plot|Distribution plot|Comment list|"
                                 "Diagnostic status|Measuring||Arrange plot|Go to filter|Full screen||"
                                 "Default color map|");
    for (const auto *button : window->findChild<QToolBar *>("toolBar")->findChildren<QToolButton *>())
        if (!button->text().isEmpty())
            buttons << button->text();
    buttons.sort();
    EXPECT_EQ(buttons.join('|'),
              "Add plot|Fit timescale|Latest record|Manually select files|Open folder|Spectra|Time flies");
}
