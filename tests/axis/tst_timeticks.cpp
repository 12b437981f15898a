#include "axis/timeticks.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

using Tsb::GroupPlacing;
using Tsb::TimeAxis;

constexpr std::int64_t second = ticksPerSecond;

RecordTime at(const char *text)
{
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(text) + QLatin1Char('Z'), Qt::ISODate);
    return recordTimeFromTicks(time.toMSecsSinceEpoch() * ticksPerMillisecond);
}

QStringList labelsOf(const TimeAxis &axis, int width)
{
    QStringList labels;
    for (const auto &tick : axis.ticks) {
        if (tick.x < width && !tick.label.isEmpty())
            labels << tick.label;
    }
    return labels;
}

QStringList groupsOf(const TimeAxis &axis)
{
    QStringList groups;
    for (const auto &group : axis.groups)
        groups << QStringLiteral("%1-%2 %3").arg(QString::number(group.left), QString::number(group.right), group.text);
    return groups;
}

TEST(TimeAxis, LabelsAndGroups)
{
    const struct {
        const char *origin;
        double secondsPerPixel;
        int originPixel, width;
        std::int64_t offset;
        const char *labels, *groups;
    } cases[] = {
        {"2021-05-06T10:20:30", 0.01, 0, 250, 0, "31 32", "0-250 2021-05-06 10:20"},
        // A step must exceed 60 pixels; the origin stands inside.
        {"2021-05-06T10:20:30", 0.5, 100, 240, 0, "10:20 10:21", "0-240 2021-05-06"},
        {"2021-05-06T22:30:00", 60, 0, 300, 0, "00:00 03:00", "0-90 2021-05-06, 90-300 2021-05-07"},
        // The offset moves the texts, not the ticks.
        {"2021-05-06T22:30:00", 60, 0, 300, 7200, "02:00 05:00", "0-90 2021-05-06, 90-300 2021-05-07"},
        {"2021-05-06T22:30:00", 60, 0, 300, -12600, "20:30 23:30", "0-300 2021-05-06"},
        {"2021-02-26T00:00:00", 1400, 0, 310, 0, "27 28 01 02 03", "0-185 2021-02, 185-310 2021-03"},
        // Before the epoch there is no text.
        {"1969-12-31T23:59:58", 0.01, 0, 350, 0, "00 01", "0-200 , 200-350 1970-01-01 00:00"},
    };
    for (const auto &c : cases) {
        const TimeScale scale(at(c.origin), std::int64_t(c.secondsPerPixel * second), c.originPixel);
        const TimeAxis axis = Tsb::timeAxis(scale, c.width, c.offset, {});
        EXPECT_EQ(labelsOf(axis, c.width).join(' '), c.labels) << c.origin;
        EXPECT_EQ(groupsOf(axis).join(", "), c.groups) << c.origin;
    }
}

TEST(TimeAxis, EqualNeighboursKeepOneLabel)
{
    const TimeAxis axis = Tsb::timeAxis({at("2021-05-06T10:00:00"), second / 3, 0}, 400, 0, {});
    EXPECT_EQ(labelsOf(axis, 400), (QStringList{"30", "00", "30", "00"}));
}

TEST(TimeAxis, SomeDaysAreToldWhereEachHasNoRoom)
{
    const QString each, fifth = "01 06 11 16 21 26", tenth = "01 11 21", half = "01 16", none = "none";
    constexpr int small = 14, large = 22; // a day's text in two fonts
    const std::int64_t west = -5 * 3600;  // the local day at midnight UTC is the one before
    const struct {
        int width, days;
        QString withSmall, withLarge;
    } cases[] = {
        {800, 20, each, each},    {800, 30, each, fifth},    {800, 45, fifth, fifth},   {800, 60, fifth, fifth},
        {800, 90, fifth, tenth},  {800, 120, tenth, tenth},  {800, 200, tenth, half},   {800, 400, half, none},
        {1600, 20, each, each},   {1600, 30, each, each},    {1600, 45, each, each},    {1600, 60, each, fifth},
        {1600, 90, fifth, fifth}, {1600, 120, fifth, fifth}, {1600, 200, fifth, tenth}, {1600, 400, tenth, half},
    };
    for (const auto &c : cases) {
        for (const int font : {small, large}) {
            SCOPED_TRACE(testing::Message() << c.days << " days, " << c.width << " columns, texts of " << font);
            const TimeScale scale(at("2021-01-17T00:00:00"), c.days * ticksPerDay / c.width, 0);
            const QString expected = font == small ? c.withSmall : c.withLarge;
            int before = -1000;
            const TimeAxis axis = Tsb::timeAxis(scale, c.width, west, {50, font});
            for (const auto &tick : axis.ticks) {
                const std::int64_t midnight = (ticksOf(scale.tickAt(tick.x + 1)) - 1) / ticksPerDay * ticksPerDay;
                const QString day =
                    QDateTime::fromMSecsSinceEpoch(midnight / ticksPerMillisecond + west * 1000, Qt::UTC)
                        .toString("dd");
                const bool labelled = expected == each || expected.contains(day);
                EXPECT_EQ(tick.label, labelled ? day : QString());
                EXPECT_EQ(tick.drawn, labelled || c.width / c.days >= 4);
                if (!labelled)
                    continue;
                EXPECT_GE(2 * (tick.x - before), 3 * font - 1);
                before = tick.x;
            }
            EXPECT_GE(axis.ticks.size(), std::size_t(c.days));
            EXPECT_EQ(axis.groups.at(1).text, "2021-02");
        }
    }
}

