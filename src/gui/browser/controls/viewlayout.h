#pragma once

#include <QLayout>
#include <QPair>
#include <QVector>

#include <memory>
#include <vector>

namespace Tsb {

/// One row of a view as its arithmetic sees it.
struct ViewRow {
    bool shared = false; ///< has a right item: shares the height that single rows leave
    bool shown = true;   ///< one of its items isn't empty; other rows take no space
    int hint = 0;        ///< height of a single row
};

/// Where the parts of a view go, in the coordinates of the view.
struct ViewGeometry {
    QRect title;
    QVector<QRect> left;  ///< by row; a single row's only item
    QVector<QRect> right; ///< by row; null for single rows
};

/// A title strip of 16 pixels, then a left column up to `leftMargin`, then the plots; no width or height is negative.
ViewGeometry viewGeometry(const QSize &size, int spacing, int leftMargin, const QVector<ViewRow> &rows);

/// The layout of one view: a title item, and rows of a left and a right item. The right items of all views line up with
/// the time axis. Contents margins aren't used.
class ViewLayout : public QLayout {
    Q_OBJECT
public:
    static constexpr int titleWidth = 16;

    explicit ViewLayout(QWidget *parent);
    ~ViewLayout() override;

    void setTitleItem(QWidget *widget);
    /// Either may be null: a row with only a left widget takes its hint's height over the full width.
    void insertRow(int index, QWidget *left, QWidget *right);
    /// Takes the row out of the layout; its widgets stay alive.
    void removeRow(int index);
    int rowCount() const { return int(m_rows.size()); }
    QPair<QWidget *, QWidget *> rowWidgets(int index) const;
    void setLeftMargin(int margin);
    int leftMargin() const { return m_leftMargin; }

    void addItem(QLayoutItem *item) override;
    int count() const override { return m_itemCount; }
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    QSize sizeHint() const override { return {100, 10}; }
    void setGeometry(const QRect &rect) override;

private:
    using Item = std::unique_ptr<QLayoutItem>;
    struct Row {
        Item left, right;
    };
    Item wrap(QWidget *widget);

    int m_itemCount = 0;
    Item m_titleItem;
    std::vector<Row> m_rows;
    int m_leftMargin = 0;
};

} // namespace Tsb
