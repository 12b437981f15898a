#include "columns/setupkeys.h"
#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"
#include "gui/common/menubutton.h"
#include "records/recordmetadata.h"

#include <QAction>
#include <QActionGroup>
#include <QHBoxLayout>

// How plots come into the browser: its menus, the requests of other views, and the stack of a folder that brings none.

namespace Tsb {

namespace {

const QString opmodeType = SetupKeys::opmodeView;
const QString scatterType = SetupKeys::scatterPlotView;
const QString spectrogramType = SetupKeys::spectrogramView;

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
QString menuText(QString name)
{
    name.replace(QLatin1Char('&'), QLatin1String("&&"));
    return name.left(1).toUpper() + name.mid(1);
}

} // namespace

// ---- actions and menus

void TimeSeriesBrowser::makeActions()
{
    makeAddPlotActions();
    auto *const autoscale = new QAction(tr("Autoscale all plots"), this);
    auto *const closeAll = new QAction(namedIcon(QStringLiteral("remove")), tr("Close all plots"), this);
    connect(autoscale, &QAction::triggered, this, &TimeSeriesBrowser::allFitScale);
    connect(closeAll, &QAction::triggered, this, &TimeSeriesBrowser::closeAllViews);
    m_viewActions << autoscale << closeAll;
}

QAction *TimeSeriesBrowser::addPlotAction(const QString &text, const QIcon &icon)
{
    auto *const action = new QAction(icon, text, this);
    m_addPlotActions << action;
    return action;
}

void TimeSeriesBrowser::makeAddPlotActions()
{
    if (hasKind(spectrogramType)) {
        m_spectrogramMenu = std::make_unique<QMenu>();
        m_spectrogramAction = addPlotAction(tr("Spectrogram"), namedIcon(QStringLiteral("spectrogram")));
        connect(m_spectrogramAction, &QAction::triggered, this, [this] { addNewSpectrogramView(); });
        connect(m_spectrogramMenu.get(), &QMenu::triggered, this,
                qOverload<QAction *>(&TimeSeriesBrowser::addNewSpectrogramView));
    }
    if (hasKind(scatterType)) {
        const auto scatter = [this](const QString &text, int type) {
            QAction *const action = addPlotAction(text);
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
    if (hasKind(opmodeType))
        connect(addPlotAction(tr("Operating mode")), &QAction::triggered, this, &TimeSeriesBrowser::addNewOpmodeView);
}

QWidget *TimeSeriesBrowser::makeAddPlotRow()
{
    auto *const row = new QWidget;
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *const button = new MenuButton(row);
    button->setText(tr("Add plot"));
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFocusPolicy(Qt::StrongFocus);
    auto *const menu = new PlotMenu(button);
    menu->addActions(m_addPlotActions);
    button->setMenu(menu);
    layout->addStretch();
    layout->addWidget(button);
    layout->addStretch();
    return row;
}

void TimeSeriesBrowser::reloadUiSetup()
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

void TimeSeriesBrowser::addNewOpmodeView()
{
    addView(new OpmodeView);
    ensureViewVisible(m_addPlotRow);
}

void TimeSeriesBrowser::addNewScatterPlotView(int type)
{
    ScatterPlotView *const view = addScatterPlotView(true);
    view->showType(type);
    ensureViewVisible(m_addPlotRow);
}

void TimeSeriesBrowser::addNewSpectrogramView()
{
    QStringList ids;
    if (m_uiInfo && m_uiInfo->spectrumInfos().size() == 1)
        ids << m_uiInfo->spectrumInfos().first()->hash;
    addSpectrogramView(ids)->fitScale();
    ensureViewVisible(m_addPlotRow);
}

void TimeSeriesBrowser::addNewSpectrogramView(QAction *action)
{
    addSpectrogramView(action->data().toStringList())->fitScale();
    ensureViewVisible(m_addPlotRow);
}

View *TimeSeriesBrowser::addSpectrogramView(const QStringList &ids)
{
    View *const view = makeView(spectrogramType);
    addView(view);
    if (ids.isEmpty())
        return view;
    activateLayouts();
    view->setVisibleSpectra(QSet<QString>(ids.begin(), ids.end()));
    view->setFixedHeight(view->height() + (std::min(ids.size(), mostStrips) - 1) * heightOfStrip);
    view->activateLayout(); // for the plots that came with the spectra
    return view;
}

ScatterPlotView *TimeSeriesBrowser::addScatterPlotView(bool withProperties)
{
    View *const made = makeView(scatterType);
    auto *view = qobject_cast<ScatterPlotView *>(made);
    if (!view) { // asked for from elsewhere, where it is none of the menu's kinds
        delete made;
        view = new ScatterPlotView;
    }
    view->setPropertiesVisible(withProperties);
    addView(view);
    activateLayouts();
    return view;
}

// ---- requests from elsewhere: the new view itself comes into sight

void TimeSeriesBrowser::addOpmodePlot()
{
    auto *const view = new OpmodeView;
    addView(view);
    ensureViewVisible(view);
}

void TimeSeriesBrowser::addFlagPlot(const QString &flagData)
{
    auto *const view = new OpmodeView;
    addView(view);
    view->showFlag(flagData);
    ensureViewVisible(view);
}

void TimeSeriesBrowser::addElectrometerPlot(int channelNumber)
{
    ScatterPlotView *const view = addScatterPlotView(false);
    view->setElectrometerSelection(channelNumber);
    view->showType(ScatterPlotSettings::Electrometer);
    ensureViewVisible(view);
}

void TimeSeriesBrowser::addDiagnosticPlot(const QString &channelName)
{
    ScatterPlotView *const view = addScatterPlotView(false);
    view->setDiagnosticSelection(channelName);
    view->showType(ScatterPlotSettings::Variable);
    ensureViewVisible(view);
}

// ---- the default stack, each view of which is fitted once, at the end: that reads all the data in sight

void TimeSeriesBrowser::addDefaultStack()
{
    if (!m_uiInfo)
        return;
    const auto groups = spectraByGroup(*m_uiInfo);
    const QStringList modes = groupsInOrder(*m_uiInfo);
    if (hasKind(opmodeType))
        addView(makeView(opmodeType));
    if (hasKind(scatterType)) {
        if (!modes.isEmpty())
            addConcentrationsOf(groups.value(modes.first()));
        addFirstVariable();
    }
    for (const QString &mode : hasKind(spectrogramType) ? modes : QStringList())
        addSpectrogramView(groups.value(mode));
    allFitScale();
    settleBeforePainting();
}

void TimeSeriesBrowser::addConcentrationsOf(const QStringList &ids)
{
    ScatterPlotView *const view = addScatterPlotView(false);
    view->prepareType(ScatterPlotSettings::Concentration, QSet<QString>(ids.begin(), ids.end()));
}

void TimeSeriesBrowser::addFirstVariable()
{
    const auto metadata = m_uiInfo->metadata();
    if (!metadata || metadata->variables.isEmpty())
        return;
    ScatterPlotView *const view = addScatterPlotView(false);
    view->prepareType(ScatterPlotSettings::Variable, {});
}

} // namespace Tsb
