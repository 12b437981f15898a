#include "gui/common/docktitlebar.h"

#include <QDockWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace {

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

    auto *layout = new QHBoxLayout(this);
    const int margin = style()->pixelMetric(QStyle::PM_DockWidgetTitleMargin);
    layout->setContentsMargins(margin + 2, margin, margin, margin);
    layout->setSpacing(fontMetrics().averageCharWidth());
    layout->addWidget(title);
    layout->addWidget(m_news);
    layout->addStretch();
    layout->addWidget(floats);
    layout->addWidget(closes);
    // A narrow dock cuts the news, and is not held open by them.
    m_news->setMinimumWidth(1);
    dock->setTitleBarWidget(this);
}

void DockTitleBar::setNews(const QString &html)
{
    m_news->setText(html);
    m_news->setToolTip(html); // whole, where the dock is narrow
    m_news->setVisible(!html.isEmpty());
}

QString DockTitleBar::news() const
{
    return m_news->text();
}
