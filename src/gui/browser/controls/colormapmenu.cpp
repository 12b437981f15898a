#include "gui/browser/controls/colormapmenu.h"

#include "util/textescape.h"

#include <QActionGroup>

namespace Tsb {

namespace {

QString dataOf(const QString &name, bool white)
{
    return QStringLiteral("%1-%2").arg(name, white ? QStringLiteral("w") : QStringLiteral("d"));
}

Colormap::Map mapOf(const QString &name)
{
    return Colormap::make(Colormap::indexOfName(name.toStdString()));
}

} // namespace

ColormapMenu::ColormapMenu(QWidget *parent) : QMenu(parent), m_group(new QActionGroup(this))
{
    connect(this, &QMenu::aboutToHide, this, &ColormapMenu::previewEnded);
    for (const bool white : {false, true})
        addMaps(white);
    connect(m_group, &QActionGroup::hovered, this, [this](const QAction *action) {
        const QString entry = action->data().toString();
        Q_EMIT previewed(mapOf(entry.section(QLatin1Char('-'), 0, 0)), entry.endsWith(QLatin1String("-w")));
    });
    choose(QStringLiteral("jet"), m_white);
}

void ColormapMenu::addMaps(bool white)
{
    QMenu *const maps = addMenu(white ? tr("Light background") : tr("Dark background"));
    connect(maps, &QMenu::aboutToHide, this, &ColormapMenu::previewEnded);
    for (const std::string &entry : Colormap::names()) {
        const QString name = QString::fromStdString(entry);
        QAction *const action = maps->addAction(capitalized(name));
        action->setCheckable(true);
        action->setData(dataOf(name, white));
        m_group->addAction(action);
        connect(action, &QAction::triggered, this, [this, name, white] { choose(name, white); });
    }
}

void ColormapMenu::choose(const QString &name, bool white)
{
    const Colormap::Map map = mapOf(name);
    if (!map || (name == m_name && white == m_white))
        return;
    m_name = name;
    m_white = white;
    m_map = map;
    for (QAction *action : m_group->actions()) {
        if (action->data().toString() == dataOf(name, white))
            action->setChecked(true);
    }
    Q_EMIT chosen();
}

} // namespace Tsb
