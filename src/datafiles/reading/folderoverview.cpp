#include "datafiles/reading/folderoverview.h"

#include "datafiles/parsing/filereadererror.h"
#include "datafiles/reading/datafinder.h"
#include "datafiles/reading/headerlines.h"
#include "util/regularfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr std::int64_t firstChunk = 16 << 10; ///< holds nearly every header
constexpr std::int64_t mostLookedAt = 16 << 20;
constexpr std::int64_t blockOfRead = 1 << 20; ///< that a read has counted when it comes to the first header
constexpr std::size_t mostRemembered = 64 << 20;

/// Walks over the lines of a text whose last line may be cut off.
struct Lines {
    const QByteArray &text;
    int next = 0;

    /// False at the end, and for a line without an end.
    bool take(QByteArray *line)
    {
        const int end = text.indexOf('\n', next);
        if (end < 0)
            return false;
        *line = QByteArray::fromRawData(text.constData() + next, end - next);
        next = end + 1;
        return true;
    }
};

/// The bytes of the first header, its column row included. Empty if there is none as far as the text goes, and then
/// `isCut` tells whether more of the file could hold the rest of one.
QByteArray firstHeader(const QByteArray &text, bool *isCut)
{
    Lines lines{text};
    QByteArray line;
    int begin = -1;
    *isCut = false;
    for (int at = 0; lines.take(&line); at = lines.next) {
        if (HeaderLines::opens(line))
            begin = at;
        else if (begin >= 0 && !line.startsWith('#'))
            return text.mid(begin, lines.next - begin);
    }
    *isCut = begin >= 0 || lines.next == 0;
    return {};
}

QByteArray withoutReturns(QByteArray line)
{
    return line.contains('\r') ? line.replace("\r", "") : line;
}

std::shared_ptr<Datastore> noRecords()
{
    return std::make_shared<Datastore>();
}

} // namespace

FolderSurvey::FolderSurvey() : m_state(noRecords(), earliestRecordTime, latestRecordTime) {}

void FolderSurvey::add(const QString &path)
{
    const QFileInfo file(path);
    ++m_overview.files;
    m_overview.bytes += file.size();
    const QDate day = dayOfDataFile(file.fileName());
    if (day.isValid()) {
        m_days.insert(day);
        m_overview.firstDay = m_overview.firstDay.isValid() ? std::min(m_overview.firstDay, day) : day;
        m_overview.lastDay = m_overview.lastDay.isValid() ? std::max(m_overview.lastDay, day) : day;
    }
    if (!readHeader(path, file.size()))
        ++m_overview.withoutHeader;
}

bool FolderSurvey::readHeader(const QString &path, std::int64_t size)
{
    QFile file(path);
    if (!openRegularFile(file))
        return false;
    m_state.budget.addBytesRead(std::min(size, blockOfRead));
    QByteArray text;
    QByteArray header;
    bool isCut = true;
    for (std::int64_t most = firstChunk; isCut && text.size() < size && most <= mostLookedAt; most *= 4) {
        text += file.read(most - text.size());
        if (text.isEmpty())
            return false;
        header = firstHeader(text, &isCut);
    }
    return !header.isEmpty() && (m_understood.contains(header) || understand(header));
}

/// Takes into the state what the header tells.
bool FolderSurvey::understand(const QByteArray &header)
{
    HeaderLines gathered;
    Lines lines{header};
    QByteArray line;
    lines.take(&line);
    gathered.start(withoutReturns(line), 1);
    while (lines.take(&line) && line.startsWith('#'))
        gathered.add(withoutReturns(line));
    try {
        gathered.makeReader(withoutReturns(line), &m_state);
    } catch (const FileReaderError &) {
        return false;
    }
    m_understoodBytes += std::size_t(header.size());
    if (m_understoodBytes <= mostRemembered)
        m_understood.insert(header);
    return true;
}

FolderOverview FolderSurvey::overview() const
{
    FolderOverview overview = m_overview;
    overview.days = m_days.size();
    for (const Opmode &mode : qAsConst(m_state.metadata->opmodes))
        overview.modes.append(mode.name);
    for (const auto &variable : qAsConst(m_state.metadata->variables))
        overview.variables.append(variable->name);
    overview.electrometers = m_state.metadata->totalElectrometers;
    return overview;
}
