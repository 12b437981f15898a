#include "gui/morvantide/emptywindow.h"

#include "gui/morvantide/recentfolders.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace {

constexpr int widest = 72; // average characters
constexpr double titleSize = 1.4;

QLabel *makeLabel(const QString &text, QWidget *parent)
{
    auto *const label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

QString buttonText(const QAction &command)
{
    QString text = command.iconText();
    const QString key = command.shortcut().toString(QKeySequence::NativeText);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return key.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, key);
}

} // namespace

EmptyWindow::EmptyWindow(QWidget *covered, const QList<QAction *> &commands, QWidget *window)
    : QWidget(window), m_covered(covered), m_recentLabel(new QLabel(tr("&Recent folders:"), this)),
      m_recent(new QListWidget(this))
{
    setObjectName(QStringLiteral("emptyWindow"));
    setAutoFillBackground(true);
    auto *const title = makeLabel(tr("No data are open"), this);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * titleSize);
    title->setFont(font);
    m_recentLabel->setBuddy(m_recent);
    m_recent->setObjectName(QStringLiteral("recentFolders"));
    m_recent->setAccessibleName(tr("Recent folders"));
    m_recent->setTextElideMode(Qt::ElideMiddle);
    m_recent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_recent->setToolTip(tr("A click opens the folder; Return shows the choice first"));

    auto *const column = new QVBoxLayout;
    column->addStretch(1);
    column->addWidget(title);
    column->addWidget(makeButtons(commands));
    column->addWidget(makeLabel(tr("Or drop a folder, or files of data, on this window."), this));
    column->addSpacing(fontMetrics().height());
    column->addWidget(m_recentLabel);
    column->addWidget(m_recent, 4);
    column->addStretch(1);
    auto *const row = new QHBoxLayout(this);
    row->addStretch();
    row->addLayout(column, 1000);
    row->addStretch();
    for (QWidget *widget : std::initializer_list<QWidget *>{title, m_recent})
        widget->setMaximumWidth(widest * fontMetrics().averageCharWidth());

    connect(m_recent, &QListWidget::itemClicked, this,
            [this](QListWidgetItem *item) { Q_EMIT chosen(choiceAt(m_recent->row(item))); });
    m_covered->installEventFilter(this);
    window->installEventFilter(this);
    setRecent({});
    hide();
}

QWidget *EmptyWindow::makeButtons(const QList<QAction *> &commands)
{
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QAction *command : commands) {
        auto *const button = new QPushButton(command->icon(), buttonText(*command), row);
        button->setAutoDefault(true); // Return presses it
        connect(button, &QPushButton::clicked, command, &QAction::trigger);
        layout->addWidget(button);
        m_firstButton = m_firstButton ? m_firstButton : button;
    }
    layout->addStretch();
    return row;
}

void EmptyWindow::setRecent(const QVector<QVariantMap> &choices)
{
    m_choices = choices;
    m_recent->clear();
    for (const QVariantMap &choice : choices) {
        auto *const item = new QListWidgetItem(recentFolderText(choice), m_recent);
        item->setToolTip(item->text().toHtmlEscaped());
    }
    m_recent->setCurrentRow(0);
    m_recent->setVisible(!choices.isEmpty());
    m_recentLabel->setVisible(!choices.isEmpty());
}

// ---- coming and going

void EmptyWindow::setShown(bool on)
{
    if (on == !isHidden())
        return;
    cover();
    setVisible(on);
    if (on)
        takeFocus();
}

void EmptyWindow::takeFocus()
{
    raise();
    if (m_choices.isEmpty())
        m_firstButton->setFocus();
    else
        m_recent->setFocus();
}

void EmptyWindow::cover()
{
    setGeometry(QRect(m_covered->mapTo(parentWidget(), QPoint()), m_covered->size()));
    raise();
}

// ---- keys

/// A line or a list of a dock keeps Return for itself.
bool EmptyWindow::hasKeys() const
{
    const QWidget *const focused = window()->focusWidget();
    return isVisible() && (!focused || focused == window() || isAncestorOf(focused));
}

bool EmptyWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_covered) {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Move || event->type() == QEvent::Show ||
            event->type() == QEvent::ZOrderChange)
            cover();
        return false;
    }
    if (event->type() != QEvent::KeyPress || !hasKeys())
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    Q_EMIT offered(choiceAt(std::max(0, m_recent->currentRow())));
    return true;
}
