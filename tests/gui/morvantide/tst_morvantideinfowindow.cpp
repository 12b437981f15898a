#include "gui/morvantide/morvantideinfowindow.h"

#include "support/instrument.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QColorDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

class InfoWindow : public ::testing::Test {
protected:
    InfoWindow()
    {
        ui->setData(std::make_shared<Spectrometer::RecordMetadata>(),
                    {namedSpectrum("p", "aaaa", "", "one"), namedSpectrum("p", "bbbb", "", "two"),
                     namedSpectrum("q", "cccc", "inv")});
        ui->publish();
        window.show();
    }

    QString cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return tree->model()->index(row, column).data(role).toString();
    }
    void select(const QList<int> &rows)
    {
        tree->clearSelection();
        for (int row : rows)
            tree->selectionModel()->select(tree->model()->index(row, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    QStringList selectedIds() const
    {
        QStringList ids;
        for (const QModelIndex &index : tree->selectionModel()->selectedRows(2))
            ids << index.data().toString();
        ids.sort();
        return ids;
    }
    QPushButton *button(const char *name) const { return window.findChild<QPushButton *>(name); }
    QString enabled() const
    {
        QString text;
        for (const char *name : {"renameButton", "colorButton", "deleteButton"})
            text += button(name)->isEnabled() ? 'x' : '-';
        return text;
    }
    UiInfo::InfoKey spectrum(int place) const { return ui->spectrumInfos().at(place).get(); }

    /// Renames what is selected; gives what the field started with.
    QString rename(const QString &comment, bool accept = true)
    {
        QString preset;
        QTimer::singleShot(0, &window, [&] {
            auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Spectrum comment");
            EXPECT_EQ(dialog->labelText(), "Enter comment for spectrum");
            preset = dialog->textValue();
            dialog->setTextValue(comment);
            accept ? dialog->accept() : dialog->reject();
        });
        QTest::mouseClick(button("renameButton"), Qt::LeftButton);
        return preset;
    }

    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    MorvantideInfoWindow window{ui};
    QTreeView *tree = window.findChild<QTreeView *>("treeView");
};

} // namespace

TEST_F(InfoWindow, ListsTheSpectra)
{
    QStringList headers;
    for (int column = 0; column < tree->model()->columnCount(); ++column)
        headers << tree->model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_EQ(headers, (QStringList{"Spectrum", "Comment", "Id", "Inverter"}));
    EXPECT_EQ(tree->model()->rowCount(), 3);
    EXPECT_EQ(cell(0, 1), "one");
    EXPECT_EQ(cell(1, 2), "bbbb");
    EXPECT_EQ(cell(2, 0), "q") << "bare, whatever the views call it";
    EXPECT_EQ(cell(2, 3), "inv");
    EXPECT_EQ(tree->model()->flags(tree->model()->index(1, 1)), Qt::ItemIsEnabled | Qt::ItemIsSelectable);

    int records = 5;
    window.setRecordsText([&](UiInfo::InfoKey key) { return QString("%1 %2").arg(key->hash).arg(records); });
    EXPECT_EQ(cell(1, 3, Qt::ToolTipRole), "bbbb 5");
    records = 6;
    EXPECT_EQ(cell(1, 0, Qt::ToolTipRole), "bbbb 6") << "as it is when it is asked";

    ui->clear();
    ui->publish();
    EXPECT_EQ(tree->model()->rowCount(), 0);
    EXPECT_EQ(tree->model()->columnCount(), 4);
    EXPECT_EQ(enabled(), "---");
}

TEST_F(InfoWindow, ButtonsFollowTheSelectionAndTheSelectionItsSpectra)
{
    EXPECT_EQ(enabled(), "---");
    select({1});
    EXPECT_EQ(enabled(), "xxx");
    select({0, 2});
    EXPECT_EQ(enabled(), "x-x");
    ui->removeSpectrum(spectrum(1));
    ui->addSpectrum(namedSpectrum("r", "dddd", ""), "reinv-1");
    ui->publish();
    EXPECT_EQ(selectedIds(), (QStringList{"aaaa", "cccc"})) << "in their new places";
    ui->removeSpectrum(spectrum(0));
    ui->publish();
    EXPECT_EQ(selectedIds(), QStringList{"cccc"});
    EXPECT_EQ(enabled(), "xxx");
}

TEST_F(InfoWindow, RenamesAllThatIsSelectedAtOnce)
{
    QSignalSpy updates(ui.get(), &UiInfo::configUpdated);
    select({0});
    EXPECT_EQ(rename("new %1"), "one");
    EXPECT_EQ(cell(0, 1), "new %1");
    EXPECT_EQ(ui->spectrumName(spectrum(0)), "p (new %1)");
    select({0, 1});
    EXPECT_EQ(rename("ignored", false), "") << "comments differ";
    EXPECT_EQ(updates.size(), 1);
    EXPECT_EQ(rename(""), "");
    EXPECT_EQ(cell(0, 1) + cell(1, 1), "") << "an empty comment is a comment";
    EXPECT_EQ(updates.size(), 2);
    EXPECT_EQ(selectedIds(), (QStringList{"aaaa", "bbbb"}));
    EXPECT_EQ(ui->spectrumInfos()[1]->comment, "two") << "what was published stays as it is";
}

TEST_F(InfoWindow, RecoloursOne)
{
    select({1});
    const QColor before = ui->spectrumColor(spectrum(1));
    QSignalSpy updates(ui.get(), &UiInfo::configUpdated);
    for (const bool accept : {false, true}) {
        QTimer::singleShot(0, &window, [&] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->windowTitle(), "Select color for p (two)");
            EXPECT_EQ(dialog->currentColor().rgb(), before.rgb());
            dialog->setCurrentColor(Qt::green);
            accept ? dialog->accept() : dialog->reject();
        });
        QTest::mouseClick(button("colorButton"), Qt::LeftButton);
        EXPECT_EQ(updates.size(), accept ? 1 : 0);
    }
    EXPECT_EQ(ui->spectrumColor(spectrum(1)), QColor(Qt::green));
    const QIcon icon = tree->model()->index(1, 0).data(Qt::DecorationRole).value<QIcon>();
    EXPECT_EQ(icon.pixmap(16).toImage().pixelColor(4, 4), QColor(Qt::green));
    ui->publish();
    EXPECT_EQ(ui->spectrumColor(spectrum(1)), QColor(Qt::green)) << "it stays";
}

