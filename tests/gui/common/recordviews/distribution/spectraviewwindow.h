#pragma once

#include "gui/common/recordviews/distribution/discontinuousplotcurve.h"
#include "gui/common/recordviews/distribution/resultplots.h"
#include "gui/common/recordviews/distribution/spectraview.h"
#include "support/commands.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QClipboard>
#include <QMenu>
#include <QPlainTextEdit>

#include <gtest/gtest.h>

using RecordViews::DiscontinuousPlotCurve;
using RecordViews::ResultPlot;
using RecordViews::SpectraView;
using RecordViews::SpectraViewDialog;
using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::DistributionType;

inline std::shared_ptr<SpectMath::Spectrum> spectrum(const SpectMath::SpectrumInfoPointer &info,
                                                     const RealVector &values, double variance = 1)
{
    auto made = testSpectrum(info);
    made->concentrations = values;
    made->covariances = BandMatrix(values.size(), values.size(), 0, 0);
    for (std::size_t i = 0; i < values.size(); ++i)
        made->covariances(i, i) = variance;
    return made;
}

inline std::shared_ptr<Record> recordOf(const SpectMath::SpectrumPointerList &spectra)
{
    auto record = std::make_shared<Record>();
    record->beginTime = recordTimeFromTicks(91 * ticksPerDay); // April, by the same name in German
    record->spectra = spectra;
    return record;
}

struct Window {
    SpectMath::SpectrumInfoPointer neg = testInfo("particles neg", {1, 10, 100}, DistributionScale::radius, "a"),
                                   pos = testInfo("particles pos", {1, 10, 100}, DistributionScale::radius, "b"),
                                   ions = testInfo("ions neg", {2, 1, 0.5}, DistributionScale::mobility, "c");
    std::shared_ptr<UiInfo> ui = std::make_shared<UiInfo>();
    SpectraView view{ui};

    Window()
    {
        ui->setData(testMetadata({"particles"}), {neg, pos, ions});
        ui->publish();
        view.resize(500, 500);
        view.show();
        settle();
    }
    void show(const SpectMath::SpectrumPointerList &spectra) { view.showRecord(recordOf(spectra)); }
    QList<ResultPlot *> plots() const
    {
        QList<ResultPlot *> seen;
        for (auto *plot : view.findChildren<ResultPlot *>()) {
            if (plot->isVisible())
                seen << plot;
        }
        return seen;
    }
    /// The visible items of that kind and pen style.
    template<typename Item>
    QList<Item *> items(int plot = 0, Qt::PenStyle style = Qt::SolidLine) const
    {
        QList<Item *> found;
        for (QwtPlotItem *item : plots()[plot]->itemList()) {
            auto *const one = dynamic_cast<Item *>(item);
            if (one && one->isVisible() && one->pen().style() == style)
                found << one;
        }
        return found;
    }
    QList<DiscontinuousPlotCurve *> curves(int plot = 0, Qt::PenStyle style = Qt::SolidLine) const
    {
        return items<DiscontinuousPlotCurve>(plot, style);
    }
    QPointF span(int axis) const
    {
        const QwtScaleDiv &scale = plots()[0]->axisScaleDiv(axis);
        return {scale.lowerBound(), scale.upperBound()};
    }
    QAction *action(const QString &text) const { return commandOf(view.findChildren<QAction *>(), text); }
    QString summary() const { return view.findChild<QPlainTextEdit *>()->toPlainText(); }
    QString copied()
    {
        action("Copy to clipboard")->trigger();
        return QApplication::clipboard()->text();
    }
    /// What the button of the tool bar offers.
    QList<QAction *> spectrumActions() const
    {
        auto *const menu = action("Spectra")->menu();
        Q_EMIT menu->aboutToShow();
        return menu->actions();
    }
};
