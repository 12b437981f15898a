#pragma once

#include "gui/common/uiinfo.h"
#include "records/record.h"

#include <QWidget>

#include <memory>

class NotesBrowser;
class QLabel;
class QLineEdit;
class QMenu;
class QUrl;

/// Tells of the shown record: its times and mode, notes about it, and its flags. A click on a flag
/// highlights the variables and electrometers that it is about, its context menu asks for a plot of it.
class RecordForm : public QWidget {
    Q_OBJECT
public:
    explicit RecordForm(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr);

public Q_SLOTS:
    /// Null shows that there is none.
    void showRecord(std::shared_ptr<Record> record);
    void clear();
    /// Shows the record with its present names anew.
    void updateSetup();
    /// The address is the flag's place in the record.
    void flagClicked(const QUrl &url);

private:
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
    QLineEdit *m_commentEdit; ///< disabled: there is nothing yet that would keep a comment
    NotesBrowser *m_notes;
    QString m_notesHtml; ///< as it stands in m_notes
};
