#include "gui/browser/views/spectrogramview.h"

#include "axis/spectrogramaxis.h"
#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/colorlimitbox.h"
#include "gui/browser/controls/colorlimits.h"
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
#include <QToolButton>

#include <cmath>

namespace Tsb {

namespace {

constexpr int initialHeight = 120;
constexpr int minimumTargetHeight = 32;
constexpr int controlSpacing = 3;
constexpr double markOpacity = 0.3;
constexpr double farthestLimit = 300; ///< decades; 10 to the power of a limit stays a number

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

QString toolTipOf(const QString &name, const QString &inverter)
{
    if (inverter.isEmpty())
        return plainToolTip(SpectrogramView::tr("Distribution: %1").arg(name));
    return SpectrogramView::tr("Distribution: %1").arg(name.toHtmlEscaped()) +
           SpectrogramView::tr("<br>Inverter: %2").replace(QLatin1String("%2"), inverter.toHtmlEscaped());
}

} // namespace

SpectrogramView::SpectrogramView(QWidget *parent)
    : MultiPlotView(parent), m_limits(new ColorLimits(this, farthestLimit)), m_viewColormap(mapOf(m_colormapName))
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
    m_colorbar = new Colorbar(Qt::Horizontal, *m_limits, m_controls);
    m_colorbar->setColormap(m_viewColormap);

    auto *layout = new QHBoxLayout(m_controls);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(controlSpacing);
    layout->addWidget(m_spectraButton);
    layout->addWidget(m_optionsButton);
    layout->addWidget(m_smoothingLabel);
    layout->addWidget(m_smoothingSpinBox);
    layout->addStretch();
    layout->addWidget(new ColorLimitBox(*m_limits, ColorLimitBox::Lower, m_controls));
    layout->addWidget(m_colorbar);
    layout->addWidget(new ColorLimitBox(*m_limits, ColorLimitBox::Upper, m_controls));

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
    // From the limits
    connect(m_limits, &ColorLimits::changed, this, &SpectrogramView::requestColorLimits);
    // From the bar
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
    if (!m_limits->areSet())
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
    plot->setColorLimits(m_limits->lower(), m_limits->upper());
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
        const double threshold = (value - m_limits->lower()) / (m_limits->upper() - m_limits->lower());
        map = Colormap::ThresholdColormap(m_viewColormap, threshold, markOpacity);
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
        m_limits->set(limits->first, limits->second);
}

double SpectrogramView::colorLower() const
{
    return m_limits->areSet() ? m_limits->lower() : noValue;
}

double SpectrogramView::colorUpper() const
{
    return m_limits->areSet() ? m_limits->upper() : noValue;
}

void SpectrogramView::setColorLimits(double lower, double upper)
{
    m_limits->set(lower, upper);
}

void SpectrogramView::lowSpinBoxChanged(double value)
{
    m_limits->setLowerValue(value);
}

void SpectrogramView::highSpinBoxChanged(double value)
{
    m_limits->setUpperValue(value);
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