TEST(TimeAxis, YearsWhereMonthsHaveNoRoom)
{
    const TimeScale scale(at("2020-11-01T00:00:00"), 86400 * second, 0); // one pixel a day
    const TimeAxis years = Tsb::timeAxis(scale, 500, 0, {50, 14});
    EXPECT_EQ(groupsOf(years), (QStringList{"0-61 2020", "61-426 2021", "426-500 2022"}));
    const TimeAxis months = Tsb::timeAxis(scale, 500, 0, {32, 14});
    EXPECT_EQ(months.groups.size(), 17u);
    EXPECT_EQ(years.boundaries, months.boundaries);
}

/// Whatever the scale, an axis is bounded work, its ticks ascend and stand at the place that the scale gives them.
TEST(TimeAxis, SurvivesEveryScale)
{
    const RecordTime origins[] = {at("2021-05-06T10:20:30"), recordTimeFromTicks(1), at("1901-02-03T04:05:06"),
                                  at("9999-12-31T23:59:59"), latestRecordTime,       earliestRecordTime};
    for (const RecordTime origin : origins) {
        for (std::int64_t ticks = 1; ticks <= TimeScale::greatestTicksPerPixel; ticks *= 10) {
            for (const std::int64_t pixel : {std::int64_t(0), std::int64_t(-3), std::int64_t(1) << 40}) {
                const TimeScale scale(origin, ticks, pixel);
                const TimeAxis axis = Tsb::timeAxis(scale, 1600, 3600, {50, 14});
                EXPECT_LE(axis.ticks.size(), 2000u);
                for (std::size_t i = 1; i < axis.ticks.size(); ++i)
                    EXPECT_LE(axis.ticks[i - 1].x, axis.ticks[i].x);
                for (const auto &group : axis.groups)
                    EXPECT_FALSE(group.text.contains(QStringLiteral("invalid")));
                Tsb::timeCursorLabels(scale, 800, -3600);
            }
        }
    }
}

TEST(TimeAxis, StepsStandOnMidnightOfTheEpoch)
{
    for (const char *origin : {"2021-05-06T10:20:31", "1965-03-04T11:12:13"}) {
        const TimeScale scale(at(origin), 40 * second, 10); // 1 hour steps
        for (const auto &tick : Tsb::timeAxis(scale, 500, 0, {}).ticks) {
            const std::int64_t time = ticksOf(scale.tickAt(tick.x));
            const std::int64_t off = ((time % (3600 * second)) + 3600 * second) % (3600 * second);
            EXPECT_TRUE(off <= 40 * second || off >= 3560 * second) << origin << " " << tick.x;
        }
    }
}

TEST(TimeAxis, CursorLabels)
{
    const RecordTime time = at("2021-05-06T10:20:30");
    const struct {
        std::int64_t ticksPerPixel, offset;
        QString lower;
    } cases[] = {{1, 0, "10:20:30"},
                 {59 * second, 3600, "11:20:30"},
                 {60 * second, 0, "10:20"},
                 {3600 * second, 0, "10:00"},
                 {86400 * second, 0, ""}};
    for (const auto &c : cases) {
        const auto labels = Tsb::timeCursorLabels({time, c.ticksPerPixel, 50}, 50, c.offset);
        EXPECT_EQ(labels.lower, c.lower);
        EXPECT_EQ(labels.upper, QStringLiteral("2021-05-06"));
    }
}

TEST(TimeAxis, GroupTextsWiderThanTheirCells)
{
    const struct {
        int left, right, textWidth;
        GroupPlacing placing;
    } cases[] = {{10, 60, 50, GroupPlacing::Centred},
                 {10, 60, 51, GroupPlacing::Omitted},
                 {0, 60, 80, GroupPlacing::Right},
                 {460, 500, 80, GroupPlacing::Left},
                 {0, 500, 900, GroupPlacing::Centred}};
    for (const auto &c : cases)
        EXPECT_EQ(Tsb::groupPlacing({c.left, c.right, {}}, 500, c.textWidth), c.placing) << c.left << " " << c.right;
}

} // namespace
