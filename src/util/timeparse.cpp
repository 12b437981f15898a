#include "util/timeparse.h"

#include "util/calendar.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

// Each field obeys QString::toInt of its columns: blanks around it and a sign are taken, so " 9", "9 ", "+9" and "-1"
// are numbers. The day files' own times are plain digits, for which the first branch is all there is.

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isSpace(ushort c)
{
    return QChar(c).isSpace();
}

bool isMinus(char c)
{
    return c == '-';
}

bool isMinus(ushort c)
{
    return c == '-' || c == 0x2212; // the typographic minus, which QString::toInt takes too
}

template<typename Char>
bool isDigit(Char c)
{
    return c >= '0' && c <= '9';
}

template<typename Char>
bool readPaddedField(const Char *from, const Char *end, int *value)
{
    while (from < end && isSpace(*from))
        ++from;
    while (from < end && isSpace(end[-1]))
        --end;
    const bool negative = from < end && isMinus(*from);
    if (negative || (from < end && *from == '+'))
        ++from;
    if (from == end)
        return false;
    int number = 0;
    for (; from < end; ++from) {
        if (!isDigit(*from))
            return false;
        number = number * 10 + (*from - '0');
    }
    *value = negative ? -number : number;
    return true;
}

template<int width, typename Char>
bool readField(const Char *text, int size, int column, int *value)
{
    if (column + width <= size) {
        int number = 0;
        bool plain = true;
        for (int i = 0; i < width; ++i) {
            plain = plain && isDigit(text[column + i]);
            number = number * 10 + (text[column + i] - '0');
        }
        if (plain) {
            *value = number;
            return true;
        }
    }
    return column < size && readPaddedField(text + column, text + std::min(size, column + width), value);
}

template<typename Char>
std::int64_t readFraction(const Char *text, int size, int *digitCount)
{
    std::int64_t nanoseconds = 0;
    int count = 0;
    for (int column = 20; column < size && isDigit(text[column]); ++column, ++count) {
        if (count < 9)
            nanoseconds = nanoseconds * 10 + (text[column] - '0');
    }
    for (int i = count; i < 9; ++i)
        nanoseconds *= 10;
    *digitCount = count;
    return nanoseconds;
}

/// False if the zone's numbers are none. A text without a zone in the one place where it is looked for has the offset
/// 0.
template<typename Char>
bool readZone(const Char *text, int size, int fractionDigits, int *seconds)
{
    *seconds = 0;
    if (size != fractionDigits + 26)
        return true;
    const int zone = 20 + fractionDigits;
    if ((text[zone] != '+' && text[zone] != '-') || text[zone + 3] != ':')
        return true;
    int hours = 0, minutes = 0;
    if (!readField<2>(text, size, zone + 1, &hours) || !readField<2>(text, size, zone + 4, &minutes))
        return false;
    *seconds = (hours * 60 + minutes) * (text[zone] == '-' ? -60 : 60);
    return true;
}

template<typename Char>
void parse(const Char *text, int size, RecordTime *time, std::int64_t *utcOffset)
{
    *time = RecordTime();
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (!readField<4>(text, size, 0, &year) || !readField<2>(text, size, 5, &month) ||
        !readField<2>(text, size, 8, &day) || !readField<2>(text, size, 11, &hour) ||
        !readField<2>(text, size, 14, &minute) || !readField<2>(text, size, 17, &second))
        return;
    const CivilDate date{std::int16_t(year), std::uint8_t(month), std::uint8_t(day)};
    if (!isValidDate(date))
        return;
    int fractionDigits = 0;
    const std::int64_t nanoseconds = readFraction(text, size, &fractionDigits);
    int offset = 0;
    if (!readZone(text, size, fractionDigits, &offset))
        return;
    // Four-digit years stay far within 64 bits of ticks; nanoseconds would not.
    const std::int64_t days = daysFromCivil(date.year, date.month, date.day);
    const std::int64_t seconds = days * 86400 + hour * 3600 + minute * 60 + second - offset;
    *time = recordTimeFromTicks(seconds * ticksPerSecond + nanoseconds / 100);
    *utcOffset = offset;
}

} // namespace

void parseTime(const char *text, int size, RecordTime *time, std::int64_t *utcOffset)
{
    // Columns count characters, not bytes: what isn't ASCII takes the slow way.
    unsigned char bits = 0;
    for (int i = 0; i < size; ++i)
        bits |= static_cast<unsigned char>(text[i]);
    if (bits < 0x80)
        parse(text, size, time, utcOffset);
    else
        parseTime(QString::fromUtf8(text, size), time, utcOffset);
}

void parseTime(const QString &text, RecordTime *time, std::int64_t *utcOffset)
{
    parse(text.utf16(), text.size(), time, utcOffset);
}

bool parseLocalTime(const QString &text, std::int64_t utcOffset, RecordTime *time)
{
    static const QRegularExpression form(
        QStringLiteral("^([0-9]{4}-[0-9]{2}-[0-9]{2})"
                       "(?:[ T]+((?:[01][0-9]|2[0-3]):[0-5][0-9])(:[0-5][0-9](?:[.][0-9]{0,9})?)?"
                       "\\s*([+-](?:0[0-9]|1[0-8]):[0-5][0-9]|Z)?)?$"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch())
        return false;
    QString plain = match.captured(1) + QLatin1Char(' ') +
                    (match.captured(2).isEmpty() ? QStringLiteral("00:00") : match.captured(2)) +
                    (match.captured(3).isEmpty() ? QStringLiteral(":00") : match.captured(3));
    if (plain.size() == 19)
        plain += QLatin1Char('.'); // the zone is looked for behind a fraction
    const QString zone = match.captured(4);
    plain += zone == QLatin1String("Z") ? QStringLiteral("+00:00") : zone;
    RecordTime read;
    std::int64_t offset = 0;
    parseTime(plain, &read, &offset);
    if (isMissing(read))
        return false;
    if (zone.isEmpty())
        read = localTime(read, -utcOffset);
    if (isMissing(read))
        return false;
    *time = read;
    return true;
}
