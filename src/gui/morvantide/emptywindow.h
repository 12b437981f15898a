#pragma once

#include <QVariantMap>
#include <QVector>
#include <QWidget>

class QAction;
class QLabel;
class QListWidget;

/// Lies upon the browser while no data are open, and tells what can be done: the commands that open data, a drop, and
/// the recent folders. Return offers the marked one of these, at first the newest.
class EmptyWindow : public QWidget {
    Q_OBJECT
public:
    /// A child of the window that covers that widget of it. The commands become buttons.
    EmptyWindow(QWidget *covered, const QList<QAction *> &commands, QWidget *window);

    /// What the data dialog was used for, newest first.
    void setRecent(const QVector<QVariantMap> &choices);

    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    /// Comes up and takes the focus, or goes.
    void setShown(bool on);

Q_SIGNALS:
    /// The dialog is to come up with that choice, which is empty without recent folders.
    void offered(const QVariantMap &choice);
    /// To be opened at once.
    void chosen(const QVariantMap &choice);

private:
    QWidget *makeButtons(const QList<QAction *> &commands);
    void cover();
    void takeFocus();
    bool hasKeys() const;
    QVariantMap choiceAt(int row) const { return m_choices.value(row); }

    QWidget *m_covered;
    QWidget *m_firstButton = nullptr;
    QLabel *m_recentLabel;
    QListWidget *m_recent;
    QVector<QVariantMap> m_choices;
};
