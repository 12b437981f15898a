#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QWidget>

class CommentMap;
class QDockWidget;
class QLineEdit;
class QSortFilterProxyModel;
class QTreeView;
class SeenContents;

/// The list of all comments, by time, with a box that filters them by their texts and times. It is kept up to date
/// while it is seen only, once in each pass of the event loop.
class CommentView : public QWidget {
    Q_OBJECT
public:
    /// Becomes the contents of the dock.
    explicit CommentView(QDockWidget *dock);

    QTreeView *list() const { return m_list; }
    QLineEdit *filter() const { return m_filter; }

public Q_SLOTS:
    /// Null clears the list. The map may die before the view.
    void setCommentMap(CommentMap *map);
    /// An index of the list's model.
    void itemActivated(const QModelIndex &index);

Q_SIGNALS:
    /// The row of the map's model.
    void commentSelected(int index);

private:
    void setStale();
    void refresh();
    void applyFilter(const QString &text);
    void noteChosen(const QModelIndex &index);

    QPointer<CommentMap> m_map;
    QLineEdit *m_filter;
    QTreeView *m_list;
    QSortFilterProxyModel *m_filtered;
    SeenContents *m_contents;
    QPersistentModelIndex m_chosen; ///< in the map's model; what the user chose last, though the filter may hide it
    bool m_isFiltering = false;
    bool m_isStaleQueued = false;
};
