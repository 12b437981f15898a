#include "batch/exportcommand.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/morvantide/reviewwindow.h"

#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>

namespace {

/// Tables of the open data, made in the program's window.
class Exporting : public ReviewWindow {
protected:
    Exporting() : ReviewWindow(20) {}

    DataExportDialog *showDialog()
    {
        action("Export data...")->trigger();
        DataExportDialog *last = nullptr;
        for (auto *dialog : window->findChildren<DataExportDialog *>())
            last = dialog;
        return last;
    }
    static void press(const QWidget *dialog, const QString &text)
    {
        for (auto *button : dialog->findChildren<QPushButton *>())
            if (button->text() == text)
                return QTest::mouseClick(button, Qt::LeftButton);
        FAIL() << text.toStdString();
    }
    /// Presses "Export" and waits for what it comes to.
    void exportWith(DataExportDialog *dialog) const
    {
        press(dialog, "Export");
        QTest::qWait(0);
    }
    /// A column of each kind, of all modes.
    QVariantMap setupOf(const QString &file, const QVariantMap &general = {}) const
    {
        QVariantList spectra, electrometers, variables;
        for (const auto &info : window->uiInfo()->spectrumInfos())
            spectra << info->hash;
        for (const auto &variable : window->uiInfo()->metadata()->variables)
            variables << variable->name;
        QVariantMap all = general;
        all["output_file"] = file;
        return {
            {"general", all},
            {"quilvane_data_export_version", 1},
            {"fields", QVariantList{QVariantMap{{"type", "concentration"},
                                                {"spectra", spectra},
                                                {"decade_fractions_enabled", true},
                                                {"concentration_type", "mass"}},
                                    QVariantMap{{"type", "spectrum"}, {"spectra", spectra}, {"uncertainties", true}},
                                    QVariantMap{{"type", "variable"}, {"variables", variables}},
                                    QVariantMap{{"type", "electrometer"}}}}};
    }
    /// Counts the message boxes that come up, and answers them.
    struct Boxes {
        explicit Boxes(QMessageBox::StandardButton answer = QMessageBox::Ok)
        {
            QObject::connect(&timer, &QTimer::timeout, &timer, [this, answer] {
                if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                    EXPECT_EQ(box->windowTitle(), "Data export");
                    texts << box->text() + '|' + box->informativeText();
                    box->done(answer);
                }
            });
            timer.start(1);
        }
        QTimer timer;
        QStringList texts;
    };
    QByteArrayList rowsOf(const QString &name) const { return contentOf(name).chopped(1).split('\n').mid(1); }
};

/// Calls something once the progress has come so far.
void duringExport(const std::function<void(QProgressDialog &)> &act)
{
    withDialog<QProgressDialog>([act](QProgressDialog &progress) {
        if (progress.value() >= 100)
            act(progress);
        else
            duringExport(act);
    });
}

} // namespace

TEST_F(Exporting, WritesTheBytesOfTheCommand)
{
    EXPECT_FALSE(action("Export data...")->isEnabled());
    open();
    DataExportDialog *dialog = showDialog();
    dialog->setSetup(setupOf(
        "window/x.csv",
        {{"comment_lines", true}, {"file_name_add_opmode", true}, {"time_zone", "local"}, {"field_separator", "; "}}));
    ASSERT_EQ(dialog->save(path("s.exportsetup")), QString());
    exportWith(dialog);
    Batch::ExportOptions command;
    command.read.folder = path("demo");
    command.read.variant = "block";
    command.setupFile = path("s.exportsetup");
    command.outputFile = path("shell/x.csv");
    ASSERT_EQ(Batch::runExport(command), 0);
    const QStringList names = filesIn(path("shell"));
    EXPECT_EQ(names, (QStringList{"x-ions.csv", "x-offset.csv", "x-particles.csv"}));
    EXPECT_EQ(filesIn(path("window")), names);
    for (const QString &name : names)
        EXPECT_TRUE(contentOf("window/" + name) == contentOf("shell/" + name)) << qPrintable(name);
    const QString told =
        QString("%1 rows written to 3 files in \"%2\"").arg(window->datastore()->size()).arg(path("window"));
    EXPECT_TRUE(log().contains("] " + told)) << qPrintable(log());
    EXPECT_EQ(dialog->findChild<QLabel *>("resultLabel")->text(), told);
    EXPECT_TRUE(dialog->isVisible()) << "ready for the next export";
    const Boxes boxes(QMessageBox::Cancel);
    exportWith(dialog);
    EXPECT_EQ(boxes.texts.size(), 1) << "files exist";
    EXPECT_FALSE(dialog->findChild<QLabel *>("resultLabel")->isVisible()) << "nothing came of that";
}

