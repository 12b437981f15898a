#include "datafiles/reading/commentfile.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/linescanner.h"
#include "records/commentlimits.h"
#include "util/calendar.h"
#include "util/filenamepart.h"
#include "util/timeparse.h"

#include <QDir>
#include <QRegularExpression>

#include <array>
#include <cstring>
#include <limits>

namespace {

constexpr char magic[] = "#Record comments";
constexpr std::size_t longestLine = CommentLimits::lineBytes;

struct Field {
    const char *begin;
    const char *end;
};
using Fields = std::array<Field, 4>;

/// False for a line of fewer fields. Those behind the last are ignored.
bool splitLine(const char *line, std::size_t size, Fields *fields)
{
    const char *const end = line + size;
    for (Field &field : *fields) {
        if (!line)
            return false;
        const auto *tab = static_cast<const char *>(std::memchr(line, '\t', std::size_t(end - line)));
        field = {line, tab ? tab : end};
        line = tab ? tab + 1 : nullptr;
    }
    return true;
}

/// False where the text is no time. The moment 0 is one, which only the offset tells from a failure.
bool readTime(const Field &field, RecordTime *time, std::int64_t *utcOffset)
{
    constexpr std::int64_t unread = std::numeric_limits<std::int64_t>::min();
    *utcOffset = unread;
    parseTime(field.begin, int(field.end - field.begin), time, utcOffset);
    return *utcOffset != unread;
}

QChar unescaped(QChar letter)
{
    static constexpr char letters[] = "abtvfnr", characters[] = "\a\b\t\v\f\n\r";
    const char *const found =
        letter.unicode() < 128 && !letter.isNull() ? std::strchr(letters, letter.toLatin1()) : nullptr;
    return found ? QChar(QLatin1Char(characters[found - letters])) : letter;
}

/// A backslash before any other character than those of an escape is dropped.
QString decodedText(const Field &field)
{
    // With the tab before the field: at the very front of a text a zero-width blank would be taken for a byte order
    // mark.
    const QString text =
        QString::fromUtf8(field.begin - 1, int(field.end - field.begin) + 1).midRef(1).trimmed().toString();
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('\\') && i + 1 < text.size())
            out += unescaped(text[++i]);
        else
            out += text[i];
    }
    return out;
}

/// The day that a name begins with, counted from 1970-01-01; nothing if it begins with no date.
std::optional<std::int64_t> dayOfName(const QString &name)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{4})-?([0-9]{2})-?([0-9]{2})(?![0-9])"));
    const QRegularExpressionMatch match = form.match(name);
    const CivilDate date{std::int16_t(match.capturedRef(1).toInt()), std::uint8_t(match.capturedRef(2).toInt()),
                         std::uint8_t(match.capturedRef(3).toInt())};
    if (!match.hasMatch() || !isValidDate(date))
        return {};
    return daysFromCivil(date.year, date.month, date.day);
}

std::int64_t dayOf(RecordTime time)
{
    return ticksOf(time) / ticksPerDay - (ticksOf(time) % ticksPerDay < 0);
}

} // namespace

std::optional<CommentLine> parseCommentLine(const char *bytes, std::size_t size)
{
    Fields fields;
    CommentLine line;
    std::int64_t endUtcOffset = 0;
    if (size > longestLine || !splitLine(bytes, size, &fields) ||
        !readTime(fields[0], &line.begin, &line.beginUtcOffset) || !readTime(fields[1], &line.end, &endUtcOffset))
        return {};
    line.opmode = QString::fromUtf8(fields[2].begin, int(fields[2].end - fields[2].begin));
    line.text = decodedText(fields[3]);
    return line;
}

void readCommentFile(const QString &path, const std::function<void(const CommentLine &line)> &take)
{
    using Found = LineScanner::Found;
    LineScanner lines(longestLine);
    std::int64_t bytesRead = 0;
    lines.setByteCounter([&bytesRead](std::int64_t bytes) { bytesRead += bytes; });
    QByteArray bytes;
    if (!lines.open(path))
        return;
    try {
        if (lines.next(&bytes) != Found::line || !bytes.startsWith(magic))
            return;
        for (Found found = lines.next(&bytes); found != Found::end && bytesRead < CommentLimits::fileBytes;
             found = lines.next(&bytes)) {
            if (found == Found::tooLong)
                continue;
            if (const auto line = parseCommentLine(bytes.constData(), std::size_t(bytes.size())))
                take(*line);
        }
    } catch (const FileReaderError &) {
        // The device failed: what was read until then stands.
    }
}

QStringList findCommentFiles(const QString &folder, const QString &variant, RecordTime begin, RecordTime end)
{
    const QString ending = QLatin1Char('-') + fileNamePart(variant) + QStringLiteral(".comments");
    const std::int64_t firstDay = dayOf(begin) - 1, lastDay = dayOf(end) + 1;
    const QDir place(folder);
    QStringList files;
    // The listing's own patterns would ignore case, and read brackets in the variant.
    for (const QString &name : place.entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
        const auto day = dayOfName(name);
        if (name.endsWith(ending) && (!day || (firstDay <= *day && *day <= lastDay)))
            files.append(place.filePath(name));
    }
    return files;
}
