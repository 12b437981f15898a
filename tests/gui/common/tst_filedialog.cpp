#include "gui/common/filedialog.h"
#include "support/files.h"

#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

struct Dialog {
    QTemporaryDir folder;
    std::unique_ptr<FileDialog> dialog;
    QListView *list = nullptr;
    int messages = 0, looks = 0;
    QTimer answering;

    explicit Dialog(FileDialog::Use use)
    {
        for (const char *name : {"first", "second"})
            writeFile(folder.filePath(name), name);
        dialog = std::make_unique<FileDialog>(use, nullptr, "Choose", folder.path());
        dialog->show();
        list = dialog->findChild<QListView *>("listView");
        QObject::connect(&answering, &QTimer::timeout, &answering, [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box && ++looks % 5 == 0) { // some turns of the event loop later
                ++messages;
                box->accept();
            }
        });
        answering.start(10);
    }

    QModelIndex indexOf(const char *name) const
    {
        const QAbstractItemModel &model = *list->model();
        for (int row = 0; row < model.rowCount(list->rootIndex()); ++row)
            if (model.index(row, 0, list->rootIndex()).data() == QLatin1String(name))
                return model.index(row, 0, list->rootIndex());
        return {};
    }

    /// Renames the first file, with so many Returns before the program comes to the first of them.
    void rename(const char *name, int returns)
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return indexOf("first").isValid(); }));
        list->setCurrentIndex(indexOf("first"));
        list->edit(indexOf("first"));
        auto *editor = list->findChild<QLineEdit *>();
        ASSERT_TRUE(editor);
        editor->setText(name);
        for (int i = 0; i < returns; ++i) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QApplication::sendEvent(editor, &key);
        }
        const QPointer<QLineEdit> guard(editor);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !guard; }));
        QTest::qWait(50);
    }
};

} // namespace

TEST(FileDialog, RenamesAndOutlivesARefusalWithASecondReturnBehindIt)
{
    for (const int returns : {1, 2}) {
        Dialog refused(FileDialog::Use::Write);
        refused.rename("second", returns);
        EXPECT_EQ(refused.messages, 1) << returns;
        EXPECT_EQ(filesIn(refused.folder.path()), QStringList({"first", "second"}));

        Dialog accepted(FileDialog::Use::Write);
        accepted.rename("third", returns);
        EXPECT_EQ(accepted.messages, 0) << returns;
        EXPECT_EQ(filesIn(accepted.folder.path()), QStringList({"second", "third"}));
    }
}

TEST(FileDialog, ChangesNoFilesWhereTheyAreToBeRead)
{
    Dialog reading(FileDialog::Use::Read);
    ASSERT_TRUE(QTest::qWaitFor([&] { return reading.indexOf("first").isValid(); }));
    EXPECT_FALSE(reading.indexOf("first").flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(reading.dialog->testOption(QFileDialog::ReadOnly));
}