TEST_F(Exporting, AMarkedSpanIsFilledInAndOfferedFromThenOn)
{
    open();
    const Datastore &store = *window->datastore();
    const auto spanOf = [](const DataExportDialog *dialog) {
        return dialog->findChild<QComboBox *>("timeSpan")->currentText();
    };
    Q_EMIT window->browser()->spanExportRequested(store.at(4)->midTime, store.at(9)->midTime);
    auto *dialog = window->findChild<DataExportDialog *>();
    ASSERT_TRUE(dialog && dialog->isVisible());
    const QString told = spanOf(dialog);
    EXPECT_TRUE(told.startsWith("Those from 2019-05-1")) << qPrintable(told);
    dialog->setSetup(setupOf(path("span.txt")));
    exportWith(dialog);
    EXPECT_EQ(rowsOf("span.txt").size(), 6);
    Q_EMIT window->browser()->spanExportRequested(store.at(5)->midTime, store.at(6)->midTime);
    dialog = showDialog();
    EXPECT_NE(spanOf(dialog), told);
    dialog->setSetup(setupOf(path("next.txt")));
    dialog->findChild<QComboBox *>("timeSpan")->setCurrentIndex(0);
    dialog = showDialog();
    EXPECT_EQ(spanOf(dialog), "All");
    dialog->findChild<QComboBox *>("timeSpan")->setCurrentIndex(2);
    exportWith(dialog);
    EXPECT_EQ(rowsOf("next.txt").size(), 2);
    open();
    EXPECT_EQ(showDialog()->findChild<QComboBox *>("timeSpan")->count(), 2) << "other data, other times";
}

TEST_F(Exporting, FilesThatExistAreAskedAboutOnceAndRefusalsAreTold)
{
    open();
    DataExportDialog *dialog = showDialog();
    const auto answered = [&](const QString &file, QMessageBox::StandardButton answer,
                              const QVariantMap &general = {}) {
        Boxes boxes(answer);
        dialog->setSetup(setupOf(file, general));
        exportWith(dialog);
        EXPECT_EQ(boxes.texts.size(), 1);
        return boxes.texts.value(0);
    };
    const QVariantMap byMode{{"file_name_add_opmode", true}};
    write("x-ions.txt", "old");
    write("x-offset.txt", "old");
    EXPECT_EQ(answered(path("x.txt"), QMessageBox::Cancel, byMode),
              "Files exist. Replace them?|" + path("x-ions.txt") + '\n' + path("x-offset.txt"));
    EXPECT_EQ(contentOf("x-ions.txt"), "old");
    answered(path("x.txt"), QMessageBox::Yes, byMode);
    EXPECT_GT(contentOf("x-ions.txt").size(), 1000);
    EXPECT_GT(contentOf("x-offset.txt").size(), 1000);

    EXPECT_EQ(answered(" ", QMessageBox::Ok), "No output file is named.|");
    const QString dayFile = path("demo/20190514-block.records");
    const QByteArray before = contentOf("demo/20190514-block.records");
    EXPECT_EQ(answered(dayFile, QMessageBox::Ok), '"' + dayFile + "\" is one of the files to read.|");
    EXPECT_TRUE(contentOf("demo/20190514-block.records") == before);
    EXPECT_EQ(answered(path("demo"), QMessageBox::Yes), '"' + path("demo") + "\" is a folder.|");
    EXPECT_TRUE(
        answered(path("x.txt"), QMessageBox::Ok, {{"opmodes", QVariantList{"sleep"}}}).contains("no record is of"));
    EXPECT_TRUE(answered("/proc/x.txt", QMessageBox::Ok).contains("rows could not be written"));
    QVariantMap gone = setupOf("x");
    gone["fields"] = QVariantList{QVariantMap{{"type", "concentration"}, {"spectra", QVariantList{"gone"}}}};
    Boxes boxes;
    dialog->setSetup(gone);
    exportWith(dialog);
    EXPECT_TRUE(boxes.texts.value(0).contains("none of the setup's spectra"));
}

