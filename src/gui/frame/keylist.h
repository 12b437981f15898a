#pragma once

#include <QPair>
#include <QString>
#include <QVector>

class QMainWindow;

/// What belongs to one menu, or to one kind of place in the window: keys or gestures, and what each does.
struct KeySection {
    QString title;
    QVector<QPair<QString, QString>> rows;
};

/// The keys of all commands that the window has at the moment, as the commands themselves tell them: menu by menu, then
/// those of each dock, and last the window's keys that are no command ("What's this?" tells of these).
QVector<KeySection> keysOfCommands(const QMainWindow &window);
/// What the mouse and the keys do in each kind of place.
QVector<KeySection> gestures();
/// As a page with a table for each section, HTML.
QString keyPage(const QVector<KeySection> &sections);
