#include "datafiles/reading/folderfollower.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/linescanner.h"

#include <QDir>

#include <algorithm>

namespace {

constexpr std::size_t mostMemory = std::size_t(32) << 20; // of the rows that are told at a time
constexpr int longestContext = 32 << 20;

/// The offset behind the last line feed between two offsets, or `from` if there is none. Negative if the device fails.
std::int64_t endOfLines(const DataFile &data, std::int64_t from, std::int64_t to)
{
    constexpr std::int64_t blockSize = 64 << 10;
    std::vector<char> bytes(std::size_t(std::min(blockSize, to - from)));
    for (std::int64_t end = to; end > from;) {
        const std::int64_t begin = std::max(from, end - blockSize);
        const std::int64_t got = data.read(begin, bytes.data(), std::size_t(end - begin));
        if (got < end - begin)
            return -1;
        const auto found = std::find(std::make_reverse_iterator(bytes.begin() + got), bytes.rend(), '\n');
        if (found != bytes.rend())
            return begin + (found.base() - bytes.begin());
        end = begin;
    }
    return from;
}

} // namespace

FolderFollower::FolderFollower(Settings settings) : m_settings(std::move(settings)), m_parser(m_rowForecasts)
{
    // Memory of this thread is not for records: a row's record would mostly turn out to be there already.
    for (RowForecast &forecast : m_rowForecasts) {
        forecast.newRecord = false;
        forecast.newNumbers = false;
    }
    for (const FileStretch &stretch : m_settings.stretches) {
        File &file = m_files[stretch.path];
        file.stretch = stretch;
        file.looked = stretch.end;
    }
}

FolderFollower::~FolderFollower() = default;

FolderFollower::Found FolderFollower::next(AppendedRows *rows)
{
    if (m_grown.empty()) {
        const Found found = look();
        if (found != Found::rows)
            return found;
    }
    const QString path = m_grown.front();
    File &file = m_files[path];
    const Found found = parse(path, file, rows);
    if (found == Found::lost)
        file.looked = file.stretch.end; // these rows are to be found again
    if (found != Found::rows || file.stretch.end >= file.looked)
        m_grown.pop_front();
    rows->isMoreFound = !m_grown.empty();
    return found;
}

FolderFollower::Found FolderFollower::look()
{
    QStringList paths = m_settings.findFiles();
    paths.sort(Qt::CaseSensitive);
    if (!QDir(m_settings.folder).exists() || (paths.isEmpty() && !m_files.empty()))
        return Found::lost;
    for (const auto &file : m_files)
        if (!file.second.stretch.path.isNull() && !std::binary_search(paths.begin(), paths.end(), file.first))
            return Found::contradiction;
    bool isOneReadable = paths.isEmpty();
    for (const QString &path : qAsConst(paths)) {
        const Found found = lookAt(path, m_files[path]);
        isOneReadable = isOneReadable || found != Found::lost;
        if (found == Found::contradiction)
            return found;
        if (found == Found::rows)
            m_grown.push_back(path);
    }
    if (!isOneReadable)
        return Found::lost;
    return m_grown.empty() ? Found::nothing : Found::rows;
}

/// Tells whether whole lines came. A file that is there, and can't be read now, is lost: another look may find it well.
FolderFollower::Found FolderFollower::lookAt(const QString &path, File &file)
{
    FileStretch &stretch = file.stretch;
    const bool isNew = stretch.path.isNull();
    const auto state = fileStateOf(path);
    if (!state)
        return Found::lost;
    if (!isNew && state->id == stretch.id && state->size == file.looked)
        return Found::nothing;
    if (!isNew && stretch.end < 0)
        return std::exchange(file.looked, state->size) < 0 ? Found::nothing : Found::contradiction;
    const auto data = DataFile::open(path);
    if (!data)
        return Found::lost;
    if (isNew) {
        stretch = {path, data->id()};
        stretch.readTo(*data, 0);
        file.isResumed = true; // nothing comes before its first line
    }
    const auto isThere = stretch.isIn(*data);
    if (!isThere)
        return Found::lost;
    if (data->size() < file.looked || !*isThere || !isHalfRowCompleted(*data, file))
        return Found::contradiction;
    if (data->size() == file.looked)
        return Found::nothing;
    const std::int64_t end = endOfLines(*data, file.looked, data->size());
    if (end < 0)
        return Found::lost;
    if (end == file.looked) {
        file.looked = data->size();
        return Found::nothing;
    }
    file.looked = end;
    return Found::rows;
}

