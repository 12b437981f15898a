#pragma once

#include "gui/common/uiinfo.h"
#include "records/record.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class CommentEdit;
class CommentMap;
class NotesBrowser;
class QLabel;
class QMenu;
class QUrl;

/// Tells of the shown record: its times and mode, notes about it, and its flags; takes the comment on it. A click on a
/// flag highlights the variables and electrometers that it is about, its context menu asks for a plot of it.
class RecordForm : public QWidget {
    Q_OBJECT
public:
    explicit RecordForm(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr);
    ~RecordForm() override;

    /// Whether keys go into the comment.
    bool isTyping() const;
    /// Hands a comment that has been typed to the map, though its line goes on.
    void commitComment();

public Q_SLOTS:
    /// Null shows that there is none. A comment that was typed for the record before goes to the map first.
    void showRecord(std::shared_ptr<Record> record);
    void clear();
    /// Null: the data can't have comments. What was typed goes to the map before. The map may die before the form.
    void setCommentMap(CommentMap *commentMap);
    /// Ends editing: what was typed goes to the map.
    void clearEditFocus();
    /// Shows the record with its present names anew.
    void updateSetup();
    /// The address is the flag's place in the record.
    void flagClicked(const QUrl &url);

Q_SIGNALS:
    /// The comment's line has the focus, or has lost it.
    void editStarted();
    void editEnded();
    void commentTyped();
    /// The user has finished with the comment by a key: the focus is to go elsewhere.
    void editLeft();

private:
    QWidget *makeCommentRow();
    void showWhetherSaved();
    /// The record's flag of that place, or null.
    std::shared_ptr<Spectrometer::RecordFlag> flagAt(const QString &address) const;
    void addFlagCommands(QMenu *menu, const QString &address);
    void setTexts(const QString &date, const QString &begin, const QString &end, const QString &mode);
    void setNotes(const QString &html);

    std::shared_ptr<UiInfo> m_uiInfo;
    std::shared_ptr<Record> m_record;
    QLabel *m_dateLabel;
    QLabel *m_beginTimeLabel;
    QLabel *m_endTimeLabel;
    QLabel *m_opmodeLabel;
    CommentEdit *m_commentEdit;
    QLabel *m_notSavedLabel;
    QPointer<CommentMap> m_commentMap;
    NotesBrowser *m_notes;
    QString m_notesHtml; ///< as it stands in m_notes
};
