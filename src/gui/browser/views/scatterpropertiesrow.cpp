#include "gui/browser/views/scatterpropertiesrow.h"

#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/common/menubutton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace Tsb {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;

namespace {

constexpr int spacing = 3;

QString titleOf(int type)
{
    switch (type) {
    case ScatterPlotSettings::Electrometer:
        return ScatterPropertiesRow::tr("Electrometer");
    case ScatterPlotSettings::Variable:
        return ScatterPropertiesRow::tr("Record variable");
    case ScatterPlotSettings::Concentration:
        return ScatterPropertiesRow::tr("Concentration");
    default:
        return ScatterPropertiesRow::tr("Inversion parameter");
    }
}

QToolButton *makeButton(const QString &text, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(text);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/// Chooses the item of that data; with none of it, no item.
void showData(QComboBox *combo, const QVariant &data)
{
    const QSignalBlocker blocker(combo);
    combo->setCurrentIndex(combo->findData(data));
}

} // namespace

ScatterPropertiesRow::ScatterPropertiesRow(QWidget *parent) : QWidget(parent)
{
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(spacing);
    auto *row = m_row = new QHBoxLayout;
    row->setSpacing(spacing);
    rows->addLayout(row);
    m_titleButton = makeButton(QString(), this);
    m_titleButton->setCheckable(true);
    m_titleButton->setChecked(true);
    m_titleButton->setToolTip(tr("Show or hide the choices for this plot"));
    connect(m_titleButton, &QToolButton::toggled, this, &ScatterPropertiesRow::showSettingsForm);
    row->addWidget(m_titleButton);
    m_optionsButton = new MenuButton(this);
    m_optionsButton->setText(tr("Options"));
    m_optionsButton->setAutoRaise(false); // raised as the others: something to press
    m_optionsButton->setFocusPolicy(Qt::TabFocus);
    row->addWidget(m_optionsButton);

    m_electrometerCombo = addCombo(tr("Electrometer"));
    m_variableCombo = addCombo(tr("Record variable"));
    m_parameterCombo = addCombo(tr("Inversion parameter"));
    for (const auto parameter :
         {SpectrumParameter::BackErrorMeanSq, SpectrumParameter::BackErrorMeanAvg, SpectrumParameter::SumBackError})
        m_parameterCombo->addItem(displayText(parameter), int(parameter));
    makeFractionForm();
    row->addWidget(m_fractionForm);

    m_spectraButton = makeButton(tr("Spectra"), this);
    m_spectraButton->setToolTip(tr("Choose the spectra"));
    m_spectraButton->setArrowType(Qt::DownArrow);
    m_spectraButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_spectra = new SpectraSelectionWidget(true, this);
    row->addWidget(m_spectraButton);
    row->addStretch();

    connect(m_electrometerCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { Q_EMIT electrometerChosen(m_electrometerCombo->currentData().toInt()); });
    connect(m_variableCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { Q_EMIT variableChosen(m_variableCombo->currentData().toString()); });
    connect(m_parameterCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { Q_EMIT parameterChosen(SpectrumParameter(m_parameterCombo->currentData().toInt())); });
    connect(m_spectra, &SpectraSelectionWidget::selectionChanged, this, &ScatterPropertiesRow::spectraChosen);
    connect(m_spectraButton, &QToolButton::clicked, this, [this] { m_spectra->popUpBelow(m_spectraButton); });
}

QComboBox *ScatterPropertiesRow::addCombo(const QString &toolTip)
{
    auto *combo = new QComboBox(this);
    combo->setToolTip(toolTip);
    combo->setAccessibleName(toolTip);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_row->addWidget(combo);
    return combo;
}

/// The form of fractions goes to a row of its own where its texts would be cut.
void ScatterPropertiesRow::placeFractionForm()
{
    int needed = m_fractionForm->sizeHint().width();
    for (int i = 0; i < m_row->count(); ++i) {
        const QWidget *const widget = m_row->itemAt(i)->widget();
        if (widget && widget != m_fractionForm && !widget->isHidden())
            needed += widget->sizeHint().width() + spacing;
    }
    const bool isBeside = m_fractionForm->isHidden() || needed <= width();
    if (isBeside == (m_row->indexOf(m_fractionForm) >= 0))
        return;
    layout()->removeWidget(m_fractionForm);
    if (isBeside)
        m_row->insertWidget(m_row->indexOf(m_spectraButton), m_fractionForm);
    else
        static_cast<QVBoxLayout *>(layout())->addWidget(m_fractionForm, 0, Qt::AlignLeft);
}

bool ScatterPropertiesRow::event(QEvent *event)
{
    const bool isTaken = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest)
        placeFractionForm();
    return isTaken;
}

