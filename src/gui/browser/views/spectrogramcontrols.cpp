#include "gui/browser/views/spectrogramcontrols.h"

#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/colorlimitbox.h"
#include "gui/browser/controls/colormapmenu.h"
#include "gui/browser/controls/zeroswatch.h"
#include "gui/common/menubutton.h"

#include <QAction>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace Tsb {

namespace {

constexpr int spacing = 3;
constexpr int leastBarWidth = 48; ///< where there is little room the bar gives way before texts and numbers do

} // namespace

SpectrogramControls::SpectrogramControls(ColorLimits &limits, QWidget *parent)
    : QWidget(parent), m_buttonRow(new QHBoxLayout), m_colorRow(new QHBoxLayout), m_rows(new QHBoxLayout(this)),
      m_spectraButton(new QToolButton(this)), m_optionsButton(new MenuButton(this)),
      m_smoothingLabel(new QLabel(tr("Smoothing:"), this)), m_smoothingBox(new QDoubleSpinBox(this)),
      m_colorbar(new Colorbar(Qt::Horizontal, limits, this)), m_colormaps(new ColormapMenu(m_optionsButton)),
      m_zeroSwatch(new ZeroSwatch(this))
{
    // Raised, so that both look like something to press.
    m_spectraButton->setText(tr("Spectrogram"));
    m_spectraButton->setToolTip(tr("Choose the spectra"));
    m_spectraButton->setArrowType(Qt::DownArrow);
    m_spectraButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_spectraButton->setCheckable(true);
    m_optionsButton->setText(tr("Options"));
    m_optionsButton->setAutoRaise(false);
    m_smoothingBox->setAccessibleName(tr("Smoothing"));
    m_smoothingBox->setDecimals(1);
    m_smoothingBox->setSingleStep(0.1);
    m_smoothingBox->setRange(0.0, 10.0);
    m_smoothingLabel->hide();
    m_smoothingBox->hide();
    m_zeroSwatch->hide();
    m_colorbar->setMinimumWidth(leastBarWidth);
    makeOptions();

    m_rows->setContentsMargins(0, 0, 0, 0);
    for (QBoxLayout *row : {m_rows, m_buttonRow, m_colorRow})
        row->setSpacing(spacing);
    for (QWidget *widget :
         std::initializer_list<QWidget *>{m_spectraButton, m_optionsButton, m_smoothingLabel, m_smoothingBox})
        m_buttonRow->addWidget(widget);
    m_buttonRow->addStretch();
    m_colorRow->addWidget(new ColorLimitBox(limits, ColorLimitBox::Lower, this));
    m_colorRow->addWidget(m_zeroSwatch);
    m_colorRow->addWidget(m_colorbar);
    m_colorRow->addWidget(new ColorLimitBox(limits, ColorLimitBox::Upper, this));
    m_rows->addLayout(m_buttonRow);
    m_rows->addLayout(m_colorRow);

    connect(m_colorbar, &Colorbar::doubleClicked, this, &SpectrogramControls::fitRequested);
    connect(m_fillGapsAction, &QAction::toggled, this, &SpectrogramControls::fillGapsChanged);
    connect(m_markZerosAction, &QAction::toggled, m_zeroSwatch, &QWidget::setVisible);
    connect(m_markZerosAction, &QAction::toggled, this, &SpectrogramControls::markZerosChanged);
    connect(m_lockAction, &QAction::toggled, this, &SpectrogramControls::lockColorsChanged);
    connect(m_smoothingAction, &QAction::toggled, this, &SpectrogramControls::showSmoothing);
    connect(m_smoothingBox, qOverload<double>(&QDoubleSpinBox::valueChanged), this, [this](double width) {
        if (isSmoothing())
            Q_EMIT smoothingChanged(width);
    });
}

void SpectrogramControls::makeOptions()
{
    connect(addOption(tr("Fit color map")), &QAction::triggered, this, &SpectrogramControls::fitRequested);
    m_fillGapsAction = addSwitch(tr("Fill gaps"), tr("Fill gaps between records"));
    m_fillGapsAction->setChecked(true);
    m_smoothingAction = addSwitch(tr("Smoothing"), tr("Enable spectrum smoothing"));
    addOption(tr("Color map"))->setMenu(m_colormaps);
    m_markZerosAction = addSwitch(tr("Mark zeros"), tr("Show values of 0 and below as stripes"));
    m_lockAction = addSwitch(tr("Lock color limits"),
                             tr("The same colors for the same values in all spectrograms whose limits are locked"));

    auto *const menu = new QMenu(m_optionsButton);
    menu->setToolTipsVisible(true);
    menu->addActions(m_options);
    m_optionsButton->setMenu(menu);
}

QAction *SpectrogramControls::addOption(const QString &text, const QString &toolTip)
{
    auto *const action = new QAction(text, this);
    if (!toolTip.isEmpty())
        action->setToolTip(toolTip);
    m_options << action;
    return action;
}

QAction *SpectrogramControls::addSwitch(const QString &text, const QString &toolTip)
{
    QAction *const action = addOption(text, toolTip);
    action->setCheckable(true);
    return action;
}

void SpectrogramControls::fitRows()
{
    const int bar = std::max(m_colorbar->sizeHint().width(), leastBarWidth);
    const int needed = m_buttonRow->sizeHint().width() + spacing + m_colorRow->sizeHint().width() - bar + leastBarWidth;
    m_rows->setDirection(width() < needed ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void SpectrogramControls::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitRows();
}

void SpectrogramControls::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitRows();
}

bool SpectrogramControls::fillsGaps() const
{
    return m_fillGapsAction->isChecked();
}

void SpectrogramControls::setFillGaps(bool on)
{
    m_fillGapsAction->setChecked(on);
}

bool SpectrogramControls::marksZeros() const
{
    return m_markZerosAction->isChecked();
}

void SpectrogramControls::setMarkZeros(bool on)
{
    m_markZerosAction->setChecked(on);
}

bool SpectrogramControls::locksColors() const
{
    return m_lockAction->isChecked();
}

void SpectrogramControls::setLockColors(bool on)
{
    m_lockAction->setChecked(on);
}

bool SpectrogramControls::isSmoothing() const
{
    return m_smoothingAction->isChecked();
}

void SpectrogramControls::setSmoothing(bool on)
{
    m_smoothingAction->setChecked(on);
}

double SpectrogramControls::smoothingWidth() const
{
    return m_smoothingBox->value();
}

void SpectrogramControls::setSmoothingWidth(double width)
{
    m_smoothingBox->setValue(width);
}

void SpectrogramControls::showSmoothing(bool on)
{
    m_smoothingLabel->setVisible(on);
    m_smoothingBox->setVisible(on);
    fitRows();
    Q_EMIT smoothingChanged(usedSmoothing());
}

} // namespace Tsb
