#pragma once

#include "columns/setupkeys.h"
#include "gui/browser/controls/timeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "support/gestures.h"
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
        namespace SetupKeys = Tsb::SetupKeys;
        showData();
        settle();
        const auto spectrogram = [this](int i) {
            return QVariantMap{{SetupKeys::spectra, QStringList{m_data.info(i)->hash}}, {SetupKeys::height, 230}};
        };
        const auto entry = [](const char *type, const QVariantMap &settings) {
            return QVariantMap{{SetupKeys::type, type}, {SetupKeys::settings, settings}};
        };
        const auto scatter = [&entry](const char *type, const char *key, const QVariant &value) {
            return entry(SetupKeys::scatterPlotView, {{SetupKeys::type, type}, {key, value}, {SetupKeys::height, 110}});
        };
        const QStringList all{m_data.info(0)->hash, m_data.info(1)->hash};
        m_browser.setSetup(QVariantList{entry(SetupKeys::opmodeView, {{SetupKeys::type, "opmode"}}),
                                        entry(SetupKeys::spectrogramView, spectrogram(0)),
                                        entry(SetupKeys::spectrogramView, spectrogram(1)),
                                        scatter("parameter", SetupKeys::parameterName, "variable 0"),
                                        scatter("fraction", SetupKeys::visibleSpectra, all),
                                        scatter("electrometer", SetupKeys::electrometerNumber, 0)});
        settle();
        m_browser.allFitScale();
        settle();
        checkWhatIsShown(all);
    }
    Tsb::TimeSeriesBrowser &browser() { return m_browser; }
    QList<Tsb::Plot *> plots() const { return m_browser.findChildren<Tsb::Plot *>(); }

private:
    /// A view that shows nothing costs nothing, and so would be measured as a quick one.
    void checkWhatIsShown(const QStringList &spectra) const
    {
        const auto views = m_browser.views();
        QStringList drawn;
        for (const Tsb::View *view : views) {
            if (const auto *spectrogram = qobject_cast<const Tsb::SpectrogramView *>(view)) {
                for (const auto &row : spectrogram->rows())
                    drawn << row.plot->spectrumInfo()->hash;
            }
        }
        const auto *fraction = qobject_cast<const Tsb::ScatterPlotView *>(views.value(4));
        if (views.size() != 6 || drawn != spectra || !fraction ||
            fraction->plotSettings().visibleSpectra != QSet<QString>(spectra.begin(), spectra.end()))
            qFatal("the six views lack their spectra");
        for (Tsb::Plot *plot : plots()) {
            const QImage &image = plot->image();
            QRgb first = image.pixel(0, 0);
            bool isBlank = true;
            for (int y = 0; y < image.height() && isBlank; ++y)
                for (int x = 0; x < image.width() && isBlank; ++x)
                    isBlank = image.pixel(x, y) == first;
            if (isBlank)
                qFatal("a %s of the six views is blank", plot->metaObject()->className());
        }
    }

    BenchStore &m_data;
    Tsb::TimeSeriesBrowser m_browser;
};
