#pragma once

#include "util/calendar.h"
#include "util/recordtime.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

/// Printing and reading of record times. Calendar arithmetic is the proleptic Gregorian calendar without leap seconds.

/// Format codes are %Y %m %d %H %M %S %j %u %a %A %b %B %s %f %z and %%; %s is the seconds with a fraction of six
/// digits, or of the number of digits in its width ("%3s"). A negative time gives "<invalid time>".
QString timeToString(RecordTime time);
QString timeToString(RecordTime time, const QString &format);
/// The offset, in seconds east of Greenwich, reaches only %z; a caller that wants local text passes localTime().
QString timeToString(RecordTime time, std::int64_t utcOffset, const QString &format);

/// Reads "2019-09-12 12:16:52.123456+02:00" by position: the fraction and the zone may be left out. Every failure gives
/// the time 0 and leaves the offset as it is, so callers set it to 0 first. `size` bytes of UTF-8 at `text`, no NUL
/// needed.
void parseTime(const char *text, int size, RecordTime *time, std::int64_t *utcOffset);
void parseTime(const QString &text, RecordTime *time, std::int64_t *utcOffset);

/// Reads a local time as a person types it: "2019-09-12", "2019-09-12 12:16", the default format, with a "T" for the
/// blank too; a zone behind the time of day overrides the offset. Stricter than parseTime: every separator and every
/// range counts. False, and the time left alone, for anything else, and for the moment 0, which stands for no time.
bool parseLocalTime(const QString &text, std::int64_t utcOffset, RecordTime *time);

/// "" for 0, else a sign, two digits of hours, ":" and two of minutes, such as "+02:00".
QString utcOffsetToString(std::int64_t utcOffset);
/// The machine's zone offset in seconds at that time, daylight saving not counted; 0 for negative times.
std::int64_t localUtcOffset(RecordTime time);

/// Writes rows' times fast: "%Y-%m-%d %H:%M:%s" of many times in a row, each day broken down once in each thread.
/// Appends the text of timeToString(time) to `out`.
void appendTimeText(QByteArray &out, RecordTime time);
