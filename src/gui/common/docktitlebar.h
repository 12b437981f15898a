#pragma once

#include <QWidget>

class QDockWidget;
class QLabel;

/// A title bar for a dock: its title, a line of news behind it, and the buttons that float and close it.
class DockTitleBar : public QWidget {
    Q_OBJECT
public:
    /// Becomes the dock's title bar.
    explicit DockTitleBar(QDockWidget *dock);

    /// HTML in colours for a light ground, which the line gets.
    void setNews(const QString &html);
    QString news() const;

private:
    QLabel *m_news;
};
