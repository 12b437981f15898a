#include "gui/common/commentrecords.h"
#include "gui/common/commentview.h"
#include "support/gestures.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

/// A window with the list in a dock.
struct CommentViewTest : testing::Test {
    CommentViewTest()
    {
        window.addDockWidget(Qt::RightDockWidgetArea, dock);
        for (int place : {0, 1, 2})
            map->setComment(commentRecord(place), QString("comment %1\nof the <b>day").arg(place));
        view->setCommentMap(map.get());
    }
    QStringList rows() const
    {
        settle();
        QStringList rows;
        const auto *model = view->list()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            rows << model->index(row, 1).data().toString();
        return rows;
    }

    std::unique_ptr<CommentMap> map = commentMap(QString());
    QMainWindow window;
    QDockWidget *dock = new QDockWidget(&window);
    CommentView *view = new CommentView(dock);
};

} // namespace

TEST_F(CommentViewTest, IsFilledWhenItIsSeenAndKeptUpToDateFromThenOn)
{
    EXPECT_TRUE(rows().isEmpty());
    window.show();
    EXPECT_EQ(rows(), (QStringList{"comment 0", "comment 1", "comment 2"}));
    map->setComment(commentRecord(1), "");
    map->setComment(commentRecord(7), "late");
    EXPECT_EQ(rows(), (QStringList{"comment 0", "comment 2", "late"}));
    dock->hide();
    map->setComment(commentRecord(7), "");
    EXPECT_EQ(rows().size(), 3) << "no work while nobody sees it";
    dock->show();
    EXPECT_EQ(rows().size(), 2);
    view->setCommentMap(nullptr);
    EXPECT_TRUE(rows().isEmpty());
    view->setCommentMap(map.get());
    EXPECT_EQ(rows().size(), 2);
    map.reset();
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(CommentViewTest, TheFilterFindsTextsAndTimesAndKeepsTheSelection)
{
    window.show();
    settle();
    QSignalSpy selected(view, &CommentView::commentSelected);
    QTest::mouseClick(view->list()->viewport(), Qt::LeftButton, {},
                      view->list()->visualRect(view->list()->model()->index(2, 1)).center());
    const auto chosen = [&] { return view->list()->currentIndex().siblingAtColumn(1).data().toString(); };
    const struct {
        const char *filter;
        int rows;
        bool keepsChosen;
    } cases[] = {{"COMMENT", 3, true},   {"12:10:00", 1, false}, {"<B>DAY", 3, true},
                 {"comment 2", 1, true}, {".*", 0, false},       {"", 3, true}};
    for (const auto &c : cases) {
        view->filter()->setText(c.filter);
        EXPECT_EQ(rows().size(), c.rows) << c.filter;
        EXPECT_EQ(chosen(), c.keepsChosen ? "comment 2" : "") << c.filter;
    }
    view->filter()->setText("comment 2");
    view->list()->setFocus();
    QTest::keyClick(view->list(), Qt::Key_Return);
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected[0][0].toInt(), 2) << "the row of the whole list";
    map->setComment(commentRecord(-1), "not in the list yet");
    view->itemActivated(view->list()->currentIndex());
    EXPECT_EQ(map->keyOfRow(selected.takeLast()[0].toInt())->begin, commentRecord(2)->beginTime);
    view->itemActivated({});
    EXPECT_EQ(selected.size(), 1);
    QTest::qWait(300); // the button that clears the filter fades in, and leaks what does it if it goes meanwhile
}

TEST_F(CommentViewTest, ABurstOfChangesCostsOneRefresh)
{
    window.show();
    ASSERT_EQ(rows().size(), 3);
    int resets = 0;
    QObject::connect(view->list()->model(), &QAbstractItemModel::modelReset, [&] { ++resets; });
    view->setCommentMap(map.get()); // one reset, as the old rows go at once
    map->loadComments(earliestRecordTime, latestRecordTime);
    map->setComment(commentRecord(4), "new");
    map->forget({CommentMap::keyOf(*commentRecord(4))});
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(resets, 2);
}

TEST(RecordNotes, AToolTipIsPlainAndBounded)
{
    const auto tip = [](const QString &text) { return RecordNotes::toolTip(text); };
    EXPECT_EQ(tip("<b>a</b>\nb"), "<qt>&lt;b&gt;a&lt;/b&gt;<br>b</qt>");
    EXPECT_LT(tip(QString(100000, '<')).size(), 5000);
    EXPECT_EQ(tip(QString("a\n").repeated(100)).count("<br>"), 19);
    EXPECT_TRUE(tip(QString("a\n").repeated(100)).endsWith(" ...</qt>"));
    EXPECT_EQ(tip(QString("a\n").repeated(19) + 'b').count("..."), 0);
}
