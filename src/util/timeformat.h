#pragma once

#include "util/calendar.h"
#include "util/recordtime.h"

#include <QByteArray>
#include <QString>

#include <cstdint>

/// Printing of record times. Calendar arithmetic is the proleptic Gregorian calendar without leap seconds.

/// Format codes are %Y %m %d %H %M %S %j %u %a %A %b %B %s %f %z and %%; %s is the seconds with a fraction of six
/// digits, or of the number of digits in its width ("%3s"). A negative time gives "<invalid time>".
QString timeToString(RecordTime time);
QString timeToString(RecordTime time, const QString &format);
/// The offset, in seconds east of Greenwich, reaches only %z; a caller that wants local text passes localTime().
QString timeToString(RecordTime time, std::int64_t utcOffset, const QString &format);

/// "" for 0, else a sign, two digits of hours, ":" and two of minutes, such as "+02:00".
QString utcOffsetToString(std::int64_t utcOffset);
/// The machine's zone offset in seconds at that time, daylight saving not counted; 0 for negative times.
std::int64_t localUtcOffset(RecordTime time);

/// Writes rows' times fast: "%Y-%m-%d %H:%M:%s" of many times in a row, each day broken down once in each thread.
/// Appends the text of timeToString(time) to `out`.
void appendTimeText(QByteArray &out, RecordTime time);
