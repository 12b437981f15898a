#include "gui/browser/views/view.h"

#include "columns/setupvalues.h"
#include "gui/browser/controls/actionsmenu.h"
#include "gui/browser/controls/titlebutton.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/plots/plot.h"
#include "gui/common/iconhelp.h"

#include <QAction>
#include <QStyle>
#include <QVBoxLayout>

namespace Tsb {

View::View(QWidget *parent)
    : QWidget(parent), m_titleStrip(new QWidget(this)), m_layout(new ViewLayout(this)),
      m_titleLayout(new QVBoxLayout(m_titleStrip)), m_closeButton(new TitleButton(m_titleStrip))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    const int frameWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    m_titleStrip->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    m_layout->setSpacing(frameWidth);
    m_layout->setTitleItem(m_titleStrip);
    m_titleLayout->setContentsMargins(0, 0, 0, 0);
    m_titleLayout->setSpacing(frameWidth);
    m_titleLayout->addWidget(m_closeButton, 0, Qt::AlignTop);
    m_titleLayout->addStretch();
    setTemporary(false);
    connect(m_closeButton, &TitleButton::clicked, this, &View::closeClicked);

    offerActionsMenu(this);
    auto *close = new QAction(namedIcon(QStringLiteral("remove")), tr("Close"), this);
    auto *below = new QAction(tr("Close this and below"), this);
    connect(close, &QAction::triggered, this, &View::discard);
    connect(below, &QAction::triggered, this, &View::closeBelow);
    addAction(close);
    addAction(below);
}

View::~View()
{
    // The base class hides the children, and a plot that hides tells of its cursors.
    for (Plot *plot : findChildren<Plot *>())
        plot->disconnect(this);
}

void View::setDatastore(Datastore *) {}

void View::setUpdateTimer(QTimer *) {}

QVariant View::settings() const
{
    return {};
}

void View::setSettings(const QVariant &) {}

void View::setVisibleSpectra(QSet<QString>) {}

void View::restoreHeight(const QVariant &height)
{
    if (const auto wanted = viewHeight(height))
        setFixedHeight(*wanted);
}

void View::setTimeScale(TimeScale) {}

void View::setUiInfo(std::shared_ptr<UiInfo>) {}

void View::setCurrentRecord(std::shared_ptr<Record>) {}

void View::fitScale() {}

void View::setTemporary(bool on)
{
    m_temporary = on;
    m_closeButton->setText(on ? QStringLiteral("\u25CB") : QStringLiteral("\u00D7"));
    m_closeButton->setToolTip(on ? tr("Keep this plot") : tr("Close"));
}

void View::discard()
{
    m_discarded = true;
    setColorLock(nullptr); // those that come in its place don't take its limits
    hide();
    deleteLater();
}

void View::activateLayout()
{
    m_layout->invalidate();
    m_layout->activate();
}

void View::setLeftMargin(int width)
{
    m_layout->setLeftMargin(width);
}

void View::connectPlot(Plot *plot)
{
    connect(plot, &Plot::recordChosen, this, &View::recordChosen);
    connect(plot, &Plot::requestPan, this, &View::requestPan);
    connect(plot, &Plot::requestZoom, this, &View::requestZoom);
    connect(plot, &Plot::requestDisableAutoscroll, this, &View::requestDisableAutoscroll);
    connect(plot, &Plot::timeCursorChanged, this, &View::timeCursorChange);
    connect(plot, &Plot::curvesChanged, this, &View::curvesChanged);
    connect(this, &View::timeCursorChange, plot, &Plot::setTimeCursor);
}

QAction *View::addSeparator()
{
    auto *separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    return separator;
}

void View::closeClicked()
{
    if (m_temporary)
        setTemporary(false);
    else
        discard();
}

void View::closeBelow()
{
    Q_EMIT requestCloseBelow(this);
}

} // namespace Tsb
