#include "gui/frame/menumnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QMenu>
#include <QSet>
#include <QVector>

namespace {

const QLatin1Char marker('&');

/// The place of the marked letter; -1 without one. Two markers are one that is shown.
int markedPlace(const QString &text)
{
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != marker)
            continue;
        ++i;
        if (text[i] != marker && !text[i].isSpace())
            return i;
    }
    return -1;
}

void removeMark(QString &text)
{
    const int place = markedPlace(text);
    if (place > 0)
        text.remove(place - 1, 1);
}

/// The places that may be marked, the best first: the mark that is there, letters and digits that begin a word, others.
QVector<int> candidatesOf(const QString &text)
{
    QVector<int> marked, begins, others;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i].isLetterOrNumber())
            (i == 0 || !text[i - 1].isLetterOrNumber() ? begins : others).append(i);
    }
    if (const int place = markedPlace(text); place >= 0)
        marked.append(place);
    return marked + begins + others;
}

/// A maximum matching of entries and letters, by augmenting paths: an entry gives up its letter for one that has no
/// other if it has another itself.
class LetterMatching {
public:
    explicit LetterMatching(const QStringList &texts) : m_texts(texts), m_places(texts.size(), -1)
    {
        for (const QString &text : texts)
            m_candidates.append(candidatesOf(text));
        for (int entry = 0; entry < texts.size(); ++entry) {
            QSet<QChar> tried;
            if (!match(entry, tried) && !m_candidates[entry].isEmpty())
                m_places[entry] = m_candidates[entry].first();
        }
    }
    int placeOf(int entry) const { return m_places[entry]; }

private:
    bool match(int entry, QSet<QChar> &tried)
    {
        for (const bool free : {true, false}) {
            for (const int place : qAsConst(m_candidates[entry])) {
                const QChar letter = m_texts[entry][place].toUpper();
                if (m_owners.contains(letter) == free || tried.contains(letter))
                    continue;
                tried.insert(letter);
                if (!free && !match(m_owners[letter], tried))
                    continue;
                m_owners[letter] = entry;
                m_places[entry] = place;
                return true;
            }
        }
        return false;
    }

    QStringList m_texts;
    QVector<QVector<int>> m_candidates;
    QVector<int> m_places;
    QHash<QChar, int> m_owners;
};

} // namespace

QString withoutMnemonic(const QString &text)
{
    QString plain = text;
    removeMark(plain);
    return plain.replace(QLatin1String("&&"), QLatin1String("&"));
}

QStringList withMnemonics(const QStringList &texts)
{
    // Marks that are there come first: the others find their letters around them.
    QStringList ordered;
    QVector<int> order;
    for (const bool isMarked : {true, false}) {
        for (int i = 0; i < texts.size(); ++i) {
            if ((markedPlace(texts[i]) >= 0) == isMarked)
                order.append(i);
        }
    }
    for (const int i : qAsConst(order))
        ordered.append(texts[i]);
    const LetterMatching matching(ordered);
    QStringList marked = texts;
    for (int i = 0; i < order.size(); ++i) {
        QString &text = marked[order[i]];
        const int place = matching.placeOf(i), former = markedPlace(text);
        if (place < 0 || place == former)
            continue;
        text.insert(place, marker);
        if (former >= 0)
            text.remove(former - 1 + (place < former ? 1 : 0), 1);
    }
    return marked;
}

MenuMnemonics::MenuMnemonics(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool MenuMnemonics::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;
    const auto *const menu = qobject_cast<QMenu *>(watched);
    if (!menu)
        return false;
    QList<QAction *> entries;
    QStringList texts;
    for (QAction *action : menu->actions()) {
        if (action->isSeparator() || !action->isVisible() || action->text().isEmpty())
            continue;
        entries.append(action);
        texts.append(action->text());
    }
    texts = withMnemonics(texts);
    for (int i = 0; i < entries.size(); ++i)
        entries[i]->setText(texts[i]);
    return false;
}
