#include "gui/common/logbox.h"

#include "gui/common/logtext.h"

#include <algorithm>
#include <mutex>

namespace {

/// Hears the root logger for all boxes. It is connected once and stays, so that no connection is cut while another
/// thread logs.
struct Listener {
    std::mutex mutex; ///< guards the list and what is in the boxes
    std::vector<LogBox *> boxes;

    static Listener &instance()
    {
        static auto *const listener = new Listener; // other threads may log to the very end
        return *listener;
    }

private:
    Listener()
    {
        auto *root = &Log::RootLogger::instance();
        QObject::connect(
            root, &Log::RootLogger::newEntry, root,
            [this](const Log::Entry &entry) {
                if (!LogText::isShown(entry))
                    return;
                const std::lock_guard<std::mutex> lock(mutex);
                for (LogBox *box : boxes)
                    box->put(entry);
            },
            Qt::DirectConnection);
    }
};

} // namespace

LogBox::LogBox(QObject *parent) : QObject(parent)
{
    Listener &listener = Listener::instance();
    const std::lock_guard<std::mutex> lock(listener.mutex);
    listener.boxes.push_back(this);
}

LogBox::~LogBox()
{
    Listener &listener = Listener::instance();
    const std::lock_guard<std::mutex> lock(listener.mutex);
    listener.boxes.erase(std::find(listener.boxes.begin(), listener.boxes.end(), this));
}

void LogBox::put(const Log::Entry &entry)
{
    if (!m_entries.empty() && Log::isRepeat(m_entries.back(), entry)) {
        m_entries.back().count += entry.count;
        return;
    }
    const bool wasEmpty = m_entries.empty();
    if (int(m_entries.size()) == capacity)
        m_entries.pop_front();
    m_entries.push_back(entry);
    if (wasEmpty)
        QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection);
}

void LogBox::deliver()
{
    std::deque<Log::Entry> entries;
    {
        const std::lock_guard<std::mutex> lock(Listener::instance().mutex);
        entries.swap(m_entries);
    }
    for (const Log::Entry &entry : entries)
        Q_EMIT newEntry(entry);
}
