#pragma once

#include <QObject>
#include <QPointer>

class GuideWindow;
class QAction;
class QWidget;

/// The command that shows the user guide, whose window it owns together with the program's.
class UserGuide : public QObject {
    Q_OBJECT
public:
    explicit UserGuide(QWidget *window);

    QAction *action() const { return m_action; }

private:
    void show();

    QWidget *m_window;
    QAction *m_action;
    QPointer<GuideWindow> m_guide; ///< from the first time on
};
