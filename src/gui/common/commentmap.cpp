#include "gui/common/commentmap.h"

#include "datafiles/reading/commentfile.h"
#include "util/timeformat.h"

#include <QStandardItemModel>

#include <algorithm>
#include <limits>
#include <tuple>

namespace {

constexpr int mostStaleRows = 100; ///< beyond it the model is made anew
constexpr int longestShown = 300;  ///< a row of megabytes takes seconds to paint

auto fieldsOf(const CommentKey &key)
{
    return std::tie(key.begin, key.end, key.beginUtcOffset, key.variant);
}

/// The least key of that begin.
CommentKey firstKeyFrom(RecordTime begin)
{
    return {begin, earliestRecordTime, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<int>::min()};
}

QString timeText(const CommentKey &key)
{
    return timeToString(localTime(key.begin, key.beginUtcOffset), QStringLiteral("%Y-%m-%d %H:%M:%S"));
}

QString firstLine(const QString &text)
{
    const auto isLineEnd = [](QChar c) {
        return (c >= QLatin1Char('\n') && c <= QLatin1Char('\r')) || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    const QString front = text.left(longestShown);
    return front.left(int(std::find_if(front.begin(), front.end(), isLineEnd) - front.begin()));
}

} // namespace

bool operator<(const CommentKey &a, const CommentKey &b)
{
    return fieldsOf(a) < fieldsOf(b);
}

CommentMap::CommentMap(QObject *parent) : RecordNotes(parent), m_logger(QStringLiteral("comments")) {}

CommentMap::~CommentMap()
{
    for (auto one = m_unsaved.keyBegin(); one != m_unsaved.keyEnd(); ++one) {
        const QString text = m_comments.value(*one);
        if (!text.isEmpty())
            m_logger.log(Log::Error,
                         QStringLiteral("The comment on the record of %1 is not saved: %2").arg(timeText(*one), text));
    }
}

CommentKey CommentMap::keyOf(const Spectrometer::RecordHead &head)
{
    return {head.beginTime, head.endTime, head.beginUtcOffset, head.dpVariantId};
}

// ---- from the files

void CommentMap::loadComments(RecordTime limitBegin, RecordTime limitEnd)
{
    m_comments.clear();
    m_unsaved.clear();
    for (int variant = 0; !m_folder.isNull() && variant < m_variants.size(); ++variant) {
        if (m_variants[variant].name.isEmpty())
            continue;
        for (const QString &path : findCommentFiles(m_folder, m_variants[variant].name, limitBegin, limitEnd)) {
            readCommentFile(path, [&](const CommentLine &line) {
                // An end may be missing, or be wrong and lie before the begin.
                if (std::max(line.begin, line.end) >= limitBegin && line.begin <= limitEnd)
                    take({line.begin, line.end, line.beginUtcOffset, variant}, line.text);
            });
        }
    }
    m_isModelStale = true;
    Q_EMIT changed(earliestRecordTime, latestRecordTime);
}

void CommentMap::take(const CommentKey &key, const QString &text)
{
    if (text.isEmpty())
        m_comments.remove(key);
    else
        m_comments.insert(key, text);
}

void CommentMap::forget(const QList<CommentKey> &keys)
{
    if (keys.isEmpty())
        return;
    for (const CommentKey &key : keys)
        m_comments.remove(key);
    m_isModelStale = true;
    Q_EMIT changed(earliestRecordTime, latestRecordTime);
}

// ---- one comment

QString CommentMap::comment(const std::shared_ptr<Record> &record) const
{
    return record ? m_comments.value(keyOf(*record)) : QString();
}

std::optional<CommentKey> CommentMap::neighbour(const CommentKey &key, int step) const
{
    if (step > 0) {
        const auto next = m_comments.upperBound(key);
        return next == m_comments.end() ? std::nullopt : std::optional(next.key());
    }
    auto previous = m_comments.lowerBound(key);
    return previous == m_comments.begin() ? std::nullopt : std::optional((--previous).key());
}

std::optional<RecordNotes::Note> CommentMap::firstFrom(RecordTime begin) const
{
    const auto found = m_comments.lowerBound(firstKeyFrom(begin));
    if (found == m_comments.end())
        return {};
    return Note{found.key().begin, found.key().end, found.value()};
}

void CommentMap::setComment(const std::shared_ptr<Record> &record, const QString &text)
{
    if (!record)
        return;
    const CommentKey key = keyOf(*record);
    take(key, text);
    const QString variant = m_variants.value(key.variant).name;
    const bool hasFile = !m_folder.isNull() && !variant.isEmpty();
    if (hasFile) {
        m_unsaved.insert(key, CommentPlace(m_folder, variant, *record, m_opmodeNames.value(record->opmode)));
        saveUnsaved();
    }
    if (!hasFile || m_unsaved.contains(key))
        noteChanged(key); // a comment that is saved was told of then
}

// ---- into the files

bool CommentMap::isSaved(const std::shared_ptr<Record> &record) const
{
    return !record || !m_unsaved.contains(keyOf(*record));
}

void CommentMap::saveUnsaved()
{
    QSet<QString> failed; // what one file refuses once it refuses all along
    const auto waiting = m_unsaved;
    for (auto one = waiting.begin(); one != waiting.end(); ++one) {
        if (failed.contains(one->path))
            continue;
        const QString reason = writeComment(*one, m_comments.value(one.key()));
        if (!reason.isNull()) {
            failed.insert(one->path);
            m_logger.log(Log::Error, QStringLiteral("Failed to open file '%1'").arg(one->path));
            m_logger.log(Log::Warning, QStringLiteral("A comment is not saved: %1").arg(reason));
            continue;
        }
        m_unsaved.remove(one.key());
        noteChanged(one.key());
    }
}

void CommentMap::takeUnsaved(CommentMap &former)
{
    const auto waiting = std::exchange(former.m_unsaved, {});
    for (auto one = waiting.begin(); one != waiting.end(); ++one) {
        take(one.key(), former.m_comments.value(one.key()));
        m_unsaved.insert(one.key(), *one);
        noteChanged(one.key());
    }
}

// ---- the model

void CommentMap::noteChanged(const CommentKey &key)
{
    if (!m_isModelStale) {
        m_isModelStale = m_staleRows.size() >= mostStaleRows;
        m_staleRows.append(key);
    }
    Q_EMIT changed(key.begin, key.begin);
}

QStandardItemModel *CommentMap::itemModel()
{
    if (m_isModelStale)
        rebuildModel();
    for (const CommentKey &key : qAsConst(m_staleRows))
        updateRow(key);
    m_staleRows.clear();
    return m_model;
}

std::optional<CommentKey> CommentMap::keyOfRow(int row)
{
    itemModel();
    return row >= 0 && row < m_order.size() ? std::optional(m_order[row]) : std::nullopt;
}

QList<QStandardItem *> CommentMap::makeRow(const CommentKey &key, const QString &text) const
{
    auto *const time = new QStandardItem(timeText(key));
    auto *const comment = new QStandardItem(firstLine(text));
    if (m_unsaved.contains(key))
        comment->setText(tr("(not saved) %1").arg(comment->text()));
    comment->setData(text, wholeTextRole);
    for (QStandardItem *item : {time, comment})
        item->setTextAlignment(Qt::AlignTop | Qt::AlignLeft);
    return {time, comment};
}

/// In a model of its own, before any view has it: filled under their eyes, or emptied, it takes a hundred times as
/// long.
void CommentMap::rebuildModel()
{
    delete m_model;
    m_model = new QStandardItemModel(0, 2, this);
    m_model->setHorizontalHeaderLabels({tr("Time"), tr("Comment")});
    for (auto one = m_comments.constBegin(); one != m_comments.constEnd(); ++one)
        m_model->appendRow(makeRow(one.key(), one.value()));
    m_order = m_comments.keys();
    m_staleRows.clear();
    m_isModelStale = false;
}

void CommentMap::updateRow(const CommentKey &key)
{
    const auto place = std::lower_bound(m_order.begin(), m_order.end(), key);
    const int row = int(place - m_order.begin());
    const bool isShown = place != m_order.end() && *place == key;
    const auto found = m_comments.constFind(key);
    if (found == m_comments.constEnd()) {
        if (isShown) {
            m_order.removeAt(row);
            m_model->removeRow(row);
        }
        return;
    }
    const auto items = makeRow(key, found.value());
    if (isShown) {
        for (int column : {TimeColumn, CommentColumn})
            m_model->setItem(row, column, items[column]);
    } else {
        m_order.insert(row, key);
        m_model->insertRow(row, items);
    }
}
