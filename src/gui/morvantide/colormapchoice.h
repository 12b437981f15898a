#pragma once

#include "gui/common/uiinfo.h"

#include <QObject>

#include <memory>

class QActionGroup;
class QLabel;
class QMainWindow;
class QMenu;
class QSettings;

/// The user's choice of the colour map that new spectrograms begin with: a menu, the settings that keep it, and at the
/// first start an offer in the status bar, which nobody has to answer. Belongs to the window.
class ColormapChoice : public QObject {
    Q_OBJECT
public:
    ColormapChoice(std::shared_ptr<UiInfo> uiInfo, QMainWindow *window);

    QMenu *menu() const { return m_menu; }
    /// Takes up the choice that the settings hold, which must outlive this.
    void start(QSettings &settings);

Q_SIGNALS:
    /// The user took the offer, which is meant for the plots that stand, too.
    void offerTaken(const QString &name);

private:
    void makeMenu();
    void choose(const QString &name);
    void showChoice(const QString &name);
    void makeOffer();
    void answerOffer(const QString &name);

    std::shared_ptr<UiInfo> m_uiInfo;
    QMainWindow *m_window;
    QSettings *m_settings = nullptr;
    QMenu *m_menu;
    QActionGroup *m_maps;
    QLabel *m_offer = nullptr; ///< while it stands
};
