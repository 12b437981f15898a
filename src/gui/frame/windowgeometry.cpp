#include "gui/frame/windowgeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int settingsVersion = 3;
const QString versionKey = QStringLiteral("version");
const QString geometryKey = QStringLiteral("MainWindow/geometry");

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

void storeWindowGeometry(QSettings &settings, const QWidget &window)
{
    settings.setValue(versionKey, settingsVersion);
    settings.setValue(geometryKey, window.saveGeometry());
}

void forgetOlderSettings(QSettings &settings)
{
    if (settings.value(versionKey, 0).toInt() >= settingsVersion)
        return;
    settings.clear();
    settings.setValue(versionKey, settingsVersion); // at once: the desktop may end the program without a close
}

void restoreWindowGeometry(const QSettings &settings, QWidget &window)
{
    restoreReachableGeometry(window, settings.value(geometryKey).toByteArray());
}
