#include "fuzzfile.h"

#include "datafiles/reading/commentfile.h"
#include "util/textescape.h"

#include <algorithm>

namespace {

/// What becomes of a comment that is written and read.
QString readBack(const QString &comment)
{
    const QByteArray line =
        "2019-09-12 12:16:52.5\t2019-09-12 12:17:52.5\tions\t" + escapeTextNoQuote(comment).toUtf8();
    require(!line.contains('\n') && !line.contains('\r'), "a comment is one line");
    const auto read = parseCommentLine(line.constData(), std::size_t(line.size()));
    require(read.has_value(), "a written line is sound");
    return read->text;
}

} // namespace

/// The bytes are a comment file.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto lineFeeds = std::count(data, data + size, '\n');
    std::ptrdiff_t lines = 0;
    readCommentFile(fuzzFile(data, size), [&](const CommentLine &line) {
        require(++lines <= lineFeeds, "the header is no comment");
        require(std::size_t(line.text.size()) <= size, "a comment doesn't swell");
        const QString trimmed = line.text.trimmed();
        require(readBack(trimmed) == trimmed, "what has no outer blanks comes back");
        require(readBack(readBack(line.text)) == readBack(line.text), "outer blanks are lost once");
    });
    parseCommentLine(reinterpret_cast<const char *>(data), size);
    return 0;
}
