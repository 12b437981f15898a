#include "gui/common/commentedit.h"
#include "gui/common/commentrecords.h"
#include "gui/common/recordform.h"

#include <QApplication>
#include <QLabel>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

/// A form in a window that has a command for the right key, and another place for the focus.
struct CommentEditTest : testing::Test {
    CommentEditTest()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&form);
        layout->addWidget(&elsewhere);
        for (const auto &key : {QKeySequence(Qt::Key_Right), QKeySequence(Qt::CTRL + Qt::Key_Left),
                                QKeySequence(Qt::Key_End), QKeySequence(Qt::Key_Escape)})
            QObject::connect(new QShortcut(key, &window), &QShortcut::activated, [this] { ++commands; });
        map->setComment(first, "stands");
        form.setCommentMap(map.get());
        form.showRecord(first);
        window.show();
        QApplication::setActiveWindow(&window);
    }
    /// Puts the cursor behind the text and types.
    void type(const QString &text)
    {
        line->setFocus();
        line->end(false);
        QTest::keyClicks(line, text);
    }
    QString comment(const std::shared_ptr<Record> &record) const { return map->comment(record); }

    std::unique_ptr<CommentMap> map = commentMap(QString());
    const std::shared_ptr<Record> first = commentRecord(0), second = commentRecord(1);
    QWidget window;
    RecordForm form{std::make_shared<UiInfo>()};
    QLineEdit elsewhere;
    CommentEdit *line = form.findChild<CommentEdit *>("commentEdit");
    int commands = 0;
};

} // namespace

TEST_F(CommentEditTest, ShowsTheCommentOfTheRecordIfThereCanBeOne)
{
    EXPECT_EQ(line->text(), "stands");
    form.showRecord(second);
    EXPECT_EQ(line->text(), "");
    EXPECT_TRUE(line->isEnabled());
    form.setCommentMap(nullptr);
    EXPECT_EQ(line->text(), "n/a");
    EXPECT_FALSE(line->isEnabled());
    form.showRecord(nullptr);
    EXPECT_EQ(line->text(), "");
    form.setCommentMap(map.get());
    EXPECT_FALSE(line->isEnabled());
    form.showRecord(first);
    EXPECT_EQ(line->text(), "stands");
}

TEST_F(CommentEditTest, WhatIsHalfTypedIsKeptInEveryCase)
{
    const struct {
        const char *name;
        std::function<void()> happens;
    } cases[] = {
        {"another record", [&] { form.showRecord(second); }},
        {"no record", [&] { form.showRecord(nullptr); }},
        {"another map", [&] { form.setCommentMap(nullptr); }},
        {"Return", [&] { QTest::keyClick(line, Qt::Key_Return); }},
        {"the focus goes", [&] { elsewhere.setFocus(); }},
        {"the window's end", [&] { form.commitComment(); }},
        {"clearEditFocus", [&] { form.clearEditFocus(); }},
        {"clear", [&] { form.clear(); }},
    };
    for (const auto &c : cases) {
        map->setComment(first, "stands");
        form.setCommentMap(map.get());
        form.showRecord(nullptr);
        form.showRecord(first);
        type(", half");
        EXPECT_EQ(comment(first), "stands") << c.name;
        c.happens();
        EXPECT_EQ(comment(first), "stands, half") << c.name;
        EXPECT_EQ(comment(second), "") << c.name;
    }
}

TEST_F(CommentEditTest, TheRecordThatIsEditedNeitherCommitsNorRefills)
{
    type(" more");
    form.showRecord(first);
    form.updateSetup();
    EXPECT_EQ(line->text(), "stands more");
    EXPECT_EQ(comment(first), "stands");
    form.showRecord(second);
    EXPECT_EQ(comment(first), "stands more");
    EXPECT_EQ(line->text(), "");
}

