#include "batch/savecommand.h"
#include "datafiles/reading/filereader.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/savewarnings.h"
#include "support/demodata.h"
#include "support/files.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace {

/// The open data of a window: a demonstration's day, read, and saved through the dialog.
class Saving : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_folder = new QTemporaryDir;
        writeDemoData(s_folder->filePath("demo"), 600);
    }
    static void TearDownTestSuite() { delete s_folder; }

    Saving() : reader({}, RecordTime::min(), RecordTime::max())
    {
        for (const QString &name : filesIn(s_folder->filePath("demo")))
            reader.readFile(s_folder->filePath("demo/" + name));
        reader.finishRecords();
        ui->setData(reader.metadata(), reader.spectrumInfos().toList());
        ui->publish();
        QObject::connect(&Log::RootLogger::instance(), &Log::RootLogger::newEntry, &logReceiver,
                         [this](const Log::Entry &entry) {
                             if (entry.source == "filewriter" && entry.level <= Log::Info)
                                 messages << Log::levelName(entry.level) + ": " + entry.message;
                         });
    }

    std::unique_ptr<DataSaverDialog> makeDialog(const QString &variant = "saved")
    {
        auto spectra =
            Spectrometer::spectraByMode(*reader.datastore(), *reader.metadata(), ui->spectrumInfos().toVector());
        for (auto &ofMode : spectra)
            for (auto &info : ofMode)
                info = ui->commented(info);
        auto dialog = std::make_unique<DataSaverDialog>(
            DataSaverDialog::Content{reader.datastore(), reader.metadata(), spectra}, *ui, output());
        dialog->setVariant(variant);
        dialog->show();
        return dialog;
    }
    static QStandardItem *item(const DataSaverDialog &dialog, const QString &text)
    {
        auto *model = qobject_cast<QStandardItemModel *>(dialog.findChild<QTreeView *>("resultsTreeView")->model());
        return model->findItems(text, Qt::MatchExactly | Qt::MatchRecursive).value(0);
    }
    static void pressSave(const DataSaverDialog &dialog) { QTest::mouseClick(saveButton(dialog), Qt::LeftButton); }
    static QPushButton *saveButton(const DataSaverDialog &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>("buttonBox")->button(QDialogButtonBox::Save);
    }
    static QString problems(const DataSaverDialog &dialog)
    {
        const auto *label = dialog.findChild<QLabel *>("problemLabel");
        return label->isVisible() ? label->text() : QString();
    }

    QString output() const { return ownFolder.filePath("out"); }
    QStringList written() const { return filesIn(output()); }
    static QTemporaryDir *s_folder;
    QTemporaryDir ownFolder;
    FileReader reader;
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    QObject logReceiver;
    QStringList messages;
};

QTemporaryDir *Saving::s_folder = nullptr;
const QString particles = "20190514-saved-particles.spectra";
const QString ions = "20190514-saved-ions.spectra";

} // namespace

TEST_F(Saving, ItsFilesAreThoseOfTheCommand)
{
    const auto dialog = makeDialog();
    item(*dialog, "Full records")->setCheckState(Qt::Checked);
    dialog->findChild<QCheckBox *>("saveInversionVarsCheckBox")->setChecked(true);
    pressSave(*dialog);
    EXPECT_EQ(written().size(), 3);
    EXPECT_TRUE(dialog->isVisible()) << "ready for the next save";
    Batch::SaveOptions command;
    command.read.folder = s_folder->filePath("demo");
    command.read.variant = "block";
    command.outputFolder = ownFolder.filePath("command");
    command.outputVariant = "saved";
    command.inversionVars = true;
    ASSERT_EQ(Batch::runSave(command), 0);
    EXPECT_EQ(written(), filesIn(command.outputFolder));
    for (const QString &name : written())
        EXPECT_TRUE(contentOf(output() + "/" + name) == contentOf(command.outputFolder + "/" + name))
            << qPrintable(name);
}

TEST_F(Saving, WhatIsNotTickedIsNotWritten)
{
    const auto dialog = makeDialog();
    auto *model = qobject_cast<QStandardItemModel *>(dialog->findChild<QTreeView *>("resultsTreeView")->model());
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << QString("%1 %2").arg(model->item(row)->text()).arg(model->item(row)->rowCount());
    EXPECT_EQ(rows, (QStringList{"Full records 0", "ions opmode spectra 2", "particles opmode spectra 2",
                                 "offset opmode spectra 0"}));
    EXPECT_FALSE(model->item(1)->isCheckable());
    EXPECT_EQ(model->item(1)->child(0)->text(), "ions neg (demo)");

    for (int mode : {1, 2})
        for (int i = 0; i < 2; ++i)
            model->item(mode)->child(i)->setCheckState(Qt::Unchecked);
    pressSave(*dialog);
    EXPECT_FALSE(QFileInfo::exists(output())) << "not even the folder";

    item(*dialog, "ions pos (demo)")->setCheckState(Qt::Checked);
    pressSave(*dialog);
    EXPECT_EQ(written(), QStringList{ions});
    EXPECT_FALSE(contentOf(output() + "/" + ions).contains("ions neg"));
    EXPECT_FALSE(contentOf(output() + "/" + ions).contains("current_rms_error"));
    EXPECT_FALSE(dialog->findChild<QProgressBar *>()->isVisible());
    EXPECT_EQ(dialog->findChild<QProgressBar *>()->maximum(), reader.datastore()->size());
    EXPECT_EQ(messages.value(0), "info: 0 rows written to \"" + output() + "\"");
}

