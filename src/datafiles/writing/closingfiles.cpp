#include "datafiles/writing/closingfiles.h"

#include "util/filecalls.h"
#include "util/workteam.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace Spectrometer {

namespace {

constexpr std::size_t mostWaiting = 128; // of the descriptors that a process may have, often 1024
constexpr std::size_t atATime = 8;       // whose bytes go to the disk

} // namespace

ClosingFiles::ClosingFiles(Closed closed) : m_closed(std::move(closed))
{
    m_waiting.reserve(mostWaiting); // files are closed where no memory is left, too
}

ClosingFiles::~ClosingFiles()
{
    finish();
}

void ClosingFiles::add(const File &file, bool sync)
{
    if (!sync) {
        close(file);
        return;
    }
    m_waiting.push_back(file);
    if (m_waiting.size() == mostWaiting)
        finish();
}

void ClosingFiles::finish()
{
    if (m_waiting.empty())
        return;
    WorkTeam team(int(std::min(m_waiting.size(), atATime)));
    team.run(m_waiting.size(), [this](std::size_t i) {
        m_waiting[i].error = FileCalls::current().fsync(m_waiting[i].descriptor) == 0 ? 0 : errno;
    });
    while (!m_waiting.empty()) { // telling of one may throw
        const File file = m_waiting.front();
        m_waiting.erase(m_waiting.begin());
        close(file);
    }
}

void ClosingFiles::close(const File &file)
{
    QString failure;
    if (FileCalls::current().close(file.descriptor) != 0)
        failure =
            QStringLiteral("Failed to close file \"%1\": %2. Data was lost!").arg(file.name, qt_error_string(errno));
    if (file.error != 0 && !cannotSync(file.error))
        failure = QStringLiteral("Failed to bring file \"%1\" to the disk: %2. Data was lost!")
                      .arg(file.name, qt_error_string(file.error));
    m_closed(file, failure);
}

} // namespace Spectrometer