TEST_F(CommentEditTest, TheLineGoesOnWhereItWasWhenTheWindowIsActiveAgain)
{
    type(" and ");
    QApplication::setActiveWindow(nullptr);
    EXPECT_EQ(comment(first), "stands and");
    form.showRecord(first); // as a reinversion does with each result
    QApplication::setActiveWindow(&window);
    QTest::keyClicks(line, "more");
    EXPECT_EQ(line->text(), "stands and more");
}

TEST_F(CommentEditTest, ReturnLeavesTheLineAndEscapeBringsBackWhatStands)
{
    elsewhere.setFocus();
    QSignalSpy left(&form, &RecordForm::editLeft), started(&form, &RecordForm::editStarted),
        ended(&form, &RecordForm::editEnded);
    type("x");
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(line->text(), "stands");
    EXPECT_EQ(left.size(), 0);
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(left.size(), 1) << "nothing to bring back";
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(left.size(), 2);
    EXPECT_EQ(comment(first), "stands");
    elsewhere.setFocus();
    EXPECT_EQ(started.size(), 1);
    EXPECT_EQ(ended.size(), 1);
}

TEST_F(CommentEditTest, OuterBlanksGoAndBlanksAloneAreNoComment)
{
    form.showRecord(second);
    type("  two words ");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(comment(second), "two words");
    EXPECT_EQ(line->text(), "two words");
    line->selectAll();
    type("");
    line->selectAll();
    QTest::keyClicks(line, "   ");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(map->size(), 1);
}

TEST_F(CommentEditTest, OnlyAChangedTextIsHandedOn)
{
    map->setComment(second, "\todd ends\n");
    int changes = 0;
    QObject::connect(map.get(), &CommentMap::changed, [&] { ++changes; });
    form.showRecord(second);
    line->setFocus();
    form.showRecord(first);
    type("x");
    QTest::keyClick(line, Qt::Key_Backspace);
    form.showRecord(second);
    type("x");
    QTest::keyClick(line, Qt::Key_Backspace);
    form.showRecord(first);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(comment(second), "\todd ends\n");
}

TEST_F(CommentEditTest, ACommentTooLongForTheLineIsShownCutAndKept)
{
    const QString longText(40000, 'x');
    map->setComment(second, longText);
    form.showRecord(second);
    EXPECT_EQ(line->text().size(), 32767);
    EXPECT_TRUE(line->isReadOnly());
    type("y");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(comment(second), longText);
    form.showRecord(first);
    EXPECT_FALSE(line->isReadOnly());
}

TEST_F(CommentEditTest, CursorKeysGoToTheLineAndNotToTheWindowsCommands)
{
    line->setFocus();
    QTest::keyClick(line, Qt::Key_Home);
    QTest::keyClick(line, Qt::Key_Right);
    EXPECT_EQ(line->cursorPosition(), 1);
    QTest::keyClick(line, Qt::Key_End);
    QTest::keyClick(line, Qt::Key_Right);
    EXPECT_EQ(line->cursorPosition(), 6);
    QTest::keyClick(line, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(line->cursorPosition(), 0);
    QTest::keyClick(line, Qt::Key_Escape);
    EXPECT_EQ(commands, 0);
    elsewhere.hide();
    window.setFocus();
    QTest::keyClick(&window, Qt::Key_Right);
    EXPECT_EQ(commands, 1) << "or this test tells nothing";
}

TEST_F(CommentEditTest, ACommentThatIsNotSavedIsMarked)
{
    QTemporaryDir folder;
    const QString path = folder.filePath("20190912-block.comments");
    ASSERT_TRUE(QDir().mkdir(path));
    map->setFolder(folder.path());
    const auto *label = form.findChild<QLabel *>("notSavedLabel");
    EXPECT_FALSE(label->isVisible());
    type(", new");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(label->text(), "not saved");
    form.showRecord(second);
    EXPECT_FALSE(label->isVisible());
    form.showRecord(first);
    EXPECT_TRUE(label->isVisible());
    QDir().rmdir(path);
    map->saveUnsaved();
    EXPECT_FALSE(label->isVisible());
}
