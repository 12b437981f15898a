#pragma once

#include "util/recordtime.h"

#include <QObject>
#include <QString>

#include <optional>

/// Texts that stand beside records, in the order of the records' begins. Main thread only.
class RecordNotes : public QObject {
    Q_OBJECT
public:
    struct Note {
        RecordTime begin{}; ///< of the record
        RecordTime end{};   ///< likewise; missing if it has none
        QString text;
    };

    using QObject::QObject;

    /// A note for a tool tip, which shows it letter by letter, and of a long one the begin.
    static QString toolTip(const QString &text);

    /// The first note on a record that doesn't begin before that moment.
    virtual std::optional<Note> firstFrom(RecordTime begin) const = 0;

Q_SIGNALS:
    /// Notes on records that begin between these moments, both included, came, went or changed.
    void changed(RecordTime first, RecordTime last);
};
