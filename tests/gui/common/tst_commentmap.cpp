#include "gui/common/commentrecords.h"
#include "support/files.h"
#include "support/logcatcher.h"
#include "support/seeds.h"

#include <QStandardItemModel>

namespace {

QStringList rowsOf(CommentMap &map)
{
    QStringList rows;
    const auto *model = map.itemModel();
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->item(row, 0)->text() + ' ' + model->item(row, 1)->text();
    return rows;
}

struct CommentMapTest : testing::Test {
    std::unique_ptr<CommentMap> reloaded(RecordTime begin = earliestRecordTime, RecordTime end = latestRecordTime) const
    {
        auto other = commentMap(folder.path());
        other->loadComments(begin, end);
        return other;
    }
    QString path(const QString &name = "20190912-block.comments") const { return folder.filePath(name); }

    QTemporaryDir folder;
    std::unique_ptr<CommentMap> map = commentMap(folder.path());
};

} // namespace

TEST_F(CommentMapTest, WhatIsSetStandsInTheFileOfItsDayAndComesBack)
{
    const QString odd = "a\tb\nc\\ %1 \xc3\xbc <b>";
    map->setComment(commentRecord(3), "third");
    map->setComment(commentRecord(0), odd);
    map->setComment(commentRecord(100), "next day");
    map->setComment(commentRecord(3), "changed");
    map->setComment(nullptr, "no record");
    EXPECT_EQ(filesIn(folder.path()), (QStringList{"20190912-block.comments", "20190913-block.comments"}));
    EXPECT_EQ(reloaded()->comment(commentRecord(0)), odd);
    const QStringList rows{"2019-09-12 12:00:00 a\tb", "2019-09-12 12:30:00 changed", "2019-09-13 04:40:00 next day"};
    EXPECT_EQ(rowsOf(*map), rows);
    EXPECT_EQ(rowsOf(*reloaded()), rows);
    EXPECT_EQ(reloaded()->comment(commentRecord(0, 3600)), "") << "that is another record";

    map->setComment(commentRecord(3), "");
    map->setComment(commentRecord(100), "");
    EXPECT_EQ(rowsOf(*reloaded()), QStringList(rows[0]));
    EXPECT_EQ(contentOf(path("20190913-block.comments")), "#Record comments\n");
}

TEST_F(CommentMapTest, WithoutAFolderOrAVariantsNameNothingIsReadOrWritten)
{
    map->setComment(commentRecord(0), "there");
    for (const auto &other : {commentMap(folder.path(), ""), commentMap(QString())}) {
        other->loadComments(earliestRecordTime, latestRecordTime);
        EXPECT_EQ(other->size(), 0);
        other->setComment(commentRecord(1), "in memory");
        EXPECT_EQ(other->comment(commentRecord(1)), "in memory");
        EXPECT_TRUE(other->isSaved(commentRecord(1)));
    }
    EXPECT_EQ(rowsOf(*reloaded()).size(), 1);
    EXPECT_EQ(filesIn(folder.path()).size(), 1);
}

TEST_F(CommentMapTest, CommentsOutsideOfTheLimitsAreNotRead)
{
    for (int place : {0, 1, 2, 3, 500})
        map->setComment(commentRecord(place), QString::number(place));
    EXPECT_EQ(reloaded(commentRecord(1)->beginTime, commentRecord(2)->beginTime)->size(), 3)
        << "those that touch count";
    EXPECT_EQ(reloaded(commentRecord(1)->endTime + Ticks(1), commentRecord(2)->endTime)->size(), 2);
    EXPECT_EQ(reloaded()->size(), 5);
}

TEST_F(CommentMapTest, WhatIsForgottenStaysInTheFile)
{
    map->setComment(commentRecord(0), "first");
    map->setComment(commentRecord(1), "second");
    EXPECT_EQ(rowsOf(*map).size(), 2);
    map->forget({CommentMap::keyOf(*commentRecord(0))});
    EXPECT_EQ(rowsOf(*map), QStringList("2019-09-12 12:10:00 second"));
    EXPECT_EQ(reloaded()->size(), 2);
}

