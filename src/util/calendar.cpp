#include "util/calendar.h"

#include <array>

namespace {

// Years are counted from March in eras of 400 years, so that the leap day is the last of its year and all eras are
// alike.
constexpr std::int64_t daysPerEra = 146097;
constexpr std::int64_t daysFromMarchOfYear0To1970 = 719468;

std::int64_t floorDivided(std::int64_t a, std::int64_t b)
{
    return (a >= 0 ? a : a - (b - 1)) / b;
}

} // namespace

bool isLeapYear(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(CivilDate date)
{
    static constexpr std::array<int, 13> days{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (date.month > 12)
        return 0;
    return date.month == 2 && isLeapYear(date.year) ? 29 : days[date.month];
}

bool isValidDate(CivilDate date)
{
    return date.year != -32768 && date.month >= 1 && date.month <= 12 && date.day != 0 && date.day <= daysInMonth(date);
}

std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day)
{
    const std::int64_t marchYear = month <= 2 ? year - 1 : year;
    const std::int64_t era = floorDivided(marchYear, 400);
    const std::int64_t yearOfEra = marchYear - era * 400;
    const std::int64_t dayOfYear = (153 * ((month + 9) % 12) + 2) / 5 + std::int64_t(day) - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * daysPerEra + dayOfEra - daysFromMarchOfYear0To1970;
}

CivilDate civilFromDays(std::int64_t days)
{
    const std::int64_t shifted = days + daysFromMarchOfYear0To1970;
    const std::int64_t era = floorDivided(shifted, daysPerEra);
    const std::int64_t dayOfEra = shifted - era * daysPerEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    CivilDate date;
    date.day = std::uint8_t(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    date.month = std::uint8_t(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    date.year = std::int16_t(era * 400 + yearOfEra + (date.month <= 2 ? 1 : 0));
    return date;
}

int weekdayFromDays(std::int64_t days)
{
    const std::int64_t sinceMonday = (days + 3) % 7; // 1970-01-01 was a Thursday
    return int(sinceMonday < 0 ? sinceMonday + 8 : sinceMonday + 1);
}
