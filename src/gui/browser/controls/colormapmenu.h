#pragma once

#include "gui/browser/drawing/colormap.h"

#include <QMenu>

class QActionGroup;

namespace Tsb {

/// The menu of all colour maps, each over a dark and over a light background, and the owner of the choice.
class ColormapMenu : public QMenu {
    Q_OBJECT
public:
    /// Starts with "jet" over a light background.
    explicit ColormapMenu(QWidget *parent = nullptr);

    const QString &mapName() const { return m_name; }
    bool isWhite() const { return m_white; }
    const Colormap::Map &map() const { return m_map; }
    /// An unknown name changes nothing.
    void choose(const QString &name, bool white);

Q_SIGNALS:
    /// The choice is another.
    void chosen();
    /// The map is to be shown for as long as the pointer rests on it.
    void previewed(const Colormap::Map &map, bool white);
    /// The menu goes: the choice is to be shown again.
    void previewEnded();

private:
    void addMaps(bool white);

    QActionGroup *m_group;
    QString m_name;
    bool m_white = true;
    Colormap::Map m_map;
};

} // namespace Tsb
