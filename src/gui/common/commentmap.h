#pragma once

#include "datafiles/writing/commentwriting.h"
#include "gui/common/recordnotes.h"
#include "log/logger.h"
#include "records/record.h"
#include "records/recordmetadata.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QVector>

#include <memory>

class QStandardItem;
class QStandardItemModel;

/// The record that a comment belongs to.
struct CommentKey {
    RecordTime begin{};
    RecordTime end{};
    std::int64_t beginUtcOffset = 0; ///< seconds east of Greenwich
    int variant = 0;                 ///< index in the list of variants
};
bool operator<(const CommentKey &a, const CommentKey &b);
inline bool operator==(const CommentKey &a, const CommentKey &b)
{
    return !(a < b) && !(b < a);
}

/// The comments on the records of the open data. Each change is written at once to the file of its day; a comment that
/// can't be written stands in memory, and is tried again with each later change. The list model is worked on only when
/// it is asked for.
class CommentMap : public RecordNotes {
    Q_OBJECT
public:
    enum Column { TimeColumn, CommentColumn };
    /// The role of the whole comment; the model shows its first line, at most 300 characters of it.
    static constexpr int wholeTextRole = Qt::UserRole;

    explicit CommentMap(QObject *parent = nullptr);
    /// What could not be written goes into the log.
    ~CommentMap() override;

    /// Null: nothing is read or written.
    void setFolder(const QString &folder) { m_folder = folder; }
    /// Comments of a variant without a name are neither read nor written.
    void setVariants(const QVector<DpVariant> &variants) { m_variants = variants; }
    /// By the numbers of the modes.
    void setOpmodeNames(const QHash<int, QString> &names) { m_opmodeNames = names; }

    /// Reads the files of the days from one before `limitBegin` to one after `limitEnd`, and takes the comments that
    /// aren't entirely outside of these limits.
    void loadComments(RecordTime limitBegin, RecordTime limitEnd);
    /// Empty if there is none.
    QString comment(const std::shared_ptr<Record> &record) const;
    /// Sets, changes or, with an empty text, removes. Nothing for a null record.
    void setComment(const std::shared_ptr<Record> &record, const QString &text);
    QList<CommentKey> keys() const { return m_comments.keys(); }
    int size() const { return m_comments.size(); }
    /// The nearest comment behind (step above 0) or before that key; nothing at the end.
    std::optional<CommentKey> neighbour(const CommentKey &key, int step) const;
    std::optional<Note> firstFrom(RecordTime begin) const override;
    static CommentKey keyOf(const Spectrometer::RecordHead &head);
    /// Forgets the comments; they stay in their files.
    void forget(const QList<CommentKey> &keys);

    /// Whether the record's comment, or that it has none, stands in its file as far as it is to be written.
    bool isSaved(const std::shared_ptr<Record> &record) const;
    /// Tries again what could not be written.
    void saveUnsaved();
    /// Takes over what another map of the same data could not write.
    void takeUnsaved(CommentMap &former);

    /// The model, brought up to date: one row for each comment by time, and the columns "Time" and "Comment". It may be
    /// another one than before, which is gone then.
    QStandardItemModel *itemModel();
    /// The comment of a row of the model; nothing for a row out of range.
    std::optional<CommentKey> keyOfRow(int row);

private:
    void take(const CommentKey &key, const QString &text);
    void noteChanged(const CommentKey &key);
    void rebuildModel();
    void updateRow(const CommentKey &key);
    QList<QStandardItem *> makeRow(const CommentKey &key, const QString &text) const;

    Log::Logger m_logger;
    QMap<CommentKey, QString> m_comments;
    QList<CommentKey> m_order;             ///< by row of the model
    QStandardItemModel *m_model = nullptr; ///< a child; made when it is first asked for
    QString m_folder;
    QHash<int, QString> m_opmodeNames;
    QVector<DpVariant> m_variants;
    QMap<CommentKey, CommentPlace> m_unsaved;
    bool m_isModelStale = true;    ///< as a whole
    QList<CommentKey> m_staleRows; ///< if it isn't stale as a whole
};
