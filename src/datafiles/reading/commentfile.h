#pragma once

#include "util/recordtime.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <optional>

/// Comment files hold the comments on the records of one day and averaging variant.

/// One comment and the times of its record.
struct CommentLine {
    RecordTime begin{};
    RecordTime end{};                ///< missing if the record has none
    std::int64_t beginUtcOffset = 0; ///< seconds east of Greenwich
    QString opmode;                  ///< the name of the operating mode
    QString text;
};

/// Reads one line of UTF-8, which has no line feed. Nothing if it lacks a field, or if its times can't be read. What
/// isn't UTF-8 becomes the replacement character.
std::optional<CommentLine> parseCommentLine(const char *bytes, std::size_t size);

/// Calls take(line) for each sound line of the file, in order. A file that can't be read, or lacks the header of its
/// kind, has none. A line above 1 MB is passed over, as is all beyond the first 256 MB of a file.
void readCommentFile(const QString &path, const std::function<void(const CommentLine &line)> &take);

/// The paths of a folder's comment files for the averaging variant, by name, of the days from the one before `begin` to
/// the one behind `end`. A file whose name doesn't begin with a date counts for every day.
QStringList findCommentFiles(const QString &folder, const QString &variant, RecordTime begin, RecordTime end);
