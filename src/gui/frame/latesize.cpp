#include "gui/frame/latesize.h"

#include <QEvent>
#include <QWidget>

#include <utility>

namespace {

constexpr int patience = 1000; // ms

} // namespace

LateSize::LateSize(QWidget &window) : m_window(window)
{
    m_settled.setSingleShot(true);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_settled, &QTimer::timeout, this, [this] {
        if (m_adapt)
            m_adapt();
    });
    connect(&m_patience, &QTimer::timeout, this, [this] { m_adapt = nullptr; });
    window.installEventFilter(this);
}

void LateSize::await(std::function<void()> adapt)
{
    m_adapt = m_window.isMaximized() || m_window.isFullScreen() ? std::move(adapt) : nullptr;
    m_settled.stop();
    m_patience.stop();
    if (m_window.isVisible())
        m_patience.start();
}

bool LateSize::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        m_patience.start();
    else if (event->type() == QEvent::Resize && m_adapt)
        m_settled.start(0);
    return QObject::eventFilter(watched, event);
}
