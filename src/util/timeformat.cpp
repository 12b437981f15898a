#include "util/timeformat.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <cstring>

namespace {

const char *const invalidTime = "<invalid time>";

/// A time that isn't negative, broken down in UTC.
struct BrokenDown {
    explicit BrokenDown(RecordTime time)
        : nanoseconds(int(ticksOf(time) % ticksPerSecond) * 100), days(ticksOf(time) / ticksPerDay),
          secondOfDay(int(ticksOf(time) / ticksPerSecond % 86400)), date(civilFromDays(days))
    {
    }

    int hour() const { return secondOfDay / 3600; }
    int minute() const { return secondOfDay / 60 % 60; }
    int second() const { return secondOfDay % 60; }
    int dayOfYear() const { return int(days - daysFromCivil(date.year, 1, 1)); } ///< from 0

    int nanoseconds;
    std::int64_t days;
    int secondOfDay;
    CivilDate date;
};

QString padded(std::int64_t number, int digits)
{
    return QString::number(number).rightJustified(digits, QLatin1Char('0'));
}

QString offsetText(std::int64_t utcOffset)
{
    const std::uint64_t size = utcOffset < 0 ? 0 - std::uint64_t(utcOffset) : std::uint64_t(utcOffset);
    return (utcOffset < 0 ? QLatin1Char('-') : QLatin1Char('+')) + padded(std::int64_t(size / 3600), 2) +
           QLatin1Char(':') + padded(std::int64_t(size / 60 % 60), 2);
}

/// False, and nothing appended, for a letter that is no code. A negative width means that none was given.
bool appendCode(QString &out, QChar code, int width, const BrokenDown &time, std::int64_t utcOffset)
{
    switch (code.unicode()) {
    case '%':
        out += code;
        return true;
    case 'Y':
        out += QString::number(time.date.year);
        return true;
    case 'm':
        out += padded(time.date.month, 2);
        return true;
    case 'd':
        out += padded(time.date.day, 2);
        return true;
    case 'H':
        out += padded(time.hour(), 2);
        return true;
    case 'M':
        out += padded(time.minute(), 2);
        return true;
    case 'S':
        out += padded(time.second(), 2);
        return true;
    case 'j':
        out += padded(time.dayOfYear(), 3);
        return true;
    case 'u':
        out += QString::number(weekdayFromDays(time.days));
        return true;
    case 'a':
        out += QLocale::system().dayName(weekdayFromDays(time.days), QLocale::ShortFormat);
        return true;
    case 'A':
        out += QLocale::system().dayName(weekdayFromDays(time.days), QLocale::LongFormat);
        return true;
    case 'b':
        out += QLocale::system().monthName(time.date.month, QLocale::ShortFormat);
        return true;
    case 'B':
        out += QLocale::system().monthName(time.date.month, QLocale::LongFormat);
        return true;
    case 's': // cut, never rounded
        out += padded(time.second(), 2) + QLatin1Char('.') + padded(time.nanoseconds, 9).left(width < 0 ? 6 : width);
        return true;
    case 'f': // justified to six digits, not nine, so that small fractions shift: files have been written like that
        out += padded(time.nanoseconds, 6).left(6);
        return true;
    case 'z':
        out += offsetText(utcOffset);
        return true;
    default:
        return false;
    }
}

/// The first eleven characters of the times of one day.
struct DayText {
    std::int64_t days = -1;
    int size = 0;
    char text[16];
};

char *writePair(char *to, int number)
{
    *to++ = char('0' + number / 10);
    *to++ = char('0' + number % 10);
    return to;
}

const DayText &dayText(std::int64_t days)
{
    static thread_local DayText cached;
    if (cached.days != days) {
        const CivilDate date = civilFromDays(days);
        const QByteArray year = QByteArray::number(date.year);
        char *to = std::copy(year.begin(), year.end(), cached.text);
        *to++ = '-';
        to = writePair(to, date.month);
        *to++ = '-';
        to = writePair(to, date.day);
        *to++ = ' ';
        cached.size = int(to - cached.text);
        cached.days = days;
    }
    return cached;
}

/// Writes the default format of a time that isn't negative: at most 32 characters.
int writeTimeText(char *out, RecordTime time)
{
    const std::int64_t ticks = ticksOf(time);
    const DayText &day = dayText(ticks / ticksPerDay);
    std::memcpy(out, day.text, sizeof day.text);
    char *to = out + day.size;
    const std::int64_t tickOfDay = ticks % ticksPerDay;
    const int second = int(tickOfDay / ticksPerSecond);
    int microseconds = int(tickOfDay % ticksPerSecond) / 10;
    to = writePair(to, second / 3600);
    *to++ = ':';
    to = writePair(to, second / 60 % 60);
    *to++ = ':';
    to = writePair(to, second % 60);
    *to++ = '.';
    to = writePair(to, microseconds / 10000);
    to = writePair(to, microseconds / 100 % 100);
    to = writePair(to, microseconds % 100);
    return int(to - out);
}

} // namespace

QString timeToString(RecordTime time)
{
    if (ticksOf(time) < 0)
        return QLatin1String(invalidTime);
    char text[32];
    return QString::fromLatin1(text, writeTimeText(text, time));
}

QString timeToString(RecordTime time, const QString &format)
{
    return timeToString(time, 0, format);
}

QString timeToString(RecordTime time, std::int64_t utcOffset, const QString &format)
{
    if (ticksOf(time) < 0)
        return QLatin1String(invalidTime);
    const BrokenDown brokenDown(time);
    QString out;
    out.reserve(format.size() + 16);
    int i = 0;
    while (i < format.size()) {
        const int start = i++;
        if (format[start] != QLatin1Char('%')) {
            out += format[start];
            continue;
        }
        int width = -1;
        for (; i < format.size() && format[i] >= QLatin1Char('0') && format[i] <= QLatin1Char('9'); ++i)
            width = std::min(1000, std::max(width, 0) * 10 + (format[i].unicode() - '0'));
        if (i < format.size() && appendCode(out, format[i], width, brokenDown, utcOffset))
            ++i;
        else
            out += format.midRef(start, i++ - start + 1);
    }
    return out;
}

QString utcOffsetToString(std::int64_t utcOffset)
{
    return utcOffset == 0 ? QString() : offsetText(utcOffset);
}

std::int64_t localUtcOffset(RecordTime time)
{
    if (ticksOf(time) < 0)
        return 0;
    const QTimeZone zone = QTimeZone::systemTimeZone();
    if (!zone.isValid())
        return 0;
    return zone.standardTimeOffset(QDateTime::fromMSecsSinceEpoch(ticksOf(time) / ticksPerMillisecond, Qt::UTC));
}

void appendTimeText(QByteArray &out, RecordTime time)
{
    if (ticksOf(time) < 0) {
        out += invalidTime;
        return;
    }
    char text[32];
    out.append(text, writeTimeText(text, time));
}
