#pragma once

#include "gui/common/recordviews/distribution/resultplot.h"

#include <QScrollArea>

namespace RecordViews {

/// The plots of a record's size distributions: one for all spectra, or one for each. Of separate plots those in sight,
/// and their neighbours, are made and filled: each reinversion brings some more, and to lay out one takes milliseconds.
/// They are used again by their place; a record with fewer spectra leaves some of them empty, with their axes as they
/// were. Those out of sight hold no spectra, and take part in what is done to all of them when they are filled.
class ResultPlots : public QScrollArea {
    Q_OBJECT
public:
    explicit ResultPlots(std::shared_ptr<const PlotOptions> options, QWidget *parent = nullptr);

    /// Room for one low plot.
    QSize minimumSizeHint() const override;

    /// In the order of their descriptions. One replot for each plot in sight. The moment is that of their record, empty
    /// without one.
    void showSpectra(const ShownSpectra &shown, const QString &moment);
    /// Another layout or another choice of spectra: the next spectra get as many plots as they need.
    void setSinglePlot(bool on);
    bool isSinglePlot() const { return m_isSinglePlot; }
    void forgetPlaces() { m_leastPlaces = 1; }

    /// Keeps what is shown as thin grey curves below all that follows; or lets it go. Separate plots show those of the
    /// spectra that they show.
    void setHolding(bool on);

    /// The plots stand in it: what a picture is taken of.
    QWidget *canvas() const { return widget(); }
    /// All plots, each at its place in the canvas. Those that were never in sight are drawn by turns as one that isn't
    /// kept: there may be hundreds. Of a clipped painter those in its clip.
    void draw(QPainter &painter);
    ResultPlot *firstPlot() const { return m_places.front().plot; }

public Q_SLOTS:
    void setAxesLocked(bool on);
    void fitAxes();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Place {
        ResultPlot *plot = nullptr; ///< from the first time on that it is in sight
        bool isFilled = false;      ///< with the present spectra
    };

    void showSpectra(const ShownSpectra &shown);
    void reservePlaces(int count);
    void showThoseInSight();
    void showPlace(int i);
    void fillPlace(int i);
    void drawPlace(QPainter &painter, int i, ResultPlot &substitute);
    void fill(ResultPlot &plot, int i) const;
    void showSpectraOf(const ShownSpectra &shown, ResultPlot &plot, int i) const;
    void makePlot(int i);
    QRect placeRect(int i) const;
    int spacing() const;
    ShownSpectra heldLike(const ShownSpectrum &shown) const;

    std::shared_ptr<const PlotOptions> m_options;
    std::vector<Place> m_places{Place()}; ///< never fewer; those behind m_placeCount are hidden
    int m_placeCount = 1;
    int m_leastPlaces = 1; ///< of the next spectra
    ShownSpectra m_shown;
    ShownSpectra m_held;
    QString m_moment;
    bool m_isSinglePlot = true;
    bool m_areAxesLocked = false;
    ShownSpectra m_lockedTo; ///< those that locked axes fit, where the user hasn't moved them
};

} // namespace RecordViews