TEST_F(Exporting, CancelQuitAndCloseLeaveNothing)
{
    const std::vector<std::pair<const char *, std::function<void(QProgressDialog &)>>> ways{
        {"cancel", [](QProgressDialog &progress) { progress.cancel(); }},
        {"Esc", [](QProgressDialog &progress) { QTest::keyClick(&progress, Qt::Key_Escape); }},
        {"close", [this](QProgressDialog &) { window->closeData(); }},
        {"quit", [this](QProgressDialog &) { window->terminateSignal(); }}};
    for (const auto &way : ways) {
        SCOPED_TRACE(way.first);
        open();
        DataExportDialog *dialog = showDialog();
        dialog->setSetup(setupOf(path("out/x.txt")));
        bool isReached = false;
        duringExport([&](QProgressDialog &progress) {
            EXPECT_EQ(progress.windowTitle(), "Exporting records");
            EXPECT_EQ(progress.maximum(), window->datastore()->size());
            isReached = true;
            way.second(progress);
        });
        if (QString(way.first) == "quit") { // which only a running program hears
            QTimer::singleShot(0, dialog, [this, dialog] { exportWith(dialog); });
            QApplication::exec();
        } else {
            exportWith(dialog);
        }
        EXPECT_TRUE(isReached);
        EXPECT_FALSE(QFile::exists(path("out")));
        EXPECT_EQ(log().count("] Export was cancelled by user."), &way - ways.data() + 1);
    }
}

TEST_F(Exporting, SpectraThatComeInMeanwhileHurtNothing)
{
    open();
    const QVariantMap setup = setupOf(path("before.txt"));
    DataExportDialog *dialog = showDialog();
    dialog->setSetup(setup);
    exportWith(dialog);
    window->findChild<Reinversion *>()->setWorkerCount(1);
    startReinversion(writeVariants(2));
    dialog->setSetup(setupOf(path("with.txt")));
    int doneAtStart = -1;
    duringExport([&](QProgressDialog &) { doneAtStart = window->findChild<Reinversion *>()->recordsDone(); });
    QVariantMap same = setup;
    same["general"] = QVariantMap{{"output_file", path("meanwhile.txt")}};
    dialog->setSetup(same);
    exportWith(dialog);
    EXPECT_GE(doneAtStart, 0);
    EXPECT_TRUE(window->isReinverting()) << "or this test tells nothing";
    EXPECT_TRUE(rowsOf("meanwhile.txt") == rowsOf("before.txt")) << "titles tell namesakes apart";
    waitForReinversion();
    dialog->setSetup(setupOf(path("after.txt")));
    exportWith(dialog);
    EXPECT_EQ(rowsOf("after.txt").size(), window->datastore()->size());
    EXPECT_GT(contentOf("after.txt").size(), contentOf("before.txt").size());
}

