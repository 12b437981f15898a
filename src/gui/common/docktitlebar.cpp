#include "gui/common/docktitlebar.h"

#include <QDockWidget>
#include <QGridLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

#include <utility>

namespace {

enum Column { TitleColumn, NewsColumn, StretchColumn, FloatColumn, CloseColumn };

QToolButton *makeButton(QStyle::StandardPixmap icon, const QString &name, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // as the buttons of other docks
    const int extent = parent->style()->pixelMetric(QStyle::PM_SmallIconSize) * 3 / 4;
    button->setIconSize({extent, extent});
    button->setIcon(parent->style()->standardIcon(icon, nullptr, button));
    button->setToolTip(name);
    button->setAccessibleName(name);
    return button;
}

} // namespace

DockTitleBar::DockTitleBar(QDockWidget *dock) : QWidget(dock), m_news(new QLabel(this))
{
    auto *title = new QLabel(dock->windowTitle(), this);
    connect(dock, &QWidget::windowTitleChanged, title, &QLabel::setText);
    m_news->setTextFormat(Qt::RichText);
    m_news->setStyleSheet(QStringLiteral("background: white; border-radius: 3px; padding: 0 4px;"));
    m_news->hide();
    QToolButton *floats = makeButton(QStyle::SP_TitleBarNormalButton, tr("Float"), this);
    QToolButton *closes = makeButton(QStyle::SP_TitleBarCloseButton, tr("Close"), this);
    connect(floats, &QToolButton::clicked, dock, [dock] { dock->setFloating(!dock->isFloating()); });
    connect(closes, &QToolButton::clicked, dock, &QWidget::close);

    m_layout = new QGridLayout(this);
    const int margin = style()->pixelMetric(QStyle::PM_DockWidgetTitleMargin);
    m_layout->setContentsMargins(margin + 2, margin, margin, margin);
    m_layout->setHorizontalSpacing(fontMetrics().averageCharWidth());
    m_layout->setVerticalSpacing(margin);
    m_layout->addWidget(title, 0, TitleColumn);
    m_layout->setColumnStretch(StretchColumn, 1);
    m_layout->addWidget(floats, 0, FloatColumn);
    m_layout->addWidget(closes, 0, CloseColumn);
    m_besideNews = {title, floats, closes};
    // A dock that is narrower still cuts the news, and is not held open by them.
    m_news->setMinimumWidth(1);
    placeNews();
    dock->setTitleBarWidget(this);
}

void DockTitleBar::placeNews()
{
    const QMargins margins = m_layout->contentsMargins();
    int needed = margins.left() + margins.right() + m_news->sizeHint().width();
    for (const QWidget *other : qAsConst(m_besideNews))
        needed += other->sizeHint().width() + m_layout->horizontalSpacing();
    const int row = needed <= width() ? 0 : 1;
    if (std::exchange(m_newsRow, row) == row)
        return;
    m_layout->removeWidget(m_news);
    if (row == 0)
        m_layout->addWidget(m_news, row, NewsColumn);
    else
        m_layout->addWidget(m_news, row, TitleColumn, 1, CloseColumn + 1, Qt::AlignLeft);
}

void DockTitleBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeNews();
}

void DockTitleBar::setNews(const QString &html)
{
    m_news->setText(html);
    m_news->setToolTip(html); // whole, where the dock is narrow
    m_news->setVisible(!html.isEmpty());
    placeNews();
}

QString DockTitleBar::news() const
{
    return m_news->text();
}
