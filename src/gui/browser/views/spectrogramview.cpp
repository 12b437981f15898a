#include "gui/browser/views/spectrogramview.h"

#include "axis/spectrogramaxis.h"
#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/plaintooltip.h"
#include "gui/browser/controls/resizer.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/controls/viewlayout.h"
#include "gui/browser/drawing/colorfit.h"
#include "gui/common/menubutton.h"

#include <QAction>
#include <QActionGroup>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QSignalBlocker>
#include <QToolButton>

#include <cmath>

namespace Tsb {

namespace {

constexpr int initialHeight = 120;
constexpr int minimumTargetHeight = 32;
constexpr int controlSpacing = 3;
constexpr double markOpacity = 0.3;
constexpr double farthestLimit = 300; ///< decades; 10 to the power of a limit stays a number

bool areUsableLimits(double lower, double upper)
{
    return Colorbar::areUsable(lower, upper) && std::abs(lower) <= farthestLimit && std::abs(upper) <= farthestLimit;
}

QString mapData(const QString &name, bool white)
{
    return QStringLiteral("%1-%2").arg(name, white ? QStringLiteral("w") : QStringLiteral("d"));
}

Colormap::Map mapOf(const QString &name)
{
    return Colormap::make(Colormap::indexOfName(name.toStdString()));
}

QToolButton *makeButton(const QString &text, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(text);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return button;
}

ExpSpinBox *makeLimitBox(double value, QWidget *parent)
{
    auto *box = new ExpSpinBox(parent);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    box->setRange(1e-300, 1e300);
    box->setValue(value);
    return box;
}

QString toolTipOf(const QString &name, const QString &inverter)
{
    if (inverter.isEmpty())
        return plainToolTip(SpectrogramView::tr("Distribution: %1").arg(name));
    return SpectrogramView::tr("Distribution: %1").arg(name.toHtmlEscaped()) +
           SpectrogramView::tr("<br>Inverter: %2").replace(QLatin1String("%2"), inverter.toHtmlEscaped());
}

} // namespace

SpectrogramView::SpectrogramView(QWidget *parent) : MultiPlotView(parent), m_viewColormap(mapOf(m_colormapName))
{
    setFixedHeight(initialHeight);
    makeControls();
    makeActions();
    connectControls();

    auto *noSpectra = new QLabel(tr("No spectra"), this);
    noSpectra->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    noSpectra->setAlignment(Qt::AlignCenter);
    noSpectra->setEnabled(false);
    m_noSpectraFrame = noSpectra;
    m_resizer = new Resizer(this, this);
    m_resizer->setMinimumTargetHeight(minimumTargetHeight);

    viewLayout()->insertRow(0, m_controls, nullptr);
    viewLayout()->insertRow(1, nullptr, m_noSpectraFrame);
    viewLayout()->insertRow(2, m_resizer, nullptr);
}

SpectrogramView::~SpectrogramView() = default;

// ---- controls

void SpectrogramView::makeControls()
{
    m_controls = new QWidget(this);
    m_spectraButton = makeButton(tr("Spectrogram"), m_controls);
    m_spectraButton->setCheckable(true);
    m_optionsButton = new MenuButton(m_controls);
    m_optionsButton->setText(tr("Options"));
    m_smoothingLabel = new QLabel(tr("Smoothing:"), m_controls);
    m_smoothingLabel->hide();
    m_smoothingSpinBox = new QDoubleSpinBox(m_controls);
    m_smoothingSpinBox->setDecimals(1);
    m_smoothingSpinBox->setSingleStep(0.1);
    m_smoothingSpinBox->setRange(0.0, 10.0);
    m_smoothingSpinBox->hide();
    m_colorbar = new Colorbar(Qt::Horizontal, m_controls);
    m_colorbar->setColormap(m_viewColormap);
    m_lowSpinBox = makeLimitBox(std::pow(10.0, m_colorbar->lower()), m_controls);
    m_highSpinBox = makeLimitBox(std::pow(10.0, m_colorbar->upper()), m_controls);

    auto *layout = new QHBoxLayout(m_controls);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(controlSpacing);
    layout->addWidget(m_spectraButton);
    layout->addWidget(m_optionsButton);
    layout->addWidget(m_smoothingLabel);
    layout->addWidget(m_smoothingSpinBox);
    layout->addStretch();
    layout->addWidget(m_lowSpinBox);
    layout->addWidget(m_colorbar);
    layout->addWidget(m_highSpinBox);

    m_selectionWidget = new SpectraSelectionWidget(true, this);
}

void SpectrogramView::makeActions()
{
    m_fitAction = new QAction(tr("Fit color map"), this);
    m_fillGapsAction = new QAction(tr("Fill gaps"), this);
    m_fillGapsAction->setToolTip(tr("Fill gaps between records"));
    m_fillGapsAction->setCheckable(true);
    m_fillGapsAction->setChecked(true);
    m_smoothingAction = new QAction(tr("Smoothing"), this);
    m_smoothingAction->setToolTip(tr("Enable spectrum smoothing"));
    m_smoothingAction->setCheckable(true);
    m_colormapAction = new QAction(tr("Color map"), this);
    m_colormapAction->setMenu(makeColormapMenu());

    auto *menu = new QMenu(m_optionsButton);
    menu->setToolTipsVisible(true);
    addSeparator();
    for (QAction *action : {m_fitAction, m_fillGapsAction, m_smoothingAction, m_colormapAction}) {
        menu->addAction(action);
        addAction(action);
    }
    m_optionsButton->setMenu(menu);
}

QMenu *SpectrogramView::makeColormapMenu()
{
    m_colormapGroup = new QActionGroup(this);
    auto *menu = new QMenu(m_optionsButton);
    connect(menu, &QMenu::aboutToHide, this, &SpectrogramView::restoreColormap);
    for (bool white : {false, true}) {
        QMenu *maps = menu->addMenu(white ? tr("Light background") : tr("Dark background"));
        connect(maps, &QMenu::aboutToHide, this, &SpectrogramView::restoreColormap);
        for (const std::string &entry : Colormap::names()) {
            const QString name = QString::fromStdString(entry);
            QAction *action = maps->addAction(withUpperFirst(name));
            action->setCheckable(true);
            action->setData(mapData(name, white));
            action->setChecked(name == m_colormapName && white == m_whiteBackground);
            m_colormapGroup->addAction(action);
            connect(action, &QAction::triggered, this, [this, name, white] { setColormap(name, white); });
        }
    }
    connect(m_colormapGroup, &QActionGroup::hovered, this, &SpectrogramView::previewColormap);
    return menu;
}

void SpectrogramView::connectControls()
{
    // From the user
    connect(m_spectraButton, &QToolButton::toggled, this, &SpectrogramView::showSettingsForm);
    connect(m_selectionWidget, &SpectraSelectionWidget::visibilityChanged, m_spectraButton, &QToolButton::setChecked);
    connect(m_selectionWidget, &SpectraSelectionWidget::selectionChanged, this, &SpectrogramView::chooseSpectra);
    connect(m_fitAction, &QAction::triggered, this, &SpectrogramView::fitScale);
    connect(m_fillGapsAction, &QAction::toggled, this,
            [this](bool on) { forEachPlot([on](SpectrogramPlot &plot) { plot.setFillGaps(on); }); });
    connect(m_smoothingAction, &QAction::toggled, this, &SpectrogramView::setSmoothingEnabled);
    connect(m_lowSpinBox, &ExpSpinBox::valueChanged, this, &SpectrogramView::lowSpinBoxChanged);
    connect(m_highSpinBox, &ExpSpinBox::valueChanged, this, &SpectrogramView::highSpinBoxChanged);
    connect(m_lowSpinBox, &ExpSpinBox::editingFinished, this, &SpectrogramView::showLimitsInSpinBoxes);
    connect(m_highSpinBox, &ExpSpinBox::editingFinished, this, &SpectrogramView::showLimitsInSpinBoxes);
    // From the bar, which owns the limits
    connect(m_colorbar, &Colorbar::limitsChanged, this, &SpectrogramView::setColorLimits);
    connect(m_colorbar, &Colorbar::doubleClicked, this, &SpectrogramView::fitScale);
    connect(m_colorbar, &Colorbar::mouseMarkedValue, this, &SpectrogramView::highlightValue);
}

void SpectrogramView::showSettingsForm(bool visible)
{
    m_spectraButton->setChecked(visible);
    if (visible == m_selectionWidget->isVisible())
        return;
    if (visible)
        m_selectionWidget->popUpBelow(m_spectraButton);
    else
        m_selectionWidget->hide();
}

// ---- spectra and rows

void SpectrogramView::setUiInfo(std::shared_ptr<UiInfo> uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    m_uiInfo = std::move(uiInfo);
    m_selectionWidget->setUiInfo(m_uiInfo);
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &SpectrogramView::updateRows);
    updateRows();
}

