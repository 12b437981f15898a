#include "gui/frame/menumnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QMenu>
#include <QSet>

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

/// The places of letters and digits: first those that begin a word.
QVector<int> placesOf(const QString &text)
{
    QVector<int> begins, others;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i].isLetterOrNumber())
            (i == 0 || !text[i - 1].isLetterOrNumber() ? begins : others).append(i);
    }
    return begins + others;
}

} // namespace

QString withoutMnemonic(const QString &text)
{
    QString plain = text;
    removeMark(plain);
    return plain.replace(QLatin1String("&&"), QLatin1String("&"));
}

QStringList withMnemonics(const QStringList &texts)
{
    QStringList marked = texts;
    QSet<QChar> taken;
    for (QString &text : marked) {
        const int place = markedPlace(text);
        if (place < 0)
            continue;
        if (taken.contains(text[place].toUpper()))
            removeMark(text);
        else
            taken.insert(text[place].toUpper());
    }
    for (QString &text : marked) {
        if (markedPlace(text) >= 0)
            continue;
        const QVector<int> places = placesOf(text);
        const auto isFree = [&](int place) { return !taken.contains(text[place].toUpper()); };
        const auto found = std::find_if(places.begin(), places.end(), isFree);
        if (places.isEmpty())
            continue;
        const int place = found != places.end() ? *found : places.first();
        taken.insert(text[place].toUpper());
        text.insert(place, marker);
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
