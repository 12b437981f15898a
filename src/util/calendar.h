#pragma once

#include <cstdint>

/// The proleptic Gregorian calendar, without leap seconds.

struct CivilDate {
    std::int16_t year = 1970;
    std::uint8_t month = 1;
    std::uint8_t day = 1;
};
bool isLeapYear(int year);
/// 0 for a month outside 1..12.
int daysInMonth(CivilDate date);
bool isValidDate(CivilDate date);

/// Days since 1970-01-01. The month is 1..12; the day may be any.
std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day);
/// The inverse of daysFromCivil, for days whose year fits 16 bits.
CivilDate civilFromDays(std::int64_t days);
/// 1 for Monday to 7 for Sunday.
int weekdayFromDays(std::int64_t days);