void SpectrogramView::setVisibleSpectra(QSet<QString> ids)
{
    if (ids == m_visibleSpectra)
        return;
    m_visibleSpectra = ids;
    m_selectionWidget->setSelectedSpectra(ids);
    updateRows();
}

void SpectrogramView::chooseSpectra(const QSet<QString> &ids)
{
    if (ids == m_visibleSpectra)
        return;
    setVisibleSpectra(ids);
    if (std::isnan(m_colorLower))
        fitScale();
}

void SpectrogramView::updateRows()
{
    viewLayout()->setEnabled(false);
    int used = 0;
    if (m_uiInfo) {
        for (const auto &info : m_uiInfo->spectrumInfos()) {
            if (!m_visibleSpectra.contains(info->hash))
                continue;
            if (used == rows().size())
                appendRow();
            configureRow(rows()[used++], info);
        }
    }
    while (rows().size() > used)
        removeLastRow();
    m_noSpectraFrame->setVisible(rows().isEmpty());
    viewLayout()->setEnabled(true);
    activateLayout();
}

void SpectrogramView::appendRow()
{
    auto *plot = new SpectrogramPlot(this);
    plot->setMouseTracking(true);
    auto *scale = new VerticalScaleWidget(this);
    scale->setReadOnly(true);
    scale->setMinMax(0, 1, true);
    scale->setAppearLog(true);
    connect(plot, &Plot::valueCursorChanged, scale, &VerticalScaleWidget::showCursor);
    connect(this, &SpectrogramView::requestColorLimits, plot, &SpectrogramPlot::setColorLimits);
    connect(this, &SpectrogramView::smoothingChanged, plot, &SpectrogramPlot::setSmoothingCoef);
    plot->setFillGaps(m_fillGapsAction->isChecked());
    plot->setSmoothingCoef(m_smoothingEnabled ? m_smoothingSpinBox->value() : 0.0);
    plot->setColormap(m_viewColormap);
    plot->setWhiteBackground(m_whiteBackground);
    if (!std::isnan(m_colorLower))
        plot->setColorLimits(m_colorLower, m_colorUpper);
    addRow(scale, plot);
    viewLayout()->insertRow(viewLayout()->rowCount() - 1, scale, plot);
    scale->show();
    plot->show();
}

