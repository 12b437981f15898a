#include "gui/morvantide/slowrelease.h"

#include <QElapsedTimer>

namespace {

constexpr qint64 longestSliceMs = 3;
/// Entries between two looks at the clock.
constexpr int entriesPerLook = 256;

} // namespace

SlowRelease::SlowRelease(QObject *parent) : QObject(parent)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &SlowRelease::releaseSome);
}

SlowRelease::~SlowRelease() = default;

void SlowRelease::take(std::shared_ptr<Datastore::Series> series)
{
    if (!series)
        return;
    m_series.push_back(std::move(series));
    m_timer.start();
}

void SlowRelease::releaseSome()
{
    QElapsedTimer timer;
    timer.start();
    while (!m_series.empty() && timer.elapsed() < longestSliceMs) {
        Datastore::Series &series = *m_series.back();
        for (int i = 0; i < entriesPerLook && !series.empty(); ++i)
            series.pop_back();
        if (series.empty())
            m_series.pop_back();
    }
    if (m_series.empty())
        m_timer.stop();
}
