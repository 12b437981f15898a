#pragma once

#include "records/recordhead.h"

#include <QByteArray>
#include <QString>

/// The place of one record's comment on the disk.
struct CommentPlace {
    QString path; ///< of the file of the record's day and averaging variant
    QByteArray
        key; ///< the beginning of its line: times, operating mode, and a tab behind each; empty if times can't be told

    CommentPlace() = default;
    /// The file lies in the folder. Its day is that of the record's begin by local time.
    CommentPlace(const QString &folder, const QString &variant, const Spectrometer::RecordHead &head,
                 const QString &opmode);
};

/// Changes one comment in its file: every line of the record gets the new text, or goes where the text is empty; all
/// other bytes stay. Makes the file, unless the text is empty. The old file or the new one stands at any moment. Other
/// programs that comment by this function are waited for, two seconds at most, so that no comment of theirs is lost,
/// where the file system has locks. Null, or why it failed; the old file stands then.
QString writeComment(const CommentPlace &place, const QString &text);