void ScatterPropertiesRow::makeFractionForm()
{
    m_fractionForm = new QWidget(this);
    auto *form = new QHBoxLayout(m_fractionForm);
    form->setContentsMargins(0, 0, 0, 0);
    form->setSpacing(spacing);
    m_concentrationCombo = new QComboBox(m_fractionForm);
    m_concentrationCombo->setAccessibleName(tr("Concentration type"));
    for (const auto &item : {std::make_pair(tr("Number"), ConcentrationType::number),
                             std::make_pair(tr("Diameter"), ConcentrationType::diameter),
                             std::make_pair(tr("Surface"), ConcentrationType::surface),
                             std::make_pair(tr("Volume"), ConcentrationType::volume)})
        m_concentrationCombo->addItem(item.first, int(item.second));
    m_totalCheck = new QCheckBox(tr("Total"), m_fractionForm);
    m_fractionScaleCombo = new QComboBox(m_fractionForm);
    m_fractionScaleCombo->setAccessibleName(tr("Quantity of the range"));
    m_fractionScaleCombo->addItem(tr("Diameter"), int(DistributionScale::diameter));
    m_fractionScaleCombo->addItem(tr("Mobility"), int(DistributionScale::mobility));
    m_rangeLabel = new QLabel(m_fractionForm);
    m_smallerLimit = new ExpSpinBox(m_fractionForm);
    m_largerLimit = new ExpSpinBox(m_fractionForm);
    m_smallerLimit->setAccessibleName(tr("Smaller limit"));
    m_largerLimit->setAccessibleName(tr("Larger limit"));
    for (ExpSpinBox *limit : {m_smallerLimit, m_largerLimit})
        limit->setRange(0, std::numeric_limits<double>::max());
    for (QWidget *widget : {static_cast<QWidget *>(m_concentrationCombo), static_cast<QWidget *>(m_totalCheck),
                            static_cast<QWidget *>(m_fractionScaleCombo), static_cast<QWidget *>(m_rangeLabel),
                            static_cast<QWidget *>(m_smallerLimit), static_cast<QWidget *>(m_largerLimit)})
        form->addWidget(widget);

    connect(m_concentrationCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { Q_EMIT concentrationTypeChosen(ConcentrationType(m_concentrationCombo->currentData().toInt())); });
    connect(m_fractionScaleCombo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { Q_EMIT fractionScaleChosen(DistributionScale(m_fractionScaleCombo->currentData().toInt())); });
    connect(m_totalCheck, &QCheckBox::toggled, this, &ScatterPropertiesRow::totalChosen);
    connect(m_smallerLimit, &ExpSpinBox::valueChanged, this, &ScatterPropertiesRow::smallerLimitChosen);
    connect(m_largerLimit, &ExpSpinBox::valueChanged, this, &ScatterPropertiesRow::largerLimitChosen);
}

void ScatterPropertiesRow::setUiInfo(const std::shared_ptr<UiInfo> &uiInfo)
{
    m_uiInfo = uiInfo;
    m_spectra->setUiInfo(uiInfo);
    refillCombos();
}

