#include "gui/browser/controls/header.h"

#include "gui/browser/controls/timeview.h"
#include "gui/browser/controls/viewlayout.h"

#include <QEvent>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>

namespace Tsb {

namespace {

constexpr int leastLeftColumn = 40;

} // namespace

Header::Header(QWidget *parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_splitter(new QSplitter(Qt::Horizontal, this)),
      m_leftSpacer(new QWidget(m_splitter)), m_timeView(new TimeView(m_splitter))
{
    const int frameWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    m_leftSpacer->setMinimumWidth(ViewLayout::titleWidth + 2 * frameWidth + leastLeftColumn);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    setLeftColumn(defaultLeftColumn);

    QFrame frame;
    frame.setFrameStyle(m_timeView->frameStyle());
    const QRect contents = frame.contentsRect();
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    // The views stand beside a scroll bar and its frame; the axis ends where they do.
    m_layout->setContentsMargins(0, 0, scrollBar - contents.width() - contents.x() + frame.frameRect().width(), 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_splitter);
    m_layout->addSpacing(frameWidth);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(m_splitter, &QSplitter::splitterMoved, this, &Header::updateLeftMargin);
}

int Header::leftColumn() const
{
    return m_shown ? m_splitter->sizes().value(0) : m_wantedLeftColumn;
}

void Header::setLeftColumn(int width)
{
    m_wantedLeftColumn = width;
    const int left = qBound(0, width, std::max(defaultLeftColumn, m_splitter->width() * 3 / 4));
    m_splitter->setSizes({left, std::max(defaultLeftColumn, m_splitter->width() - left)});
    if (m_shown)
        updateLeftMargin();
}

void Header::setViewLeft(int x)
{
    m_viewLeft = x;
    updateLeftMargin();
}

int Header::leftMargin() const
{
    const QRect contents = m_layout->contentsRect();
    return contents.x() + contents.width() - m_splitter->sizes().value(1) - m_viewLeft;
}

void Header::updateLeftMargin()
{
    const int timeWidth = m_splitter->sizes().value(1);
    if (timeWidth <= 0)
        return; // not laid out yet
    setMinimumWidth(width() - timeWidth);
    Q_EMIT leftMarginChanged(leftMargin());
}

bool Header::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    switch (event->type()) {
    case QEvent::Show:
        if (!m_shown)
            setLeftColumn(m_wantedLeftColumn);
        m_shown = true;
        updateLeftMargin();
        break;
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::LayoutRequest:
        updateLeftMargin();
        break;
    default:
        break;
    }
    return handled;
}

} // namespace Tsb
