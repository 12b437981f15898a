#pragma once

#include <QList>
#include <QWidget>

class QDockWidget;
class QGridLayout;
class QLabel;

/// A title bar for a dock: its title, a line of news behind it or, where that is too narrow, below it, and the buttons
/// that float and close it.
class DockTitleBar : public QWidget {
    Q_OBJECT
public:
    /// Becomes the dock's title bar.
    explicit DockTitleBar(QDockWidget *dock);

    /// HTML in colours for a light ground, which the line gets.
    void setNews(const QString &html);
    QString news() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeNews();

    QLabel *m_news;
    QGridLayout *m_layout = nullptr;
    QList<QWidget *> m_besideNews; ///< in the title's line
    int m_newsRow = -1;
};
