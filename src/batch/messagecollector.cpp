#include "batch/messagecollector.h"

#include "terminal/progressline.h"

#include <cstdio>
#include <utility>

namespace Batch {

namespace {
MessageCollector *collecting = nullptr;
}

MessageCollector::MessageCollector(bool echo, Sources sources) : m_echo(echo), m_sources(sources)
{
    collecting = this;
    Log::RootLogger::instance().setFilter([this](const Log::Entry &entry) {
        take(entry);
        return false;
    });
}

MessageCollector::~MessageCollector()
{
    Log::RootLogger::instance().setFilter(nullptr);
    tellRepeats();
    collecting = nullptr;
}

void MessageCollector::take(const Log::Entry &entry)
{
    if (entry.level > Log::Warning)
        return;
    const bool ofToolkit = entry.source.startsWith(QLatin1String("qt."));
    if (m_sources == AllButToolkit && ofToolkit && entry.level == Log::Warning)
        return;
    if (m_entries.size() < most)
        m_entries.append(entry);
    else
        ++m_omitted;
    if (!m_echo)
        return;
    if (entry.message == m_last.message && entry.level == m_last.level && entry.source == m_last.source) {
        ++m_repeats;
        return;
    }
    tell(QStringLiteral("%1: %2").arg(Log::levelName(entry.level), entry.message));
    m_last = entry;
}

void MessageCollector::tellRepeats()
{
    const qint64 repeats = std::exchange(m_repeats, 0);
    if (repeats > 0)
        tell(QStringLiteral("%1: %2 (%3 times more)")
                 .arg(Log::levelName(m_last.level), m_last.message, QString::number(repeats)));
}

void tell(const QString &text)
{
    if (collecting)
        collecting->tellRepeats();
    ProgressLine::clear();
    const QByteArray line = text.toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
}

} // namespace Batch
