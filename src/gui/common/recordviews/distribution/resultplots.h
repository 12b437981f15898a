#pragma once

#include "gui/common/recordviews/distribution/resultplot.h"

#include <QScrollArea>

class QVBoxLayout;

namespace RecordViews {

/// The plots of a record's size distributions: one for all spectra, or one for each. Separate plots are used again by
/// their place; a record with fewer spectra leaves some of them empty, with their axes as they were.
class ResultPlots : public QScrollArea {
    Q_OBJECT
public:
    explicit ResultPlots(std::shared_ptr<const PlotOptions> options, QWidget *parent = nullptr);

    /// Room for one low plot.
    QSize minimumSizeHint() const override;

    /// In the order of their descriptions. One replot for each plot. The moment is that of their record, empty without
    /// one.
    void showSpectra(const ShownSpectra &shown, const QString &moment);
    /// Another layout or another choice of spectra: the next spectra get as many plots as they need.
    void setSinglePlot(bool on);
    bool isSinglePlot() const { return m_isSinglePlot; }
    void forgetPlaces() { m_places = 0; }

    /// Keeps what is shown as thin grey curves below all that follows; or lets it go. Separate plots show those of the
    /// spectra that they show.
    void setHolding(bool on);

    /// The plots stand in it: what a picture is taken of.
    QWidget *canvas() const { return widget(); }
    QList<ResultPlot *> seenPlots() const { return m_plots.mid(0, m_places); }

public Q_SLOTS:
    void setAxesLocked(bool on);
    void fitAxes();

private:
    void showSpectra(const ShownSpectra &shown);
    void makePlaces(int count);
    ShownSpectra heldLike(const ShownSpectrum &shown) const;

    std::shared_ptr<const PlotOptions> m_options;
    QVBoxLayout *m_layout;
    QList<ResultPlot *> m_plots; ///< never fewer; those behind m_places are hidden
    int m_places = 0;
    ShownSpectra m_shown;
    ShownSpectra m_held;
    bool m_isSinglePlot = true;
    bool m_areAxesLocked = false;
};

} // namespace RecordViews
