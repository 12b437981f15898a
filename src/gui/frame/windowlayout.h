#pragma once

#include "log/logger.h"

#include <QVariantMap>

class LogDock;
class QMainWindow;
class UiInfo;

namespace Tsb {
class TimeSeriesBrowser;
}

/// How the window, its docks, the views of one record, the browser and the colours of spectra are set: as a map, and
/// back from one. The widgets outlive it. Main thread only.
class WindowLayout {
public:
    WindowLayout(QMainWindow &window, Tsb::TimeSeriesBrowser &browser, UiInfo &uiInfo, LogDock &log);

    /// Fills in the parts, whether there are data or not.
    void store(QVariantMap &out) const;
    /// The window's own part: geometry and docks.
    QVariantMap mainWindow() const;
    /// Applies the parts of a setup, a sum of WindowSetup::Part, that anyone may have written. What is missing becomes
    /// as in a new window, but docks and geometry, which stay; what is damaged is left out, told by the log, and
    /// makes the result false. A setup of an older version changes nothing at all.
    bool restore(const QVariantMap &setup, unsigned parts);

private:
    void restoreBrowser(const QVariantMap &setup);
    bool restoreRecordViews(const QVariantMap &setup);
    void restoreColors(const QVariantMap &setup);
    bool restoreGeometry(const QVariantMap &mainWindow);
    /// Tells a complaint and returns true if there is none.
    bool isSound(const QString &complaint) const;

    QMainWindow &m_window;
    Tsb::TimeSeriesBrowser &m_browser;
    UiInfo &m_uiInfo;
    LogDock &m_log;
    Log::Logger m_logger;
};
