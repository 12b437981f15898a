#pragma once

#include <QObject>
#include <QStringList>

/// Gives each entry of a menu that is about to be seen a letter of its own by which it is chosen, in all menus of the
/// program. A letter that the text brings along ("&Quit") is kept unless an entry above has it. One object serves all
/// windows of the program.
class MenuMnemonics : public QObject {
    Q_OBJECT
public:
    explicit MenuMnemonics(QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

/// The texts of a menu's entries with a letter marked in each: one that begins a word where there is a free one, else
/// any letter or digit. Only where all of its letters are taken does an entry share one.
QStringList withMnemonics(const QStringList &texts);
/// The text without its mark, as it is read.
QString withoutMnemonic(const QString &text);