void ScatterPropertiesRow::refillCombos()
{
    const QSignalBlocker electrometers(m_electrometerCombo), variables(m_variableCombo);
    m_electrometerCombo->clear();
    m_variableCombo->clear();
    if (const auto metadata = m_uiInfo ? m_uiInfo->metadata() : nullptr) {
        for (int i = 0; i < metadata->totalElectrometers; ++i)
            m_electrometerCombo->addItem(metadata->electrometerNames.value(i), i);
        for (const auto &variable : metadata->variables)
            m_variableCombo->addItem(variable->humanname.isEmpty() ? variable->name : variable->humanname,
                                     variable->name);
    }
    showSettings(m_settings);
}

void ScatterPropertiesRow::setOptions(const QList<QAction *> &actions)
{
    auto *menu = new QMenu(m_optionsButton);
    menu->addActions(actions);
    m_optionsButton->setMenu(menu);
}

QWidget *ScatterPropertiesRow::lastForTab() const
{
    return m_spectraButton;
}

void ScatterPropertiesRow::showSettings(const ScatterPlotSettings &settings)
{
    m_settings = settings;
    m_titleButton->setText(titleOf(settings.type));
    showData(m_electrometerCombo, settings.electrometerNumber);
    showData(m_variableCombo, settings.parameterName);
    showData(m_parameterCombo, int(settings.spectrumParameter));
    showData(m_concentrationCombo, int(settings.concentrationType));
    const bool mobility = settings.fractionScale == DistributionScale::mobility;
    showData(m_fractionScaleCombo, int(mobility ? DistributionScale::mobility : DistributionScale::diameter));
    const QSignalBlocker total(m_totalCheck), smaller(m_smallerLimit), larger(m_largerLimit), spectra(m_spectra);
    m_totalCheck->setChecked(settings.totalConcentration);
    m_rangeLabel->setText(mobility ? tr("Mobility range (cm²/V/s)") : tr("Diameter range (nm)"));
    const auto showLimit = [&](ExpSpinBox *box, const SpectMath::MobilitySize &limit) {
        box->setValue(mobility ? limit.mobility : limit.diameter);
        box->setToolTip(std::isinf(box->value()) ? tr("%1: no bound on this side").arg(m_rangeLabel->text())
                                                 : m_rangeLabel->text());
    };
    showLimit(m_smallerLimit, settings.smallerLimit);
    showLimit(m_largerLimit, settings.largerLimit);
    m_spectra->setSelectedSpectra(settings.visibleSpectra);
    showSettingsForm(m_titleButton->isChecked());
}

void ScatterPropertiesRow::showSettingsForm(bool on)
{
    const int type = m_settings.type;
    m_electrometerCombo->setVisible(on && type == ScatterPlotSettings::Electrometer);
    m_variableCombo->setVisible(on && type == ScatterPlotSettings::Variable);
    m_parameterCombo->setVisible(on && type == ScatterPlotSettings::Parameter);
    m_fractionForm->setVisible(on && type == ScatterPlotSettings::Concentration);
    m_spectraButton->setVisible(on && m_settings.usesSpectra());
    for (QWidget *limit : {static_cast<QWidget *>(m_fractionScaleCombo), static_cast<QWidget *>(m_smallerLimit),
                           static_cast<QWidget *>(m_largerLimit)})
        limit->setVisible(!m_settings.totalConcentration);
    showRangeLabel();
}

/// The label of the limits gives way where the row is too short for all: the limits' tool tips say the same.
void ScatterPropertiesRow::showRangeLabel()
{
    int needed = 0;
    for (const QWidget *widget : findChildren<QWidget *>()) {
        const bool inRow = widget->parentWidget() == this || widget->parentWidget() == m_fractionForm;
        if (inRow && !widget->isWindow() && widget != m_fractionForm && (widget == m_rangeLabel || !widget->isHidden()))
            needed += widget->sizeHint().width() + spacing;
    }
    m_rangeLabel->setVisible(!m_settings.totalConcentration && needed <= width());
}

void ScatterPropertiesRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showRangeLabel();
    placeFractionForm();
}

} // namespace Tsb
