#pragma once

#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/views/singleplotview.h"

#include <QPainter>

/// A plain kind of view for tests of the browser: a bar for each record.
class StripPlot : public Tsb::Plot {
    Q_OBJECT
public:
    StripPlot() { setMouseTracking(true); }
    int cursor() const { return isTimeCursorVisible() ? timeCursorPixel() : -1; }

protected:
    void drawRange(QPainter &painter, int first, int last) override
    {
        clearRange(painter, first, last);
        for (const auto &record : datastore()->records()) {
            const int x0 = timeScale().pixelAt(record->beginTime), x1 = timeScale().pixelAt(record->endTime);
            painter.fillRect(x0, 2, x1 - x0, 10 + record->opmode * 5, Qt::blue);
        }
    }
};

class StripView : public Tsb::SinglePlotView<StripPlot> {
    Q_OBJECT
public:
    StripView()
    {
        auto *const plot = new StripPlot;
        setPlot(plot);
        viewLayout()->insertRow(0, nullptr, plot);
        setFixedHeight(60);
    }
    QVariant settings() const override { return kept; }
    void setSettings(const QVariant &settings) override
    {
        kept = settings;
        restoreHeight(settings.toMap().value(QStringLiteral("height")));
    }
    void setVisibleSpectra(QSet<QString> ids) override { spectra = ids; }
    void fitScale() override { fittedWidths.append(plot()->contentsRect().width()); }

    QVariant kept;
    QSet<QString> spectra;
    QVector<int> fittedWidths;
};

/// Another class of view, with nothing to keep.
class PlainView : public Tsb::View {
    Q_OBJECT
public:
    PlainView() { setFixedHeight(40); }
};