TEST_F(CommentMapTest, WhatCanNotBeWrittenIsToldAndTriedAgain)
{
    ASSERT_TRUE(QDir().mkdir(path()));
    const LogCatcher log;
    map->setComment(commentRecord(0), "first");
    map->setComment(commentRecord(1), "second");
    EXPECT_TRUE(log.upTo(Log::Error).contains("Failed to open file '" + path() + "'"));
    EXPECT_EQ(log.upTo(Log::Error).size(), 2) << "once for each attempt at the file";
    EXPECT_EQ(log.entries().first().source, "comments");
    EXPECT_FALSE(map->isSaved(commentRecord(0)));
    EXPECT_EQ(map->comment(commentRecord(0)), "first");
    EXPECT_EQ(rowsOf(*map).first(), "2019-09-12 12:00:00 (not saved) first");

    map->setComment(commentRecord(100), "another day's file");
    EXPECT_TRUE(map->isSaved(commentRecord(100)));
    QDir().rmdir(path());
    map->saveUnsaved();
    EXPECT_TRUE(map->isSaved(commentRecord(0)));
    EXPECT_EQ(rowsOf(*map), rowsOf(*reloaded()));
    EXPECT_EQ(rowsOf(*map).size(), 3);

    ASSERT_TRUE(QDir().mkdir(path("20190914-block.comments")));
    map->setComment(commentRecord(250), "told at least");
    map->setComment(commentRecord(251), "and %1\nthis");
    const int before = log.upTo(Log::Error).size();
    map.reset();
    EXPECT_EQ(log.upTo(Log::Error).mid(before),
              (QStringList{"The comment on the record of 2019-09-14 05:40:00 is not saved: told at least",
                           "The comment on the record of 2019-09-14 05:50:00 is not saved: and %1\nthis"}));
}

TEST_F(CommentMapTest, ARowHasTheFirstLineAndABoundedPartOfIt)
{
    map->setComment(commentRecord(0), QString(400, 'x'));
    map->setComment(commentRecord(1), "first\r\nsecond");
    map->setComment(commentRecord(2), QString("a") + QChar(QChar::LineSeparator) + "b");
    const auto *model = map->itemModel();
    EXPECT_EQ(model->item(0, 1)->text(), QString(300, 'x'));
    EXPECT_EQ(model->item(0, 1)->data(CommentMap::wholeTextRole).toString().size(), 400);
    EXPECT_EQ(model->item(1, 1)->text(), "first");
    EXPECT_EQ(model->item(2, 1)->text(), "a");
    EXPECT_TRUE(model->item(0, 0)->textAlignment() & Qt::AlignTop);
    EXPECT_EQ(model->horizontalHeaderItem(0)->text() + model->horizontalHeaderItem(1)->text(), "TimeComment");
    EXPECT_FALSE(map->keyOfRow(-1));
    EXPECT_FALSE(map->keyOfRow(3));
    EXPECT_EQ(map->keyOfRow(2)->begin, commentRecord(2)->beginTime);
}

using CommentModel = Seeded<CommentMapTest>;
TEST_P(CommentModel, IsAfterAnyChangesAsIfItWereMadeAnew)
{
    map->setFolder(QString());
    auto other = commentMap(QString());
    for (int round = 0; round < 20; ++round) {
        for (int changes = pick(0, round % 5 == 0 ? 300 : 6); changes > 0; --changes) {
            const auto record = commentRecord(pick(0, 60));
            const QString text = pick(0, 2) == 0 ? QString() : QString::number(pick(0, 9));
            map->setComment(record, text);
            other->setComment(record, text);
        }
        other->forget({CommentKey()}); // has it made anew
        ASSERT_EQ(rowsOf(*map), rowsOf(*other));
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, CommentModel, testing::ValuesIn(seeds(5)));
