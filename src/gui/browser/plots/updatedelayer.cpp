#include "gui/browser/plots/updatedelayer.h"

#include <QTimer>

#include <utility>

namespace Tsb {

UpdateDelayer::UpdateDelayer(QTimer *timer, QObject *parent) : QObject(parent)
{
    connect(timer, &QTimer::timeout, this, &UpdateDelayer::tick);
}

bool UpdateDelayer::requestUpdate()
{
    if (!m_updatePending) {
        m_updatePending = true;
        return true;
    }
    ++m_deferredCount;
    return false;
}

void UpdateDelayer::tick()
{
    if (std::exchange(m_deferredCount, 0) != 0)
        Q_EMIT triggerUpdate();
    m_updatePending = false;
}

} // namespace Tsb