TEST_F(InfoWindow, FocusStaysWhereTheUserIs)
{
    QObject::connect(&window, &MorvantideInfoWindow::requestSpectrumRemove,
                     [&](const SpectMath::SpectrumInfo *spectrum) {
                         ui->removeSpectrum(spectrum);
                         ui->publish();
                     });
    select({0});
    button("renameButton")->setFocus();
    rename("other");
    EXPECT_EQ(window.focusWidget(), button("renameButton"));
    button("deleteButton")->setFocus();
    QTest::keyClick(button("deleteButton"), Qt::Key_Space);
    EXPECT_EQ(window.focusWidget(), tree) << "not the button that closes the window";
}

TEST_F(InfoWindow, AsksForEachSelectedSpectrumToGo)
{
    QStringList asked;
    bool cancels = true;
    QObject::connect(&window, &MorvantideInfoWindow::requestSpectrumRemove,
                     [&](const SpectMath::SpectrumInfo *spectrum) {
                         asked << spectrum->hash;
                         if (!cancels) {
                             ui->removeSpectrum(spectrum);
                             ui->publish(); // rows and descriptions go from under the window's feet
                         }
                     });
    select({0, 2});
    QTest::mouseClick(button("deleteButton"), Qt::LeftButton);
    EXPECT_EQ(tree->model()->rowCount(), 3) << "while a reinversion runs a wish may not be granted";
    cancels = false;
    QTest::mouseClick(button("deleteButton"), Qt::LeftButton);
    EXPECT_EQ(asked, (QStringList{"aaaa", "cccc", "aaaa", "cccc"}));
    EXPECT_EQ(tree->model()->rowCount(), 1);
    EXPECT_EQ(enabled(), "---");
}
