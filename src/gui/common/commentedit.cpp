#include "gui/common/commentedit.h"

#include "gui/common/commentmap.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>

CommentEdit::CommentEdit(QWidget *parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textEdited, this, &CommentEdit::typed);
    fill();
}

void CommentEdit::setCommentMap(CommentMap *map)
{
    commit();
    m_map = map;
    fill();
}

void CommentEdit::showRecord(const std::shared_ptr<Record> &record)
{
    if (record && record == m_record && (m_isEditing || isModified()))
        return;
    commit();
    m_record = record;
    fill();
}

void CommentEdit::fill()
{
    const QString text = m_record && m_map ? m_map->comment(m_record) : QString();
    const bool isCut = text.size() > maxLength();
    setText(m_record && !m_map ? tr("n/a") : text);
    if (!hasFocus() || isCut)
        setCursorPosition(0); // so that the begin is in sight
    setReadOnly(isCut);
    setToolTip(isCut ? tr("The comment is longer than %1 characters and can't be changed here").arg(maxLength())
                     : QString());
    setEnabled(m_record && m_map);
}

void CommentEdit::commit()
{
    if (hasFocus())
        QGuiApplication::inputMethod()->commit(); // letters that are still being composed
    if (!isModified() || !m_map || !m_record)
        return;
    setModified(false);
    const QString stands = m_map->comment(m_record), typed = text().trimmed();
    if (typed != stands && text() != stands)
        m_map->setComment(m_record, typed);
}

bool CommentEdit::event(QEvent *event)
{
    // The keys that move the cursor are taken from the window's commands by the base.
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void CommentEdit::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        commit();
        fill();
        Q_EMIT left();
        break;
    case Qt::Key_Escape:
        if (isModified())
            fill();
        else
            Q_EMIT left();
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void CommentEdit::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    if (!std::exchange(m_isEditing, true))
        Q_EMIT editStarted();
}

void CommentEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason)
        return; // its own menu
    commit();
    if (event->reason() == Qt::ActiveWindowFocusReason)
        return; // the line goes on when the window is active again
    fill();
    if (std::exchange(m_isEditing, false))
        Q_EMIT editEnded();
}
