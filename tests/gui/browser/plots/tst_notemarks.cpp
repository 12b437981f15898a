#include "gui/browser/plots/notemarks.h"
#include "gui/browser/plots/opmodeplot.h"
#include "support/gestures.h"
#include "support/seeds.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <map>

namespace {

using namespace Tsb;

/// Notes by the ticks at which their records begin.
struct Notes : RecordNotes {
    std::map<std::int64_t, QString> texts;
    mutable int asked = 0;

    std::optional<Note> firstFrom(RecordTime begin) const override
    {
        ++asked;
        const auto found = texts.lower_bound(ticksOf(begin));
        if (found == texts.end())
            return {};
        return Note{recordTimeFromTicks(found->first), {}, found->second};
    }
};

constexpr int height = 16;

QImage drawn(const Notes &notes, const TimeScale &scale, const std::vector<int> &ends)
{
    QImage image(200, height, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QPainter painter(&image);
    for (std::size_t i = 1; i < ends.size(); ++i)
        NoteMarks::draw(painter, height, notes, scale, ends[i - 1], ends[i]);
    return image;
}

} // namespace

using NoteMarksTest = Seeded<>;
TEST_P(NoteMarksTest, EachRecordWithANoteIsMarkedWhereItBeginsInAnyNumberOfParts)
{
    Notes notes;
    const std::int64_t perPixel = pick(1, 40);
    const TimeScale scale(recordTimeFromTicks(1000), perPixel, pick(-100, 300));
    std::vector<int> columns; // right of the origin
    for (int i = pick(0, 60); i > 0; --i) {
        columns.push_back(pick(-500, 500));
        notes.texts[1000 + columns.back() * perPixel + pick(0, int(perPixel) - 1)];
    }
    const QImage whole = drawn(notes, scale, {0, 200});
    std::vector<int> ends{0, 200};
    for (int i = 0; i < 10; ++i)
        ends.push_back(pick(0, 200));
    std::sort(ends.begin(), ends.end());
    EXPECT_EQ(drawn(notes, scale, ends), whole);

    std::vector<int> expected(200);
    for (int column : columns) {
        column += int(scale.originPixel);
        for (int i = 0; i < NoteMarks::markWidth; ++i)
            if (column + i >= 0 && column + i < 200)
                expected[std::size_t(column + i)] =
                    std::max(expected[std::size_t(column + i)], NoteMarks::markWidth - i);
    }
    for (int x = 0; x < 200; ++x) {
        int dark = 0;
        for (int y = 0; y < height; ++y)
            dark += whole.pixelColor(x, y).lightness() < 100;
        ASSERT_EQ(dark, expected[std::size_t(x)]) << x;
        ASSERT_TRUE(dark == 0 || whole.pixelColor(x, height - 1).lightness() < 100) << "at the foot";
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, NoteMarksTest, testing::ValuesIn(seeds(30)));

TEST(NoteMarks, TheWorkGoesWithTheColumnsAndNotWithTheNotes)
{
    Notes notes;
    for (int i = 0; i < 20000; ++i)
        notes.texts[i];
    drawn(notes, TimeScale(recordTimeFromTicks(0), 100, 0), {0, 200});
    EXPECT_LE(notes.asked, 201);
}

TEST(NoteMarks, AMarkGoesWithItsEdges)
{
    Datastore store;
    for (int i = 0; i < 400; ++i) { // narrow bars, which make a dark ground
        auto record = std::make_shared<Record>();
        record->beginTime = recordTimeFromTicks(5 * i + 1);
        record->endTime = recordTimeFromTicks(5 * i + 6);
        store.takeIn(record);
    }
    Notes notes;
    OpmodePlot strip;
    strip.resize(200, strip.sizeHint().height());
    strip.setDatastore(&store);
    strip.setTimeScale(TimeScale(recordTimeFromTicks(0), 10, 0));
    strip.setNotes(&notes);
    strip.show();
    settle();
    const auto picture = [&strip] {
        strip.grab();
        return strip.image().copy();
    };
    const QImage bare = picture();
    notes.texts = {{500, "one"}};
    Q_EMIT notes.changed(recordTimeFromTicks(500), recordTimeFromTicks(500));
    EXPECT_EQ(picture().pixelColor(49, strip.image().height() - 1), QColor(Qt::white)) << "an edge";
    notes.texts.clear();
    Q_EMIT notes.changed(recordTimeFromTicks(500), recordTimeFromTicks(500));
    EXPECT_EQ(picture(), bare);
}

TEST(NoteMarks, TheStripShowsMarksAndTheirTextsAndFollowsTheirChanges)
{
    Datastore store;
    Notes notes;
    OpmodePlot strip;
    QTimer timer;
    strip.resize(200, strip.sizeHint().height());
    strip.setUpdateTimer(&timer);
    strip.setDatastore(&store);
    strip.setTimeScale(TimeScale(recordTimeFromTicks(0), 10, 0));
    strip.setNotes(&notes);
    strip.show();
    settle();
    const auto dark = [&](int column) {
        strip.grab();
        return strip.image().pixelColor(column, strip.image().height() - 1) != Qt::white;
    };
    const auto tip = [&](int column) {
        const QPoint at(column + strip.contentsRect().left(), 5);
        QHelpEvent event(QEvent::ToolTip, at, strip.mapToGlobal(at));
        QApplication::sendEvent(&strip, &event);
        return QToolTip::text();
    };
    EXPECT_FALSE(dark(50));
    notes.texts = {{500, "one"}, {700, "two"}};
    Q_EMIT notes.changed(recordTimeFromTicks(500), recordTimeFromTicks(700));
    EXPECT_TRUE(dark(50) && dark(70));
    EXPECT_FALSE(dark(60));
    EXPECT_EQ(tip(100), "");
    EXPECT_EQ(tip(51), "<qt>one</qt>");
    EXPECT_EQ(tip(68), "<qt>two</qt>");
    notes.texts.erase(500);
    Q_EMIT notes.changed(recordTimeFromTicks(500), recordTimeFromTicks(500));
    EXPECT_FALSE(dark(50));

    Spectrometer::RecordFlag flag;
    strip.showFlag(flag);
    EXPECT_FALSE(dark(70)) << "a flag's strip has its own subject";
    strip.showOpmode();
    EXPECT_TRUE(dark(70));
    strip.setNotes(nullptr);
    EXPECT_FALSE(dark(70));
}
