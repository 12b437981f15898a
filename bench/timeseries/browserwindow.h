#pragma once

#include "gui/browser/controls/timeview.h"
#include "gui/browser/plots/plot.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "timeseries/benchstore.h"

#include <QApplication>

/// A browser of 1600 x 900 on the screen, with six views that fill it: a mode strip, two spectrograms, and scatter
/// plots of a variable, of concentrations and of an electrometer.
class BrowserWindow {
public:
    explicit BrowserWindow(BenchStore &data) : m_data(data), m_browser(data.uiInfo())
    {
        m_browser.resize(1600, 900);
        m_browser.show();
        settle();
    }
    void showData()
    {
        m_browser.setDatastore(&m_data.store());
        m_browser.fitTimescale(BenchStore::start(), m_data.end());
    }
    void addSixViews()
    {
        showData();
        settle();
        const auto spectrogram = [this](int i) {
            return QVariantMap{{"visibleSpectra", QStringList{m_data.info(i)->hash}}, {"height", 230}};
        };
        const auto entry = [](const char *type, const QVariantMap &settings) {
            return QVariantMap{{"type", QString::fromLatin1(type)}, {"settings", settings}};
        };
        const QStringList all{m_data.info(0)->hash, m_data.info(1)->hash};
        m_browser.setSetup(QVariantList{
            entry("opmode", {{"type", "opmode"}}), entry("spectrogram", spectrogram(0)),
            entry("spectrogram", spectrogram(1)),
            entry("scatterplot", {{"type", "parameter"}, {"parameterName", "variable 0"}, {"height", 110}}),
            entry("scatterplot", {{"type", "fraction"}, {"visibleSpectra", all}, {"height", 110}}),
            entry("scatterplot", {{"type", "electrometer"}, {"electrometerNumber", 0}, {"height", 110}})});
        settle();
        m_browser.allFitScale();
        settle();
    }
    /// Layouts and paints whatever is due.
    static void settle()
    {
        for (int i = 0; i < 3; ++i) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    Tsb::TimeSeriesBrowser &browser() { return m_browser; }
    QList<Tsb::Plot *> plots() const { return m_browser.findChildren<Tsb::Plot *>(); }

private:
    BenchStore &m_data;
    Tsb::TimeSeriesBrowser m_browser;
};