TEST_F(Saving, TheUsersCommentGoesIntoTheHeader)
{
    const auto info = ui->spectrumInfos().first();
    ui->setSpectrumComment(info.get(), "after cleaning: 50 %");
    ui->publish();
    pressSave(*makeDialog());
    FileReader again({}, RecordTime::min(), RecordTime::max());
    for (const QString &name : {ions, particles})
        again.readFile(output() + "/" + name);
    int found = 0;
    for (const auto &read : again.spectrumInfos()) {
        const bool isIt = read->hash == info->hash;
        found += isIt;
        EXPECT_EQ(read->comment == "after cleaning: 50 %", isIt);
    }
    EXPECT_EQ(found, 1);
}

TEST_F(Saving, EscapeAndCloseStopTheWritingAndNotTheDialog)
{
    const auto close = [](DataSaverDialog &dialog) { dialog.close(); };
    const auto escape = [](DataSaverDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
    const std::function<void(DataSaverDialog &)> ways[] = {close, escape};
    for (const auto &way : ways) {
        QDir(output()).removeRecursively();
        messages.clear();
        const auto dialog = makeDialog();
        item(*dialog, "Full records")->setCheckState(Qt::Checked);
        bool wasSaving = false;
        QTimer::singleShot(0, dialog.get(), [&] {
            wasSaving = dialog->isSaving();
            EXPECT_FALSE(saveButton(*dialog)->isEnabled());
            EXPECT_TRUE(dialog->findChild<QProgressBar *>()->isVisible());
            EXPECT_EQ(dialog->findChild<QProgressBar *>()->value(), 100);
            way(*dialog);
        });
        pressSave(*dialog);
        ASSERT_TRUE(wasSaving);
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_TRUE(saveButton(*dialog)->isEnabled());
        ASSERT_EQ(messages.size(), 1);
        EXPECT_TRUE(messages[0].startsWith(
            QString("info: Saving was stopped after 100 of %1 records: ").arg(reader.datastore()->size())))
            << qPrintable(messages[0]);
        int rows = 0;
        for (const QString &name : written())
            rows += contentOf(output() + "/" + name).count("\n2019-");
        EXPECT_TRUE(messages[0].contains(QString(": %1 rows").arg(rows))) << qPrintable(messages[0]);

        messages.clear();
        pressSave(*dialog); // the files are closed: nothing holds their locks
        EXPECT_EQ(messages.filter("error").size(), 0);
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        EXPECT_FALSE(dialog->isVisible());
    }
}

TEST_F(Saving, LossesAreToldOnceForEachFileAndCountedInTheEnd)
{
    writeFile(output()); // a file where the folder should be
    const auto dialog = makeDialog();
    pressSave(*dialog);
    ASSERT_EQ(messages.size(), 4) << qPrintable(messages.join('\n'));
    EXPECT_EQ(messages.filter("Data was lost!").size(), 2);
    EXPECT_EQ(messages[2], "info: 0 rows written to \"" + output() + "\"");
    EXPECT_TRUE(QRegularExpression("^error: ([0-9]+) of \\1 rows could not be written$").match(messages[3]).hasMatch())
        << qPrintable(messages[3]);
}

TEST_F(Saving, WithoutAFolderNothingIsWritten)
{
    const auto dialog = makeDialog();
    dialog->findChild<QLineEdit *>("folderEdit")->clear();
    EXPECT_TRUE(problems(*dialog).contains("Folder does not exist. It will be created."));
    EXPECT_TRUE(saveButton(*dialog)->isEnabled());
    pressSave(*dialog);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith("error: ")) << qPrintable(messages[0]);
}

TEST_F(Saving, WarnsOfWhatStandsInTheFolder)
{
    const QString start = "<TABLE border=0><TR><TD><IMG SRC=\":warning-16.png\"></TD><TD valign=middle>";
    const QString end = "</TD></TR></TABLE>";
    const auto dialog = makeDialog("a/b.c");
    const auto found = [&] {
        dialog->checkFolder(output());
        return problems(*dialog);
    };
    EXPECT_EQ(problems(*dialog), start + "Folder does not exist. It will be created." + end);
    QDir().mkpath(output());
    EXPECT_EQ(found(), "");
    dialog->setReinverting(true);
    EXPECT_TRUE(problems(*dialog).contains("reinversion is running"));
    dialog->setReinverting(false);
    writeFile(output() + "/.hidden");
    EXPECT_EQ(found(), start + "Folder is not empty! Files may become corrupted." + end);

    const QStringList own{"20190514-a%2Fb.c.records", "2019-05-15-a%2Fb.c-ions.spectra"};
    const QStringList others{"20190514-a%2Fbxc.records", "20190514-a%2Fb.c-reinv-ions.spectra",
                             "20190514-a%2Fb.c-fog.spectra", "a%2Fb.c.records", "20190514-a%2Fb.c.records.bak"};
    for (const QString &name : others)
        writeFile(output() + "/" + name);
    EXPECT_FALSE(found().contains("already"));
    writeFile(output() + "/" + own[0]);
    EXPECT_TRUE(found().contains("1 day files of the variant \"a/b.c\""));
    writeFile(output() + "/" + own[1]);
    EXPECT_TRUE(found().contains("2 day files of the variant"));
    dialog->setVariant("<b>");
    EXPECT_FALSE(problems(*dialog).contains("already")) << "another name has none";
    writeFile(output() + "/20190514-<b>.records");
    EXPECT_TRUE(found().contains("\"&lt;b&gt;\""));
    EXPECT_TRUE(saveButton(*dialog)->isEnabled());
}