TEST_F(Exporting, TheDialogComesBackAsItWasLeft)
{
    open();
    DataExportDialog *dialog = showDialog();
    const QVariantMap saved = [&] {
        dialog->setSetup(setupOf("saved.txt"));
        return dialog->setup();
    }();
    ASSERT_EQ(dialog->save(path("s.exportsetup")), QString());
    dialog->setSetup(setupOf("unsaved.txt"));
    const QVariantMap unsaved = dialog->setup();
    press(dialog, "Close");
    EXPECT_FALSE(dialog->isVisible());
    DataExportDialog *second = showDialog();
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(second->setup(), unsaved);
    EXPECT_EQ(second->setupPath(), path("s.exportsetup"));
    const QPoint place = second->pos();
    for (const bool wasOpen : {true, false}) {
        window->readAgain();
        waitForRead();
        auto *const again = window->findChild<DataExportDialog *>();
        EXPECT_EQ(again != nullptr, wasOpen);
        if (again) {
            EXPECT_TRUE(again->isVisible());
            EXPECT_EQ(again->pos(), place);
            EXPECT_EQ(again->setup(), unsaved);
            press(again, "Close");
        }
    }
    EXPECT_EQ(showDialog()->setup(), unsaved);
    window->closeData();
    QTest::qWait(0);
    EXPECT_TRUE(window->findChildren<DataExportDialog *>().isEmpty());
    EXPECT_EQ(QSettings(settingsFile(), QSettings::IniFormat).value("export_setup_path"), path("s.exportsetup"));
    EXPECT_FALSE(action("Export data...")->isEnabled());

    makeWindow(); // the next start of the program
    open();
    EXPECT_EQ(showDialog()->setup(), saved);
    window->closeData();
    write("s.exportsetup", "{");
    open();
    EXPECT_EQ(showDialog()->setup().value("fields").toList().size(), 0);
    EXPECT_TRUE(log().contains("Failed to open file " + path("s.exportsetup")));
}

TEST_F(Exporting, PlotsGiveFieldsAndTheTimeAxisGivesTheSpan)
{
    open();
    DataExportDialog *dialog = showDialog();
    action("Add fields from timeseries plots")->trigger();
    QVariantMap setup = dialog->setup();
    const QVariantList fields = setup.value("fields").toList();
    ASSERT_EQ(fields.size(), 1) << "of the plot of total concentrations";
    EXPECT_EQ(fields[0].toMap().value("spectra").toList().size(), 2);
    window->browser()->closeAllViews();
    action("Add fields from timeseries plots")->trigger();
    EXPECT_EQ(dialog->findChild<QLabel *>("resultLabel")->text(),
              "No plot shows a concentration that can be exported.");
    const QVariantMap unbounded{{"type", "fraction"}, {"totalConcentration", false}, {"diameterSmallerLimit", 0}};
    window->browser()->setSetup(QVariantList{QVariantMap{{"type", "scatterplot"}, {"settings", unbounded}}});
    action("Add fields from timeseries plots")->trigger();
    EXPECT_TRUE(dialog->findChild<QLabel *>("resultLabel")->text().startsWith("The fraction of plot 1 isn't bounded"));

    window->show();
    QTest::qWait(0);
    auto *const axis = window->browser()->timeView();
    axis->navigator()->fitIntoView(window->datastore()->at(100)->beginTime, window->datastore()->at(300)->endTime);
    setup["general"] = QVariantMap{{"output_file", path("x.txt")}, {"time_format", "%Y-%m-%d %H:%M:%S"}};
    dialog->setState({setup, true, {}, {}});
    exportWith(dialog);
    const TimeScale scale = window->browser()->timeScale();
    const auto &records = window->datastore()->records();
    const auto seen = std::count_if(records.begin(), records.end(), [&](const std::shared_ptr<Record> &record) {
        return record->endTime > scale.tickAt(0) && record->beginTime < scale.tickAt(axis->contentsRect().width());
    });
    EXPECT_GT(seen, 200);
    EXPECT_LT(seen, 500);
    EXPECT_EQ(rowsOf("x.txt").size(), seen);
}
