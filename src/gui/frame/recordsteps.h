#pragma once

#include <QList>
#include <QObject>

#include <memory>

class CommentMap;
class QAction;
class ShownRecord;

/// The commands that lead from the shown record to the next or previous one with a comment, or with a flag. Without a
/// shown record they lead to the first or the last such record.
class RecordSteps : public QObject {
    Q_OBJECT
public:
    RecordSteps(ShownRecord *shown, QObject *parent);

    /// "Next comment", "Previous comment", "Next flagged record", "Previous flagged record".
    const QList<QAction *> &actions() const { return m_actions; }
    /// Whether there are data.
    void setEnabled(bool on);
    /// Null if the data can't have comments.
    void setCommentMap(std::shared_ptr<const CommentMap> map);

Q_SIGNALS:
    /// No record was found; a text for the user.
    void nothingFound(const QString &text);

private:
    void addStep(const QString &text, const QKeySequence &key, void (RecordSteps::*go)(int step), int step);
    void goToComment(int step);
    void goToFlag(int step);
    void updateActions();

    ShownRecord *m_shown;
    std::shared_ptr<const CommentMap> m_comments;
    QList<QAction *> m_actions;
    bool m_isEnabled = false;
};
