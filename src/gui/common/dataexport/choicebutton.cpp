#include "gui/common/dataexport/choicebutton.h"

#include "gui/common/dataexport/checkmenu.h"
#include "gui/common/dataexport/nameorder.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

constexpr int leastCharacters = 16;

QString withoutMnemonics(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

ChoiceButton::ChoiceButton(const QString &noneChecked, const QString &noEntries, QWidget *parent)
    : QPushButton(parent), m_menu(new CheckMenu(this)), m_noneChecked(noneChecked), m_noEntries(noEntries)
{
    setMenu(m_menu);
    setAutoDefault(false); // Return is for the dialog
    QSizePolicy policy = sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored); // however many names it reads
    setSizePolicy(policy);
    setEntries({});
}

void ChoiceButton::setEntries(const std::vector<Entry> &entries)
{
    m_entries = entries;
    m_ids.clear();
    m_menu->clear();
    m_menu->addAction(tr("Select all"), this, &ChoiceButton::checkAll);
    m_menu->addAction(tr("Select none"), this, &ChoiceButton::checkNone);
    m_menu->addSeparator();
    for (const Entry &entry : entries) {
        m_ids << entry.id;
        QAction *const action = m_menu->addAction(withoutMnemonics(entry.text));
        action->setCheckable(true);
        action->setData(entry.id);
        connect(action, &QAction::triggered, this, [this, id = entry.id](bool isChecked) { check(id, isChecked); });
    }
    showChosen();
    Q_EMIT chosenChanged();
}

void ChoiceButton::setChosen(const QStringList &ids)
{
    if (ids == m_chosen)
        return;
    m_chosen = ids;
    showChosen();
    Q_EMIT chosenChanged();
}

void ChoiceButton::check(const QString &id, bool isChosen)
{
    QStringList ids = m_chosen;
    if (isChosen)
        insertInOrder(ids, id, m_ids);
    else
        ids.removeAll(id);
    setChosen(ids);
}

void ChoiceButton::checkAll()
{
    QStringList ids = m_chosen;
    for (const QString &id : qAsConst(m_ids))
        insertInOrder(ids, id, m_ids);
    setChosen(ids);
}

void ChoiceButton::checkNone()
{
    setChosen({});
}

QStringList ChoiceButton::chosenNames() const
{
    QStringList names;
    for (const QString &id : m_chosen) {
        const int place = m_ids.indexOf(id);
        if (place >= 0)
            names << m_entries[std::size_t(place)].name;
    }
    return names;
}

void ChoiceButton::showChosen()
{
    for (QAction *action : m_menu->actions())
        action->setChecked(m_chosen.contains(action->data().toString()));
    const QStringList names = chosenNames();
    const QString text = m_entries.empty() ? m_noEntries
                         : names.isEmpty() ? m_noneChecked
                                           : names.join(QStringLiteral(", "));
    setText(withoutMnemonics(text));
}

QSize ChoiceButton::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * leastCharacters, QPushButton::minimumSizeHint().height()};
}

void ChoiceButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int arrow = style()->pixelMetric(QStyle::PM_MenuButtonIndicator, &option, this);
    const QRect contents = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    option.text = fontMetrics().elidedText(text(), Qt::ElideRight, contents.width() - arrow, Qt::TextShowMnemonic);
    painter.drawControl(QStyle::CE_PushButton, option);
}