void SpectrogramView::removeLastRow()
{
    const Row row = takeLastRow();
    viewLayout()->removeRow(viewLayout()->rowCount() - 2); // the one above the grip
    delete row.plot;
    delete row.scale;
}

void SpectrogramView::configureRow(const Row &row, const SpectMath::SpectrumInfoPointer &info)
{
    const auto axis = spectrogramAxis(*info);
    if (!axis) {
        row.plot->setSpectrum(nullptr, false);
        row.scale->setLabel(tr("Invalid spectrum"));
        row.scale->setToolTip(row.scale->label());
        row.scale->setIcon(QPixmap());
        row.scale->setMinMax(0, 1, true);
        return;
    }
    const QString name = m_uiInfo->spectrumName(info.get());
    row.plot->setSpectrum(info, axis->reversedRows);
    row.scale->setMinMax(axis->bottom, axis->top, true);
    row.scale->setLabel(QStringLiteral("%1\n(%2)").arg(name, info->concentrationUnit.toString()));
    const QColor color = m_uiInfo->spectrumColor(info.get());
    row.scale->setIcon(color.isValid() ? spectrumColorPixmap(color) : QPixmap());
    row.scale->setToolTip(toolTipOf(name, info->inverterName));
}

// ---- colours

void SpectrogramView::setColormap(const QString &name, bool white)
{
    const Colormap::Map map = mapOf(name);
    if (!map || (name == m_colormapName && white == m_whiteBackground))
        return;
    m_colormapName = name;
    m_whiteBackground = white;
    m_viewColormap = map;
    showColors(map, white);
    m_colorbar->setColormap(map);
    for (QAction *action : m_colormapGroup->actions()) {
        if (action->data().toString() == mapData(name, white))
            action->setChecked(true);
    }
}

void SpectrogramView::showColors(const Colormap::Map &colormap, bool white)
{
    forEachPlot([&](SpectrogramPlot &plot) {
        plot.setColormap(colormap);
        plot.setWhiteBackground(white);
    });
}

void SpectrogramView::previewColormap(QAction *action)
{
    const QString entry = action->data().toString();
    showColors(mapOf(entry.section(QLatin1Char('-'), 0, 0)), entry.endsWith(QLatin1String("-w")));
}

