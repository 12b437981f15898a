#pragma once

#include "util/recordtime.h"

#include <QString>

#include <cstdint>

/// Reads "2019-09-12 12:16:52.123456+02:00" by position: the fraction and the zone may be left out. Every failure gives
/// the time 0 and leaves the offset as it is, so callers set it to 0 first. `size` bytes of UTF-8 at `text`, no NUL
/// needed.
void parseTime(const char *text, int size, RecordTime *time, std::int64_t *utcOffset);
void parseTime(const QString &text, RecordTime *time, std::int64_t *utcOffset);

/// Reads a local time as a person types it: "2019-09-12", "2019-09-12 12:16", the default format, with a "T" for the
/// blank too; a zone behind the time of day overrides the offset. Stricter than parseTime: every separator and every
/// range counts. False, and the time left alone, for anything else, and for the moment 0, which stands for no time.
bool parseLocalTime(const QString &text, std::int64_t utcOffset, RecordTime *time);
