#pragma once

#include <QTextBrowser>

class QMenu;

/// A text of notes whose links have commands in the context menu, reached by the mouse and, for the link that Tab has
/// chosen, by the keyboard's menu key.
class NotesBrowser : public QTextBrowser {
    Q_OBJECT
public:
    explicit NotesBrowser(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The menu of that link is about to be shown; commands are added to it now.
    void linkMenuRequested(QMenu *menu, QString address);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QString chosenLink() const;
};
