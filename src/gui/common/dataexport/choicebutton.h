#pragma once

#include <QPushButton>
#include <QStringList>

#include <vector>

class CheckMenu;

/// A button that opens a menu of things to check, and reads the names of those that are. Chosen ids that no entry has
/// stay chosen and show no check; "Select none" forgets them.
class ChoiceButton : public QPushButton {
    Q_OBJECT
public:
    struct Entry {
        QString id;
        QString name; ///< on the button
        QString text; ///< in the menu
    };

    /// The texts that it reads with nothing checked, and without any entry.
    ChoiceButton(const QString &noneChecked, const QString &noEntries, QWidget *parent = nullptr);

    void setEntries(const std::vector<Entry> &entries);
    const QStringList &chosen() const { return m_chosen; }
    void setChosen(const QStringList &ids);
    /// The names of the chosen entries, in their order.
    QStringList chosenNames() const;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// By the user, or by other entries, whose names are others.
    void chosenChanged();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void check(const QString &id, bool isChosen);
    void checkAll();
    void checkNone();
    void showChosen();

    CheckMenu *m_menu;
    QString m_noneChecked;
    QString m_noEntries;
    std::vector<Entry> m_entries;
    QStringList m_ids; ///< of the entries
    QStringList m_chosen;
};