/// The read may have taken a last line without a line feed for a row.
bool FolderFollower::endsInHalfRow(const File &file) const
{
    return !file.isResumed && !m_settings.areHalfRowsAwaited && file.stretch.end > 0 &&
           !file.stretch.tail.endsWith('\n');
}

/// False if a part of a row was taken for all of it.
bool FolderFollower::isHalfRowCompleted(const DataFile &data, const File &file) const
{
    if (!endsInHalfRow(file))
        return true;
    char next[2] = {};
    const std::int64_t got = data.read(file.stretch.end, next, 2);
    return got == 0 || next[0] == '\n' || (next[0] == '\r' && (got == 1 || next[1] == '\n'));
}

FolderFollower::Found FolderFollower::parse(const QString &path, File &file, AppendedRows *rows)
{
    const auto data = DataFile::open(path);
    const auto isThere = data ? file.stretch.isIn(*data) : std::nullopt;
    if (!isThere)
        return Found::lost;
    if (!*isThere)
        return Found::contradiction;
    *rows = AppendedRows();
    rows->path = path;
    if (!file.isResumed && !resume(data, file, rows))
        return Found::contradiction;
    const std::int64_t begin = file.stretch.end;
    const std::int64_t end = std::min(file.looked, begin + std::int64_t(m_settings.chunkBytes));
    rows->chunk = std::make_unique<ParsedChunk>(begin, end, false);
    FileForecast forecast;
    forecast.set(file.block);
    m_parser.parse(*rows->chunk, *data, forecast, m_settings.known, mostMemory);
    if (!rows->chunk->isWhole)
        return Found::contradiction;
    if (!rows->chunk->blocks.empty())
        file.block = rows->chunk->blocks.back();
    file.stretch.readTo(*data, std::max(end, rows->chunk->linesEnd()));
    return Found::rows;
}

/// Looks through a file from its beginning for the header and the flags that are in force at the end of what was read.
bool FolderFollower::resume(const std::shared_ptr<const DataFile> &data, File &file, AppendedRows *rows)
{
    FileStretch &stretch = file.stretch;
    const std::int64_t lineEnd = 2; // bytes, at most
    const std::int64_t end = endsInHalfRow(file)
                                 ? endOfLines(*data, stretch.end, std::min(stretch.end + lineEnd, file.looked))
                                 : endOfLines(*data, 0, stretch.end);
    if (end < 0)
        return false;
    LineScanner lines;
    lines.open(data, 0, end);
    QByteArray line, columnRow;
    HeaderLines header;
    bool inHeader = false;
    int size = 0;
    const auto keep = [&] {
        rows->context.append(QByteArray(line.constData(), line.size()));
        size += line.size();
    };
    try {
        for (LineScanner::Found found; (found = lines.next(&line)) != LineScanner::Found::end; ++rows->rowsBefore) {
            const bool isComment = found == LineScanner::Found::line && line.startsWith('#');
            if (isComment && HeaderLines::opens(line)) {
                rows->context.clear();
                size = 0;
                header.start(line, 0);
                inHeader = true;
                keep();
            } else if (isComment && !rows->context.isEmpty()) {
                if (inHeader)
                    header.add(line);
                keep();
            } else if (inHeader && found == LineScanner::Found::line) {
                columnRow = HeaderLines::isColumnRow(line) ? QByteArray(line.constData(), line.size()) : QByteArray();
                inHeader = false;
                keep();
            }
            if (size > longestContext)
                return false;
        }
    } catch (const FileReaderError &) {
        return false;
    }
    if (!rows->context.isEmpty() && !inHeader)
        file.block = std::make_shared<BlockForecast>(header, columnRow, *m_settings.known);
    rows->isResumed = true;
    file.isResumed = true;
    stretch.readTo(*data, end);
    return true;
}
