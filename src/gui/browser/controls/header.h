#pragma once

#include <QWidget>

class QSplitter;
class QVBoxLayout;

namespace Tsb {

class TimeView;

/// The row above the views: the time axis beside an empty column, whose width all views' left columns follow.
class Header : public QWidget {
    Q_OBJECT
public:
    static constexpr int defaultLeftColumn = 110;

    explicit Header(QWidget *parent = nullptr);

    TimeView *timeView() const { return m_timeView; }
    QSplitter *splitter() const { return m_splitter; }
    int leftColumn() const;
    /// Gives the empty column that width, but leaves a quarter to the axis; a hidden header gets it when it is shown.
    void setLeftColumn(int width);
    /// Where views begin, in the header's coordinates; the left margin is counted from there.
    void setViewLeft(int x);
    /// Where the time axis begins, in a view's coordinates.
    int leftMargin() const;

Q_SIGNALS:
    void leftMarginChanged(int width);

protected:
    bool event(QEvent *event) override;

private:
    void updateLeftMargin();

    QVBoxLayout *m_layout;
    QSplitter *m_splitter;
    QWidget *m_leftSpacer;
    TimeView *m_timeView;
    int m_viewLeft = 0;
    int m_wantedLeftColumn = defaultLeftColumn; ///< until it is shown
    bool m_shown = false;
};

} // namespace Tsb
