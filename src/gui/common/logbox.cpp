#include "gui/common/logbox.h"

#include "gui/common/logtext.h"

#include <deque>
#include <mutex>

struct LogBox::Shared {
    std::mutex mutex;
    LogBox *box = nullptr; ///< null once it is gone
    std::deque<Log::Entry> entries;
};

LogBox::LogBox(QObject *parent) : QObject(parent), m_shared(std::make_shared<Shared>())
{
    m_shared->box = this;
    auto *root = &Log::RootLogger::instance();
    const auto put = [shared = m_shared](const Log::Entry &entry) {
        if (!LogText::isShown(entry))
            return;
        const std::lock_guard<std::mutex> lock(shared->mutex);
        const bool wasEmpty = shared->entries.empty();
        if (int(shared->entries.size()) == capacity)
            shared->entries.pop_front();
        shared->entries.push_back(entry);
        if (wasEmpty && shared->box)
            QMetaObject::invokeMethod(shared->box, "deliver", Qt::QueuedConnection);
    };
    m_connection = connect(root, &Log::RootLogger::newEntry, root, put, Qt::DirectConnection);
}

LogBox::~LogBox()
{
    disconnect(m_connection);
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->box = nullptr;
}

void LogBox::deliver()
{
    std::deque<Log::Entry> entries;
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        entries.swap(m_shared->entries);
    }
    for (const Log::Entry &entry : entries)
        Q_EMIT newEntry(entry);
}
