#include "gui/frame/busymessage.h"

#include <QMainWindow>
#include <QStatusBar>

namespace {

constexpr int recordsOfAMoment = 50'000; // are drawn in less than 100 ms

} // namespace

BusyMessage::BusyMessage(QMainWindow &window, const QString &text, int recordCount)
    : m_window(recordCount > recordsOfAMoment ? &window : nullptr)
{
    if (!m_window)
        return;
    m_window->statusBar()->showMessage(text);
    m_window->statusBar()->repaint(); // no event is handled before the work is done
}

BusyMessage::~BusyMessage()
{
    if (m_window)
        m_window->statusBar()->clearMessage();
}
