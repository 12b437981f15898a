#include "gui/morvantide/colormapchoice.h"

#include "gui/browser/drawing/colormap.h"
#include "util/textescape.h"

#include <QActionGroup>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QSettings>
#include <QStatusBar>

namespace {

const QString choiceKey = QStringLiteral("defaultcolormap");
const QString offeredKey = QStringLiteral("colormapoffered");

/// Made so that eyes which don't see all colours tell its values apart as well as others do.
const QString safeName = QStringLiteral("viridis");

QString firstName()
{
    return QString::fromStdString(Colormap::names().front());
}

} // namespace

ColormapChoice::ColormapChoice(std::shared_ptr<UiInfo> uiInfo, QMainWindow *window)
    : QObject(window), m_uiInfo(std::move(uiInfo)), m_window(window),
      m_menu(new QMenu(tr("Default color map"), window)), m_maps(new QActionGroup(this))
{
    makeMenu();
    showChoice(firstName());
}

void ColormapChoice::makeMenu()
{
    m_menu->setObjectName(QStringLiteral("defaultColormap"));
    m_menu->setToolTipsVisible(true);
    for (const std::string &entry : Colormap::names()) {
        const QString name = QString::fromStdString(entry);
        QAction *const action = m_menu->addAction(name == safeName ? tr("%1 (color-blind safe)").arg(capitalized(name))
                                                                   : capitalized(name));
        action->setToolTip(tr("New spectrograms begin with this map"));
        action->setCheckable(true);
        action->setData(name);
        m_maps->addAction(action);
    }
    connect(m_maps, &QActionGroup::triggered, this,
            [this](const QAction *action) { answerOffer(action->data().toString()); });
}

void ColormapChoice::start(QSettings &settings)
{
    m_settings = &settings;
    showChoice(settings.value(choiceKey).toString());
    if (!settings.contains(choiceKey) && !settings.contains(offeredKey))
        makeOffer();
}

void ColormapChoice::choose(const QString &name)
{
    showChoice(name);
    if (m_settings)
        m_settings->setValue(choiceKey, name);
}

/// An unknown name changes nothing.
void ColormapChoice::showChoice(const QString &name)
{
    for (QAction *action : m_maps->actions()) {
        if (action->data().toString() != name)
            continue;
        action->setChecked(true);
        m_uiInfo->setDefaultColormap(name);
    }
}

// ---- the offer

void ColormapChoice::makeOffer()
{
    m_settings->setValue(offeredKey, true);
    m_offer = new QLabel(m_window);
    m_offer->setObjectName(QStringLiteral("colormapOffer"));
    m_offer->setText(
        tr("Color-blind safe colors for spectrograms? <a href=\"%1\">Use them</a> or <a href=\"%2\">keep the usual</a>")
            .arg(safeName, firstName()));
    m_offer->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(m_offer, &QLabel::linkActivated, this, [this](const QString &name) {
        answerOffer(name);
        if (name == safeName)
            Q_EMIT offerTaken(name);
    });
    m_window->statusBar()->addWidget(m_offer);
}

void ColormapChoice::answerOffer(const QString &name)
{
    choose(name);
    if (!m_offer)
        return;
    m_offer->hide();
    m_offer->deleteLater(); // its own signal may have led here
    m_offer = nullptr;
}
