#include "gui/frame/windowlayout.h"

#include "columns/setupvalues.h"
#include "gui/browser/controls/header.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/logdock.h"
#include "gui/common/recordviews/recordview.h"
#include "gui/common/uiinfo.h"
#include "gui/frame/dockstate.h"
#include "gui/frame/windowgeometry.h"
#include "windowsetup/sealedstate.h"
#include "windowsetup/setupfile.h"
#include "windowsetup/setupkeys.h"

#include <QMainWindow>

namespace Keys = WindowSetup::Keys;

namespace {

constexpr int mostColors = 1000; ///< of spectra that may come back

/// The views of one record that are stored, by the key of each and the name of its dock.
const struct {
    const char *key;
    const char *dock;
} storedViews[] = {{Keys::electrometersView, "electrometersView"},
                   {Keys::diagnosticView, "diagnosticsView"},
                   {Keys::electrometersPlot, "electrometersPlotView"},
                   {Keys::spectraView, "spectraView"},
                   {Keys::varGridView, "varGridView"}};

RecordViews::RecordView *viewOf(const QMainWindow &window, const char *dock)
{
    return window.findChild<RecordViews::RecordView *>(QString::fromLatin1(dock), Qt::FindDirectChildrenOnly);
}

QVariantMap colorTexts(const SpectrumColors::ByHash &colors)
{
    QVariantMap texts;
    for (auto it = colors.constBegin(); it != colors.constEnd() && texts.size() < mostColors; ++it)
        texts.insert(it.key(), it->name());
    return texts;
}

} // namespace

WindowLayout::WindowLayout(QMainWindow &window, Tsb::TimeSeriesBrowser &browser, UiInfo &uiInfo, LogDock &log)
    : m_window(window), m_browser(browser), m_uiInfo(uiInfo), m_log(log), m_logger(QStringLiteral("gui"))
{
}

void WindowLayout::store(QVariantMap &out) const
{
    out.insert(Keys::version, WindowSetup::currentVersion);
    out.insert(Keys::timeseries, m_browser.setup());
    out.insert(Keys::leftColumn, m_browser.leftColumnWidth());
    out.insert(Keys::scrolled, m_browser.scrolledHeight());
    for (const auto &stored : storedViews) {
        if (const auto *view = viewOf(m_window, stored.dock))
            out.insert(stored.key, view->setup());
    }
    out.insert(Keys::spectrumColors, colorTexts(m_uiInfo.userColors()));
    out.insert(Keys::mainWindow, mainWindow());
}

QVariantMap WindowLayout::mainWindow() const
{
    QVariantMap map;
    WindowSetup::seal(map, Keys::geometry, m_window.saveGeometry());
    storeDockState(map, m_window);
    map.insert(Keys::maximized, m_window.isMaximized());
    return map;
}

bool WindowLayout::restore(const QVariantMap &setup, unsigned parts)
{
    if (WindowSetup::isTooOld(setup)) {
        m_logger.log(Log::Warning, QStringLiteral("User-interface configuration file is too old."));
        return false;
    }
    bool isWhole = true;
    if ((parts & WindowSetup::Timeseries) != 0)
        restoreBrowser(setup);
    if ((parts & WindowSetup::RecordViews) != 0) {
        isWhole = restoreRecordViews(setup);
        restoreColors(setup);
    }
    const QVariantMap mainWindow = setup.value(Keys::mainWindow).toMap();
    if ((parts & WindowSetup::Geometry) != 0)
        isWhole = restoreGeometry(mainWindow) && isWhole;
    if ((parts & WindowSetup::DockState) != 0)
        isWhole = isSound(restoreDockState(m_window, mainWindow)) && isWhole;
    m_log.scrollToEnd(); // its size may have changed
    return isWhole;
}

void WindowLayout::restoreBrowser(const QVariantMap &setup)
{
    m_browser.setLeftColumnWidth(
        Tsb::wholeNumber(setup.value(Keys::leftColumn)).value_or(Tsb::Header::defaultLeftColumn));
    m_browser.setSetup(setup.value(Keys::timeseries));
    m_browser.scrollTo(Tsb::wholeNumber(setup.value(Keys::scrolled)).value_or(0));
}

bool WindowLayout::restoreRecordViews(const QVariantMap &setup)
{
    bool isWhole = true;
    for (const auto &stored : storedViews) {
        const QVariantMap map = setup.value(stored.key).toMap();
        isWhole = isSound(WindowSetup::unseal(map, Keys::headerState).complaint) && isWhole;
        if (auto *view = viewOf(m_window, stored.dock))
            view->restoreSetup(map);
    }
    return isWhole;
}

void WindowLayout::restoreColors(const QVariantMap &setup)
{
    const QVariant stored = setup.value(Keys::spectrumColors);
    if (stored.type() != QVariant::Map)
        return; // of a program that knew none: the user's stay
    const QVariantMap texts = stored.toMap();
    SpectrumColors::ByHash colors;
    for (auto it = texts.constBegin(); it != texts.constEnd() && colors.size() < mostColors; ++it) {
        const QColor color(it->toString());
        if (color.isValid())
            colors.insert(it.key(), color);
    }
    if (colors == m_uiInfo.userColors())
        return;
    m_uiInfo.setUserColors(colors);
    m_uiInfo.publish();
}

bool WindowLayout::restoreGeometry(const QVariantMap &mainWindow)
{
    const WindowSetup::State state = WindowSetup::unseal(mainWindow, Keys::geometry);
    if (!isSound(state.complaint))
        return false;
    if (!restoreReachableGeometry(m_window, state.bytes))
        m_logger.log(Log::Debug, QStringLiteral("Failed to restore window geometry."));
    return true;
}

bool WindowLayout::isSound(const QString &complaint) const
{
    if (!complaint.isNull())
        m_logger.log(Log::Warning, QStringLiteral("A part of the layout is left out: %1").arg(complaint));
    return complaint.isNull();
}
