#pragma once

#include <QObject>

#include <mutex>
#include <utility>

/// The messages of other threads for one receiver, under a mutex of its own. A posted call only says that something is
/// in it, so that any number of changes within one turn of the receiver's event loop are one call. It is shared, and
/// may outlive the receiver.
template<class Content>
class Mailbox {
public:
    /// `slot` is the name of a slot or invokable of the receiver, without arguments, which looks into the box.
    Mailbox(QObject *receiver, const char *slot) : m_receiver(receiver), m_slot(slot) {}

    /// Any thread: `change` gets the content, and the receiver is called.
    template<class Change>
    void put(Change change)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change(m_content);
        post();
    }
    /// The receiver's thread: `look` gets the content, and its result is returned. The next change calls again.
    template<class Look>
    auto look(Look look)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isPosted = false;
        return look(m_content);
    }
    /// Takes all that is in the box and leaves it as new.
    Content take()
    {
        return look([](Content &content) { return std::exchange(content, Content()); });
    }
    /// Asks for another turn of the receiver's event loop.
    void wake()
    {
        put([](Content &) {});
    }
    /// The receiver goes away: nothing is posted to it from now on. Everything put before is seen from here on.
    void detach()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_receiver = nullptr;
    }

private:
    void post()
    {
        if (m_receiver && !m_isPosted)
            m_isPosted = QMetaObject::invokeMethod(m_receiver, m_slot, Qt::QueuedConnection);
    }

    std::mutex m_mutex; ///< guards all that follows
    QObject *m_receiver;
    const char *m_slot;
    bool m_isPosted = false;
    Content m_content;
};
