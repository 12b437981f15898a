#pragma once

#include <QObject>

class QAction;
class QMenu;

namespace Tsb {

class View;
class ViewHolder;

/// The commands that move the view with the keyboard focus up and down, and make it higher and lower: by keys what
/// drags of a view and of its grip do. They do nothing where no view has the focus.
class ArrangingCommands : public QObject {
    Q_OBJECT
public:
    /// Their keys work while something in the parent has the focus. The holder must live as long.
    ArrangingCommands(ViewHolder *holder, QWidget *parent);

    /// The menu that has them.
    QAction *menuAction() const;

Q_SIGNALS:
    /// The view has another place or height.
    void arranged(QWidget *view);

private:
    template<typename Arrange>
    void add(const QString &text, int key, Arrange arrange);
    View *focusedView() const;
    void resize(View *view, int steps);

    ViewHolder *m_holder;
    QMenu *m_menu;
};

} // namespace Tsb
