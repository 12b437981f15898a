#include "util/timeformat.h"
#include "util/timeparse.h"

#include "support/expected.h"

#include <QLocale>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>

namespace {

struct Parsed {
    std::int64_t ticks;
    std::int64_t offset; ///< 9999 where it was left as it was
};
bool operator==(Parsed a, Parsed b)
{
    return a.ticks == b.ticks && a.offset == b.offset;
}
std::ostream &operator<<(std::ostream &out, Parsed parsed)
{
    return out << parsed.ticks << " / " << parsed.offset;
}

template<typename... Text>
Parsed parsedFrom(Text... text)
{
    RecordTime time = recordTimeFromTicks(1);
    std::int64_t offset = 9999;
    parseTime(text..., &time, &offset);
    return {ticksOf(time), offset};
}

Parsed parsedBytes(const QByteArray &text)
{
    return parsedFrom(text.constData(), text.size());
}

/// What the file form means, put plainly: fields by QString::toInt, the calendar by QDate.
Parsed plainlyParsed(const QString &text)
{
    const Parsed failure{0, 9999};
    bool good = true, ok = true;
    const auto field = [&](int column, int width) {
        const int number = text.mid(column, width).toInt(&ok);
        good = good && ok;
        return number;
    };
    const int year = field(0, 4), month = field(5, 2), day = field(8, 2);
    const int hour = field(11, 2), minute = field(14, 2), second = field(17, 2);
    int digits = 0;
    while (20 + digits < text.size() && text[20 + digits] >= QChar('0') && text[20 + digits] <= QChar('9'))
        ++digits;
    const qint64 nanoseconds = text.mid(20, digits).leftJustified(9, '0', true).toLongLong();
    const int zone = 20 + digits;
    int offset = 0;
    if (text.size() == zone + 6 && (text[zone] == '+' || text[zone] == '-') && text[zone + 3] == ':') {
        offset = field(zone + 1, 2) * 3600 + field(zone + 4, 2) * 60;
        if (text[zone] == '-')
            offset = -offset;
    }
    // QDate knows no year 0: its -1 is the year before 1.
    const QDate date(year > 0 ? year : year - 1, month, day);
    if (!good || !date.isValid())
        return failure;
    const qint64 days = date.toJulianDay() - QDate(1970, 1, 1).toJulianDay();
    return {(days * 86400 + hour * 3600 + minute * 60 + second - offset) * 10'000'000 + nanoseconds / 100, offset};
}

constexpr std::int64_t seconds2019 = 1568290612; // 2019-09-12 12:16:52

/// The first line as a time; what follows it as a format, but for the names of days and months, which are the user's.
TEST(ParseTime, FilesOfTheCorpusComeToWhatIsExpectedOfThem)
{
    expectCorpus("time", [](const QString &path) {
        const QByteArray text = contentOf(path).split('\n').value(0);
        const Parsed parsed = parsedBytes(text);
        QString format = QString::fromUtf8(contentOf(path).mid(text.size() + 1));
        format.remove(QRegularExpression("%[aAbB]"));
        return QString("ticks %1, offset %2\n").arg(parsed.ticks).arg(parsed.offset) +
               timeToString(recordTimeFromTicks(parsed.ticks), parsed.offset, format) + '\n';
    });
}

TEST(ParseTime, AFieldTakesWhatToIntTakes)
{
    const QString whole = "2019-09-12 12:16:52";
    for (uint c = 0; c < 0x10000; ++c) {
        for (const auto &[column, width] : {std::pair(8, 2), std::pair(0, 4)}) {
            for (int place = 0; place < width; ++place) {
                QString text = whole;
                text[column + place] = QChar(c);
                ASSERT_EQ(parsedFrom(text), plainlyParsed(text)) << c << " at " << column + place;
                if (c < 0xd800 || c > 0xdfff) {
                    ASSERT_EQ(parsedBytes(text.toUtf8()), plainlyParsed(text)) << c << " at " << column + place;
                }
            }
        }
    }
}

TEST(ParseTime, AgreesWithThePlainWayOnDamagedTexts)
{
    std::mt19937 random(7);
    const QByteArray letters("0123456789 +-:.\t,eE\0x/", 22);
    const QByteArray starts[] = {"2019-09-12 12:16:52", "2019-09-12 12:16:52.123456+02:00",
                                 "0000-01-01 00:00:00.1-99:99", "-999-12-31 23:59:59.1234567890123"};
    int good = 0;
    for (int round = 0; round < 60000; ++round) {
        QByteArray text = starts[random() % 4];
        for (unsigned i = random() % 4; i > 0; --i)
            text[int(random() % unsigned(text.size()))] = letters[int(random() % unsigned(letters.size()))];
        if (random() % 8 == 0)
            text.truncate(int(random() % unsigned(text.size())));
        const Parsed expected = plainlyParsed(QString::fromLatin1(text.constData(), text.size()));
        good += expected.offset != 9999;
        ASSERT_EQ(parsedBytes(text), expected) << text.toStdString();
    }
    EXPECT_GT(good, 10000);
}

TEST(ParseLocalTime, TakesWhatPeopleType)
{
    const std::int64_t day = 18'000 * ticksPerDay, hour = 3600 * ticksPerSecond; // 2019-04-14
    const struct {
        const char *text;
        std::int64_t ticks; ///< 0: refused
    } cases[] = {
        {"2019-04-14", day - 2 * hour},
        {"  2019-04-14\n", day - 2 * hour},
        {"2019-04-14 00:00", day - 2 * hour},
        {"2019-04-14 12:30:59", day + 10 * hour + 1859 * ticksPerSecond},
        {"2019-04-14T12:30:59.25", day + 10 * hour + 1859 * ticksPerSecond + ticksPerSecond / 4},
        {"2019-04-14 12:00:00.000001+05:30", day + 6 * hour + hour / 2 + 10},
        {"2019-04-14 12:00 -01:00", day + 13 * hour},
        {"2019-04-14 12:00:00Z", day + 12 * hour},
        {"1970-01-01 02:00", 0}, // the moment that stands for none
        {"2019-02-29", 0},
        {"2019-13-01", 0},
        {"2019-04-14 24:00", 0},
        {"2019-04-14 12:60", 0},
        {"2019-04-14 12", 0},
        {"2019/04/14", 0},
        {"19-04-14", 0},
        {"2019-04-14 noon", 0},
        {"-2019-04-14", 0},
        {"", 0},
    };
    for (const auto &c : cases) {
        RecordTime time = recordTimeFromTicks(7);
        EXPECT_EQ(parseLocalTime(QString::fromUtf8(c.text), 7200, &time), c.ticks != 0) << c.text;
        EXPECT_EQ(ticksOf(time), c.ticks != 0 ? c.ticks : 7) << c.text;
    }
    const RecordTime shown = recordTimeFromTicks(day + 123'456'780);
    RecordTime time;
    EXPECT_TRUE(parseLocalTime(timeToString(shown), 0, &time));
    EXPECT_EQ(time, shown);
}

TEST(TimeToString, NamesAndFractions)
{
    const RecordTime time = recordTimeFromTicks(seconds2019 * ticksPerSecond);
    EXPECT_EQ(timeToString(time, "%a %A %b %B"),
              QStringList({QLocale::system().dayName(4, QLocale::ShortFormat), QLocale::system().dayName(4),
                           QLocale::system().monthName(9, QLocale::ShortFormat), QLocale::system().monthName(9)})
                  .join(' '));
    EXPECT_EQ(timeToString(recordTimeFromTicks(500 * ticksPerMillisecond / 1000), "%f"), "500000")
        << "shifted on purpose";
    EXPECT_EQ(timeToString(recordTimeFromTicks(2), "%f %s"), "000200 00.000000");
}

TEST(TimeToString, Limits)
{
    EXPECT_EQ(timeToString(RecordTime()), "1970-01-01 00:00:00.000000");
    EXPECT_EQ(timeToString(RecordTime(), "%z"), "+00:00");
    EXPECT_EQ(timeToString(recordTimeFromTicks(-1)), "<invalid time>");
    EXPECT_EQ(timeToString(earliestRecordTime, "%Y"), "<invalid time>");
    EXPECT_EQ(timeToString(latestRecordTime, "%Y-%m-%d %H:%M:%9s"), "31197-09-14 02:48:05.477580700");
    QByteArray text = "x";
    appendTimeText(text, earliestRecordTime);
    appendTimeText(text, latestRecordTime);
    EXPECT_EQ(text, "x<invalid time>31197-09-14 02:48:05.477580");
}

TEST(TimeToString, AgreesWithQDateTimeAndReadsBack)
{
    std::mt19937_64 random(11);
    QByteArray appended;
    for (int round = 0; round < 20000; ++round) {
        const std::int64_t milliseconds = std::int64_t(random() % (8030ull * 366 * 86400000));
        const RecordTime time = recordTimeFromTicks(milliseconds * ticksPerMillisecond);
        const QDateTime known = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
        const QString expected = known.toString("yyyy-MM-dd hh:mm:ss.zzz") + "000";
        ASSERT_EQ(timeToString(time), expected);
        ASSERT_EQ(
            timeToString(time, "%Y-%m-%d %H:%M:%s %u %j"),
            expected +
                QString(" %1 %2").arg(known.date().dayOfWeek()).arg(known.date().dayOfYear() - 1, 3, 10, QChar('0')));
        appended.clear();
        appendTimeText(appended, time);
        ASSERT_EQ(QString::fromLatin1(appended), expected);
        if (known.date().year() > 9999)
            continue;
        ASSERT_EQ(parsedBytes(appended), (Parsed{ticksOf(time), 0}));
    }
}

TEST(UtcOffset, Text)
{
    EXPECT_EQ(utcOffsetToString(0), "");
    EXPECT_EQ(utcOffsetToString(7200), "+02:00");
    EXPECT_EQ(utcOffsetToString(-5400), "-01:30");
    EXPECT_EQ(utcOffsetToString(-30), "-00:00");
    EXPECT_EQ(utcOffsetToString(36059), "+10:00");
    EXPECT_EQ(utcOffsetToString(std::numeric_limits<std::int64_t>::min()), "-2562047788015215:30");
}

TEST(UtcOffset, OfTheMachineCountsNoDaylightSaving)
{
    const QByteArray old = qgetenv("TZ");
    qputenv("TZ", "Europe/Berlin");
    for (const char *day : {"2019-01-15 12:00:00", "2019-07-15 12:00:00"}) {
        RecordTime time;
        std::int64_t offset = 0;
        parseTime(QString(day), &time, &offset);
        EXPECT_EQ(localUtcOffset(time), 3600) << day;
    }
    EXPECT_EQ(localUtcOffset(recordTimeFromTicks(-1)), 0);
    qputenv("TZ", "America/Caracas");
    EXPECT_EQ(localUtcOffset(recordTimeFromTicks(seconds2019 * ticksPerSecond)), -14400);
    if (old.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", old);
}

TEST(Calendar, AgreesWithQDate)
{
    const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    for (std::int64_t days = -800000; days < 3000000; days += 13) {
        const QDate known = QDate::fromJulianDay(epoch + days);
        const CivilDate date = civilFromDays(days);
        ASSERT_EQ(QDate(date.year > 0 ? date.year : date.year - 1, date.month, date.day), known) << days;
        ASSERT_EQ(daysFromCivil(date.year, date.month, date.day), days);
        ASSERT_EQ(weekdayFromDays(days), known.dayOfWeek());
        ASSERT_EQ(daysInMonth(date), known.daysInMonth());
    }
    EXPECT_FALSE(isValidDate({-32768, 1, 1}));
    EXPECT_TRUE(isValidDate({-32767, 1, 1}));
    EXPECT_FALSE(isValidDate({2019, 13, 1}));
    EXPECT_EQ(daysInMonth({2019, 200, 1}), 0);
}

} // namespace
