#include "gui/browser/views/plotadder.h"

#include "columns/setupkeys.h"
#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/common/iconhelp.h"
#include "gui/common/menubutton.h"
#include "log/logger.h"
#include "records/recordmetadata.h"
#include "util/textescape.h"

#include <QAction>
#include <QActionGroup>
#include <QHBoxLayout>

namespace Tsb {

namespace {

// A further spectrum gets a strip that is high enough for its name and its unit, while a few of them fit on a screen.
constexpr int heightOfStrip = 72;
constexpr int mostStrips = 5;

/// The ids of all spectra, by the name of their group.
QMap<QString, QStringList> spectraByGroup(const UiInfo &uiInfo)
{
    QMap<QString, QStringList> groups;
    for (const auto &info : uiInfo.spectrumInfos())
        groups[info->opmode].append(info->hash);
    return groups;
}

/// The groups in the order of their first spectrum.
QStringList groupsInOrder(const UiInfo &uiInfo)
{
    QStringList names;
    for (const auto &info : uiInfo.spectrumInfos()) {
        if (!names.contains(info->opmode))
            names << info->opmode;
    }
    return names;
}

/// With a capital, and every character shown: "&" is no mark of a key.
QString menuText(const QString &name)
{
    return capitalized(name).replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

PlotAdder::PlotAdder(ViewStack &stack, const ViewKinds &kinds, std::shared_ptr<UiInfo> uiInfo, QObject *parent)
    : QObject(parent), m_stack(stack), m_kinds(kinds), m_uiInfo(std::move(uiInfo))
{
    makeActions();
    if (m_uiInfo) {
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &PlotAdder::reloadUiSetup);
        connect(m_uiInfo.get(), &UiInfo::requestElectrometerScatterplot, this, &PlotAdder::addElectrometerPlot);
        connect(m_uiInfo.get(), &UiInfo::requestFlagPlot, this, &PlotAdder::addFlagPlot);
        connect(m_uiInfo.get(), &UiInfo::requestVariableScatterplot, this, &PlotAdder::addDiagnosticPlot);
    }
    reloadUiSetup();
}

PlotAdder::~PlotAdder() = default;

// ---- actions and menus

QAction *PlotAdder::addAction(const QString &text, const QIcon &icon)
{
    auto *const action = new QAction(icon, text, this);
    m_actions << action;
    return action;
}

void PlotAdder::makeActions()
{
    if (m_kinds.has(SetupKeys::spectrogramView)) {
        m_spectrogramMenu = std::make_unique<QMenu>();
        m_spectrogramAction = addAction(tr("Spectrogram"), namedIcon(QStringLiteral("spectrogram")));
        connect(m_spectrogramAction, &QAction::triggered, this, [this] { addNewSpectrogramView(); });
        connect(m_spectrogramMenu.get(), &QMenu::triggered, this,
                qOverload<QAction *>(&PlotAdder::addNewSpectrogramView));
    }
    if (m_kinds.has(SetupKeys::scatterPlotView)) {
        const auto scatter = [this](const QString &text, int type) {
            QAction *const action = addAction(text, {});
            connect(action, &QAction::triggered, this, [this, type] { addNewScatterPlotView(type); });
            return action;
        };
        auto *const group = new QActionGroup(this);
        group->setExclusive(false);
        group->addAction(scatter(tr("Fraction concentration"), ScatterPlotSettings::Concentration));
        group->addAction(scatter(tr("Electrometer current"), ScatterPlotSettings::Electrometer));
        scatter(tr("Variable"), ScatterPlotSettings::Variable);
        scatter(tr("Inversion parameter"), ScatterPlotSettings::Parameter);
    }
    if (m_kinds.has(SetupKeys::opmodeView))
        connect(addAction(tr("Operating mode"), {}), &QAction::triggered, this, &PlotAdder::addNewOpmodeView);
}

QWidget *PlotAdder::makeRow()
{
    m_row = new QWidget;
    auto *const layout = new QHBoxLayout(m_row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *const button = new MenuButton(m_row);
    button->setText(tr("Add plot"));
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFocusPolicy(Qt::StrongFocus);
    auto *const menu = new PlotMenu(button);
    menu->addActions(m_actions);
    button->setMenu(menu);
    layout->addStretch();
    layout->addWidget(button);
    layout->addStretch();
    return m_row;
}

void PlotAdder::reloadUiSetup()
{
    if (!m_spectrogramMenu)
        return;
    m_spectrogramMenu->clear();
    if (m_uiInfo) {
        const auto groups = spectraByGroup(*m_uiInfo);
        for (auto group = groups.begin(); group != groups.end(); ++group)
            m_spectrogramMenu->addAction(menuText(group.key()))->setData(group.value());
    }
    m_spectrogramAction->setMenu(m_spectrogramMenu->isEmpty() ? nullptr : m_spectrogramMenu.get());
}

// ---- from the menus: the row that adds plots stays in sight

void PlotAdder::addNewOpmodeView()
{
    m_stack.addView(new OpmodeView);
    m_stack.ensureViewVisible(m_row);
}

void PlotAdder::addNewScatterPlotView(int type)
{
    ScatterPlotView *const view = addScatterPlotView(true);
    view->showType(type);
    m_stack.ensureViewVisible(m_row);
}

void PlotAdder::addNewSpectrogramView()
{
    QStringList ids;
    if (m_uiInfo && m_uiInfo->spectrumInfos().size() == 1)
        ids << m_uiInfo->spectrumInfos().first()->hash;
    addSpectrogramView(ids)->fitScale();
    m_stack.ensureViewVisible(m_row);
}

void PlotAdder::addNewSpectrogramView(QAction *action)
{
    addSpectrogramView(action->data().toStringList())->fitScale();
    m_stack.ensureViewVisible(m_row);
}

View *PlotAdder::addSpectrogramView(const QStringList &ids)
{
    View *const view = m_kinds.make(SetupKeys::spectrogramView);
    m_stack.addView(view);
    if (ids.isEmpty())
        return view;
    m_stack.activateLayouts();
    view->setVisibleSpectra(QSet<QString>(ids.begin(), ids.end()));
    view->setFixedHeight(view->height() + (std::min(ids.size(), mostStrips) - 1) * heightOfStrip);
    view->activateLayout(); // for the plots that came with the spectra
    return view;
}

ScatterPlotView *PlotAdder::addScatterPlotView(bool withProperties)
{
    View *const made = m_kinds.make(SetupKeys::scatterPlotView);
    auto *view = qobject_cast<ScatterPlotView *>(made);
    if (!view) { // asked for from elsewhere, where it is none of the menu's kinds
        delete made;
        view = new ScatterPlotView;
    }
    view->setPropertiesVisible(withProperties);
    m_stack.addView(view);
    m_stack.activateLayouts();
    return view;
}

// ---- requests from elsewhere: the new view itself comes into sight

bool PlotAdder::mayMeetRequest() const
{
    if (m_stack.hasRoom())
        return true;
    Log::Logger(QStringLiteral("gui")).log(Log::Warning, QStringLiteral("There are too many plots to add another"));
    return false;
}

void PlotAdder::addOpmodePlot()
{
    auto *const view = new OpmodeView;
    m_stack.addView(view);
    m_stack.ensureViewVisible(view);
}

void PlotAdder::addFlagPlot(const QString &flagData)
{
    if (!mayMeetRequest())
        return;
    auto *const view = new OpmodeView;
    m_stack.addView(view);
    view->showFlag(flagData);
    m_stack.ensureViewVisible(view);
}

void PlotAdder::addElectrometerPlot(int channelNumber)
{
    if (!mayMeetRequest())
        return;
    ScatterPlotView *const view = addScatterPlotView(false);
    view->setElectrometerSelection(channelNumber);
    view->showType(ScatterPlotSettings::Electrometer);
    m_stack.ensureViewVisible(view);
}

void PlotAdder::addDiagnosticPlot(const QString &channelName)
{
    if (!mayMeetRequest())
        return;
    ScatterPlotView *const view = addScatterPlotView(false);
    view->setDiagnosticSelection(channelName);
    view->showType(ScatterPlotSettings::Variable);
    m_stack.ensureViewVisible(view);
}

// ---- the default stack

void PlotAdder::addDefaultStack()
{
    if (!m_uiInfo)
        return;
    const auto groups = spectraByGroup(*m_uiInfo);
    const QStringList modes = groupsInOrder(*m_uiInfo);
    if (m_kinds.has(SetupKeys::opmodeView))
        m_stack.addView(m_kinds.make(SetupKeys::opmodeView));
    if (m_kinds.has(SetupKeys::scatterPlotView)) {
        if (!modes.isEmpty()) {
            const QStringList ids = groups.value(modes.first());
            addScatterPlotView(false)->prepareType(ScatterPlotSettings::Concentration,
                                                   QSet<QString>(ids.begin(), ids.end()));
        }
        const auto metadata = m_uiInfo->metadata();
        if (metadata && !metadata->variables.isEmpty())
            addScatterPlotView(false)->prepareType(ScatterPlotSettings::Variable, {});
    }
    for (const QString &mode : m_kinds.has(SetupKeys::spectrogramView) ? modes : QStringList())
        addSpectrogramView(groups.value(mode));
}

} // namespace Tsb
