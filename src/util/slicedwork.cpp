#include "util/slicedwork.h"

#include <QElapsedTimer>

#include <utility>

SlicedWork::SlicedWork(int longestSliceMs, std::function<bool()> step, std::function<void()> done)
{
    m_timer.setInterval(0);
    QObject::connect(&m_timer, &QTimer::timeout,
                     [this, longestSliceMs, step = std::move(step), done = std::move(done)] {
                         QElapsedTimer clock;
                         clock.start();
                         do {
                             if (!step()) {
                                 m_timer.stop();
                                 if (done)
                                     done();
                                 return;
                             }
                         } while (clock.elapsed() < longestSliceMs);
                     });
}
