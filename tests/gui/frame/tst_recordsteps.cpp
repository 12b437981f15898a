#include "gui/common/commentmap.h"
#include "gui/frame/recordsteps.h"
#include "gui/frame/shownrecord.h"
#include "records/recordflag.h"
#include "support/commands.h"

#include <QAction>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

/// Ten records of a second each, of which those with even numbers have comments and 3 and 7 have flags.
struct RecordStepsTest : testing::Test {
    RecordStepsTest()
    {
        for (int i = 0; i < 10; ++i) {
            auto record = std::make_shared<Record>();
            record->beginTime = recordTimeFromTicks((1'500'000'000LL + i) * ticksPerSecond);
            record->endTime = recordTimeFromTicks((1'500'000'001LL + i) * ticksPerSecond);
            record->dpVariantId = 0;
            if (i == 3 || i == 7)
                record->flags = {std::make_shared<Spectrometer::RecordFlag>()};
            if (i % 2 == 0)
                map->setComment(record, "a comment");
            store->insertRecord(store->lowerBound(record->beginTime), record);
        }
        const auto orphan = std::make_shared<Record>(*store->at(5));
        orphan->endTime += Ticks(1);
        map->setComment(orphan, "on no record of the store");
        for (const int offset : {-3600, 3600}) {
            const auto elsewhere = std::make_shared<Record>(*store->at(6));
            elsewhere->beginUtcOffset = offset;
            map->setComment(elsewhere, "on the record's times under another offset");
        }
        shown.setDatastore(store);
        steps.setCommentMap(map);
        steps.setEnabled(true);
    }
    /// The number of the record that the command leads to.
    int from(int start, const char *command)
    {
        shown.show(start < 0 ? nullptr : store->at(start));
        commandOf(steps.actions(), command)->trigger();
        return shown.record() ? store->indexOfHead(*shown.record()) : -1;
    }

    std::shared_ptr<CommentMap> map = std::make_shared<CommentMap>();
    std::shared_ptr<Datastore> store = std::make_shared<Datastore>();
    ShownRecord shown{std::make_shared<UiInfo>(), nullptr};
    RecordSteps steps{&shown, nullptr};
};

} // namespace

TEST_F(RecordStepsTest, LeadToTheNearestRecordThatHasOne)
{
    QSignalSpy nothing(&steps, &RecordSteps::nothingFound);
    const struct {
        const char *command;
        int from, to;
    } cases[] = {
        {"Next comment", -1, 0},
        {"Next comment", 0, 2},
        {"Next comment", 5, 6},
        {"Next comment", 6, 8},
        {"Previous comment", 6, 4},
        {"Previous comment", -1, 8},
        {"Previous comment", 8, 6},
        {"Previous comment", 7, 6},
        {"Next flagged record", -1, 3},
        {"Next flagged record", 3, 7},
        {"Next flagged record", 5, 7},
        {"Previous flagged record", -1, 7},
        {"Previous flagged record", 7, 3},
        {"Previous flagged record", 9, 7},
    };
    for (const auto &c : cases)
        EXPECT_EQ(from(c.from, c.command), c.to) << c.command << " from " << c.from;
    EXPECT_EQ(nothing.size(), 0);
    EXPECT_EQ(from(8, "Next comment"), 8);
    EXPECT_EQ(from(0, "Previous comment"), 0);
    EXPECT_EQ(from(7, "Next flagged record"), 7);
    EXPECT_EQ(from(3, "Previous flagged record"), 3);
    EXPECT_EQ(nothing.size(), 4);
}

TEST_F(RecordStepsTest, AreThereOnlyWhereTheyCanLeadSomewhere)
{
    const auto enabled = [&] {
        QString text;
        for (const QAction *action : steps.actions())
            text += action->isEnabled() ? '1' : '0';
        return text;
    };
    EXPECT_EQ(enabled(), "1111");
    steps.setCommentMap(nullptr);
    EXPECT_EQ(enabled(), "0011");
    steps.setEnabled(false);
    EXPECT_EQ(enabled(), "0000");
}
