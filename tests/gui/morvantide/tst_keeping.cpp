#include "batch/reinvertcommand.h"
#include "gui/common/recordviews/reportview.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/morvantideinfowindow.h"
#include "gui/morvantide/reviewwindow.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QTreeView>

namespace {

/// What a user does with the result of a reinversion, in the program's window.
class Keeping : public ReviewWindow {
protected:
    /// The last one replaces a spectrum that was read: its columns go behind the rest.
    void reinvertVariants() { reinvert(writeVariants(3) + QStringList{"inverters/particles-neg.inverter"}); }
    MorvantideInfoWindow *showInfo() const
    {
        action("Spectra info")->trigger();
        return window->findChild<MorvantideInfoWindow *>();
    }
    static void selectRow(const MorvantideInfoWindow &info, const QString &inverter)
    {
        auto *tree = info.findChild<QTreeView *>("treeView");
        tree->clearSelection();
        for (int row = 0; row < tree->model()->rowCount(); ++row)
            if (tree->model()->index(row, 3).data() == inverter)
                tree->selectionModel()->select(tree->model()->index(row, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    static void discard(const MorvantideInfoWindow &info)
    {
        QTest::mouseClick(info.findChild<QPushButton *>("deleteButton"), Qt::LeftButton);
    }
    static int rows(const MorvantideInfoWindow &info)
    {
        return info.findChild<QTreeView *>("treeView")->model()->rowCount();
    }
    QString problems(const QString &folder) const
    {
        QString text;
        withDialog<DataSaverDialog>([&](DataSaverDialog &dialog) {
            dialog.checkFolder(folder);
            text = dialog.findChild<QLabel *>("problemLabel")->text();
            dialog.reject();
        });
        window->saveData();
        return text;
    }
};

} // namespace

TEST_F(Keeping, DiscardedSpectraLeaveListAndReport)
{
    open();
    reinvertVariants();
    MorvantideInfoWindow *info = showInfo();
    ASSERT_EQ(rows(*info), 7);
    int particles = 0;
    for (const auto &record : window->datastore()->records()) {
        if (window->uiInfo()->metadata()->opmodeName(record->opmode) != "particles")
            continue;
        ++particles;
        window->showRecord(record);
    }
    EXPECT_EQ(info->findChild<QTreeView *>("treeView")->model()->index(5, 0).data(Qt::ToolTipRole).toString(),
              QString("%1 of %2 records have this spectrum").arg(particles).arg(window->datastore()->size()));
    QTest::qWait(1);
    auto *report = window->findChild<RecordViews::ReportView *>();
    const auto reported = [report](const QString &name) {
        report->showCurrentReport();
        return report->findChild<QTextBrowser *>()->toPlainText().count(name);
    };
    EXPECT_EQ(reported("(variant1)"), 1);
    EXPECT_EQ(reported("(demo)"), 1) << "read spectra have no inverter here";

    selectRow(*info, "variant1");
    discard(*info);
    EXPECT_EQ(rows(*info), 6);
    EXPECT_EQ(window->inverters().size(), 3u);
    EXPECT_EQ(reported("(variant0)") + reported("(variant2)"), 2);
    EXPECT_EQ(reported("(variant1)"), 0);
    EXPECT_EQ(log().count("Removing spectrum 'particles neg' from memory."), 2) << "the read one went before";

    MorvantideInfoWindow *second = showInfo();
    EXPECT_EQ(window->findChildren<MorvantideInfoWindow *>(), QList<MorvantideInfoWindow *>{second})
        << "the old one went";
    EXPECT_TRUE(second->isWindow());
    window->closeData();
    EXPECT_EQ(rows(*second), 0);
}

TEST_F(Keeping, WhatIsKeptIsSavedAsTheCommandSavesIt)
{
    open();
    reinvertVariants();
    selectRow(*showInfo(), "variant1");
    discard(*window->findChild<MorvantideInfoWindow *>());
    withDialog<DataSaverDialog>([this](DataSaverDialog &dialog) {
        dialog.findChild<QLineEdit *>("folderEdit")->setText(path("window"));
        dialog.findChild<QCheckBox *>("saveInversionVarsCheckBox")->setChecked(true);
        dialog.saveData();
        dialog.reject();
    });
    action("Save data...")->trigger();
    Batch::ReinvertOptions command;
    command.save.read = {path("demo"), "block", {}, {}};
    command.save.outputFolder = path("command");
    command.save.outputVariant = "block-reinv";
    command.save.records = false;
    command.save.inversionVars = true;
    command.inverters = QStringList{path("variants/particles0.inverter"), path("variants/particles2.inverter"),
                                    path("inverters/particles-neg.inverter")};
    ASSERT_EQ(Batch::runReinvert(command), 0);
    const QStringList names = filesIn(path("command"));
    EXPECT_EQ(names.size(), 2);
    EXPECT_EQ(filesIn(path("window")), names);
    for (const QString &name : names)
        EXPECT_TRUE(contentOf("window/" + name) == contentOf("command/" + name)) << qPrintable(name);
}

TEST_F(Keeping, ARunUnderWayIsCancelledByTheFirstWishAndToldByTheSaver)
{
    open();
    window->findChild<Reinversion *>()->setWorkerCount(1);
    QDir().mkpath(path("empty"));
    EXPECT_EQ(problems(path("empty")), "");
    startReinversion(writeVariants(60));
    ASSERT_TRUE(window->isReinverting());
    EXPECT_TRUE(problems(path("empty")).contains("A reinversion is running"));

    MorvantideInfoWindow *info = showInfo();
    const int before = rows(*info);
    selectRow(*info, "demo");
    ASSERT_TRUE(window->isReinverting()) << "or this test tells nothing";
    discard(*info);
    EXPECT_FALSE(window->isReinverting());
    EXPECT_EQ(rows(*info), before);
    EXPECT_EQ(log().count("error] Can't remove spectrum while reinversion in progress!"), 1) << "for all four";
    discard(*info);
    EXPECT_EQ(rows(*info), before - 4);
    EXPECT_EQ(problems(path("empty")), "");
}
