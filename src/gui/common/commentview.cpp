#include "gui/common/commentview.h"

#include "gui/common/commentmap.h"
#include "gui/common/seencontents.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

namespace {

/// Passes the rows whose whole comment or time has the text in it. The tool tip is more of the comment.
class CommentFilter : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setText(const QString &text)
    {
        m_text = text;
        invalidateFilter();
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::ToolTipRole)
            return QSortFilterProxyModel::data(index, role);
        const QModelIndex comment = index.siblingAtColumn(CommentMap::CommentColumn);
        return RecordNotes::toolTip(comment.data(CommentMap::wholeTextRole).toString());
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &) const override
    {
        const auto has = [&](int column, int role) {
            const QString text = sourceModel()->index(row, column).data(role).toString();
            return text.contains(m_text, Qt::CaseInsensitive);
        };
        return m_text.isEmpty() || has(CommentMap::CommentColumn, CommentMap::wholeTextRole) ||
               has(CommentMap::TimeColumn, Qt::DisplayRole);
    }

private:
    QString m_text;
};

} // namespace

CommentView::CommentView(QDockWidget *dock)
    : QWidget(dock), m_filter(new QLineEdit(this)), m_list(new QTreeView(this)), m_filtered(new CommentFilter(this))
{
    m_filter->setObjectName(QStringLiteral("filterLine"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setAccessibleName(tr("Filter of comments"));
    m_filter->setClearButtonEnabled(true);
    m_list->setAccessibleName(tr("Comments"));
    m_list->setModel(m_filtered);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_filter);
    layout->addWidget(m_list);
    dock->setWidget(this);
    m_contents = new SeenContents(dock, [this] { refresh(); });

    connect(m_filter, &QLineEdit::textChanged, this, &CommentView::applyFilter);
    connect(m_list, &QTreeView::activated, this, &CommentView::itemActivated);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &CommentView::noteChosen);
}

void CommentView::setCommentMap(CommentMap *map)
{
    if (m_map)
        disconnect(m_map, nullptr, this, nullptr);
    m_map = map;
    if (m_map)
        connect(m_map, &CommentMap::changed, this, &CommentView::setStale);
    m_filtered->setSourceModel(nullptr); // at once, seen or not: nothing of the old one is kept
    setStale();
}

void CommentView::setStale()
{
    if (std::exchange(m_isStaleQueued, true))
        return;
    // A burst of changes, as the orphans that go behind a read, costs one refresh.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isStaleQueued = false;
            m_contents->setStale();
        },
        Qt::QueuedConnection);
}

void CommentView::refresh()
{
    if (!m_map)
        return;
    QStandardItemModel *const model = m_map->itemModel();
    if (m_filtered->sourceModel() == model)
        return;
    m_filtered->setSourceModel(model);
    const int margin = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_list) + 10;
    m_list->header()->resizeSection(CommentMap::TimeColumn,
                                    m_list->fontMetrics().horizontalAdvance(QStringLiteral("0000-00-00 00:00:00")) +
                                        margin);
}

void CommentView::noteChosen(const QModelIndex &index)
{
    if (!m_isFiltering)
        m_chosen = m_filtered->mapToSource(index);
}

void CommentView::applyFilter(const QString &text)
{
    const QScopedValueRollback<bool> guard(m_isFiltering, true); // the list would choose the next row for a hidden one
    static_cast<CommentFilter *>(m_filtered)->setText(text);
    const QModelIndex chosen = m_filtered->mapFromSource(m_chosen);
    m_list->setCurrentIndex(chosen);
    if (chosen.isValid())
        m_list->scrollTo(chosen);
}

void CommentView::itemActivated(const QModelIndex &index)
{
    const QPersistentModelIndex row = m_filtered->mapToSource(index);
    refresh(); // a row that is still to come would shift it
    if (row.isValid())
        Q_EMIT commentSelected(row.row());
}
