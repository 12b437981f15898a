#include "gui/common/recordviews/distribution/resultplots.h"

#include <QVBoxLayout>

#include <algorithm>

namespace RecordViews {

namespace {

// Of a plot, in lines of text.
constexpr int leastHeight = 10;
constexpr int leastHeightAlone = 6; ///< there is less of it in a small dock, and all of it is seen

} // namespace

ResultPlots::ResultPlots(std::shared_ptr<const PlotOptions> options, QWidget *parent)
    : QScrollArea(parent), m_options(std::move(options)), m_layout(nullptr)
{
    auto *const canvas = new QWidget(this);
    m_layout = new QVBoxLayout(canvas);
    m_layout->setContentsMargins(0, 0, 0, 0);
    setWidget(canvas);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // the plots have it
    makePlaces(1);
}

void ResultPlots::makePlaces(int count)
{
    m_places = std::max(m_places, count);
    while (m_plots.size() < m_places) {
        auto *const plot = new ResultPlot(m_options, widget());
        plot->setAxesLocked(m_areAxesLocked);
        m_layout->addWidget(plot);
        m_plots.append(plot);
    }
    const int lines = m_places == 1 ? leastHeightAlone : leastHeight;
    for (int i = 0; i < m_plots.size(); ++i) {
        m_plots[i]->setMinimumHeight(lines * fontMetrics().lineSpacing());
        m_plots[i]->setVisible(i < m_places);
    }
}

QSize ResultPlots::minimumSizeHint() const
{
    return {QScrollArea::minimumSizeHint().width(), leastHeightAlone * fontMetrics().lineSpacing()};
}

void ResultPlots::setSinglePlot(bool on)
{
    m_isSinglePlot = on;
    forgetPlaces();
}

void ResultPlots::showSpectra(const ShownSpectra &shown, const QString &moment)
{
    showSpectra(shown);
    for (ResultPlot *plot : qAsConst(m_plots))
        plot->setRecordMoment(moment);
}

void ResultPlots::showSpectra(const ShownSpectra &shown)
{
    m_shown = shown;
    makePlaces(m_isSinglePlot ? 1 : std::max(1, shown.size()));
    if (m_isSinglePlot)
        return m_plots[0]->showSpectra(shown, m_held);
    for (int i = 0; i < m_places; ++i) {
        if (i < shown.size())
            m_plots[i]->showSpectra({shown[i]}, heldLike(shown[i]));
        else
            m_plots[i]->showSpectra({}, {});
    }
}

ShownSpectra ResultPlots::heldLike(const ShownSpectrum &shown) const
{
    ShownSpectra like;
    std::copy_if(m_held.begin(), m_held.end(), std::back_inserter(like),
                 [&](const ShownSpectrum &held) { return *held.spectrum->info == *shown.spectrum->info; });
    return like;
}

void ResultPlots::setHolding(bool on)
{
    m_held = on ? m_shown : ShownSpectra();
    showSpectra(m_shown);
}

void ResultPlots::setAxesLocked(bool on)
{
    m_areAxesLocked = on;
    for (ResultPlot *plot : qAsConst(m_plots))
        plot->setAxesLocked(on);
}

void ResultPlots::fitAxes()
{
    for (ResultPlot *plot : seenPlots())
        plot->fitAxes();
}

} // namespace RecordViews