void SpectrogramView::restoreColormap()
{
    showColors(m_viewColormap, m_whiteBackground);
}

void SpectrogramView::highlightValue(double value)
{
    Colormap::Map map = m_viewColormap;
    if (!std::isnan(value)) {
        const double lower = m_colorbar->lower();
        map = Colormap::ThresholdColormap(m_viewColormap, (value - lower) / (m_colorbar->upper() - lower), markOpacity);
    }
    showColors(map, m_whiteBackground);
    m_colorbar->setColormap(map);
    m_colorbar->markValue(value);
}

void SpectrogramView::fitScale()
{
    DecadeHistogram histogram;
    forEachPlot([&](SpectrogramPlot &plot) { plot.addVisibleValuesTo(histogram); });
    if (const auto limits = colorLimits(histogram))
        setColorLimits(limits->first, limits->second);
}

void SpectrogramView::setColorLimits(double lower, double upper)
{
    if (!areUsableLimits(lower, upper))
        return showLimitsInSpinBoxes();
    if (lower == m_colorLower && upper == m_colorUpper)
        return;
    applyColorLimits(lower, upper);
    showLimitsInSpinBoxes();
    m_colorbar->setLimits(lower, upper);
    Q_EMIT requestColorLimits(lower, upper);
}

void SpectrogramView::applyColorLimits(double lower, double upper)
{
    m_colorLower = lower;
    m_colorUpper = upper;
    m_colorLowerValue = std::pow(10.0, lower);
    m_colorUpperValue = std::pow(10.0, upper);
}

void SpectrogramView::showLimitsInSpinBoxes()
{
    const QSignalBlocker low(m_lowSpinBox), high(m_highSpinBox);
    const bool set = !std::isnan(m_colorLower);
    m_lowSpinBox->setValue(set ? m_colorLowerValue : std::pow(10.0, m_colorbar->lower()));
    m_highSpinBox->setValue(set ? m_colorUpperValue : std::pow(10.0, m_colorbar->upper()));
}

void SpectrogramView::adoptBarLimits()
{
    if (std::isnan(m_colorLower))
        applyColorLimits(m_colorbar->lower(), m_colorbar->upper());
}

void SpectrogramView::lowSpinBoxChanged(double value)
{
    adoptBarLimits();
    if (value == m_colorLowerValue)
        return;
    const double lower = std::log10(value);
    if (!(value < m_colorUpperValue) || !areUsableLimits(lower, m_colorUpper))
        return refuseLimitOf(m_lowSpinBox);
    m_colorLowerValue = value;
    m_colorLower = lower;
    m_colorbar->setLimits(m_colorLower, m_colorUpper);
    Q_EMIT requestColorLimits(m_colorLower, m_colorUpper);
}

void SpectrogramView::highSpinBoxChanged(double value)
{
    adoptBarLimits();
    if (value == m_colorUpperValue)
        return;
    const double upper = std::log10(value);
    if (!(value > m_colorLowerValue) || !areUsableLimits(m_colorLower, upper))
        return refuseLimitOf(m_highSpinBox);
    m_colorUpperValue = value;
    m_colorUpper = upper;
    m_colorbar->setLimits(m_colorLower, m_colorUpper);
    Q_EMIT requestColorLimits(m_colorLower, m_colorUpper);
}

/// A text in the middle of being written stays until the user is done: a limit of 250 starts as 2.
void SpectrogramView::refuseLimitOf(ExpSpinBox *box)
{
    if (!box->isBeingEdited())
        showLimitsInSpinBoxes();
}

// ---- smoothing

void SpectrogramView::setSmoothingEnabled(bool on)
{
    if (on == m_smoothingEnabled)
        return;
    m_smoothingEnabled = on;
    m_smoothingLabel->setVisible(on);
    m_smoothingSpinBox->setVisible(on);
    m_smoothingAction->setChecked(on);
    const auto boxChanged = qOverload<double>(&QDoubleSpinBox::valueChanged);
    if (on) {
        Q_EMIT smoothingChanged(m_smoothingSpinBox->value());
        connect(m_smoothingSpinBox, boxChanged, this, &SpectrogramView::smoothingChanged);
    } else {
        disconnect(m_smoothingSpinBox, boxChanged, this, &SpectrogramView::smoothingChanged);
        Q_EMIT smoothingChanged(0.0);
    }
}

} // namespace Tsb
