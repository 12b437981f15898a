#include "gui/frame/addplotbutton.h"

#include "gui/browser/controls/plotmenu.h"
#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/iconhelp.h"

#include <QAction>

AddPlotButton::AddPlotButton(const Tsb::TimeSeriesBrowser &browser, QWidget *parent) : MenuButton(parent)
{
    setText(tr("Add plot"));
    setIcon(namedIcon(QStringLiteral("add-plot")));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto *const menu = new Tsb::PlotMenu(this);
    menu->addActions(browser.addPlotActions());
    setMenu(menu);
    const QAction *const anyPlot = browser.addPlotActions().first();
    connect(anyPlot, &QAction::changed, this, [this, anyPlot] { setEnabled(anyPlot->isEnabled()); });
}
