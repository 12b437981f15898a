#pragma once

#include "records/record.h"

#include <QLineEdit>
#include <QPointer>

#include <memory>

class CommentMap;

/// The line that shows the comment on a record, and takes another one. What is typed goes into the map when the line
/// loses the focus or another record comes; Return does so and leaves the line, Esc brings back the text that stands. A
/// comment longer than a line can hold is shown cut, and can't be changed.
class CommentEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit CommentEdit(QWidget *parent = nullptr);

    /// Null: there are no comments, and the line is disabled. The map may die before the line.
    void setCommentMap(CommentMap *map);
    /// Null: there is no record. The record whose comment is being edited leaves the line as it is.
    void showRecord(const std::shared_ptr<Record> &record);
    /// Hands a changed text to the map.
    void commit();

Q_SIGNALS:
    void editStarted();
    void editEnded();
    /// A letter came or went by the user.
    void typed();
    /// The user has finished with the line by a key: the focus is to go elsewhere.
    void left();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void fill();

    QPointer<CommentMap> m_map;
    std::shared_ptr<Record> m_record; ///< whose comment the line holds
    bool m_isEditing = false;         ///< goes on while another window is active
};
