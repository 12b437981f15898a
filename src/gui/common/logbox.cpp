#include "gui/common/logbox.h"

#include "gui/common/logtext.h"

#include <algorithm>
#include <mutex>

namespace {

/// Hears the root logger for all boxes. It is connected once and stays, so that no connection is cut while another
/// thread logs.
struct Listener {
    std::mutex mutex; ///< guards the list
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

LogBox::LogBox(QObject *parent) : QObject(parent), m_entries(this, "deliver")
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
    m_entries.put([&entry](std::deque<Log::Entry> &entries) {
        if (!entries.empty() && Log::isRepeat(entries.back(), entry)) {
            entries.back().count += entry.count;
            return;
        }
        if (int(entries.size()) == capacity)
            entries.pop_front();
        entries.push_back(entry);
    });
}

void LogBox::deliver()
{
    for (const Log::Entry &entry : m_entries.take())
        Q_EMIT newEntry(entry);
}
