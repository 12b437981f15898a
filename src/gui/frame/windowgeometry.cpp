#include "gui/frame/windowgeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int longestGeometry = 1000; // bytes; Qt writes 66
constexpr QSize leastInSight(100, 50);

bool isInSight(const QRect &frame)
{
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&frame](const QScreen *screen) {
        const QSize common = screen->availableGeometry().intersected(frame).size();
        return common.width() >= leastInSight.width() && common.height() >= leastInSight.height();
    });
}

} // namespace

bool restoreReachableGeometry(QWidget &window, const QByteArray &geometry)
{
    if (geometry.size() > longestGeometry || !window.restoreGeometry(geometry))
        return false;
    QRect desktop;
    for (const QScreen *screen : QGuiApplication::screens())
        desktop |= screen->availableGeometry();
    const QSize bounded = window.size().boundedTo(desktop.size());
    if (bounded != window.size())
        window.resize(bounded);
    if (!isInSight(window.frameGeometry()))
        window.move(QGuiApplication::primaryScreen()->availableGeometry().topLeft());
    return true;
}
