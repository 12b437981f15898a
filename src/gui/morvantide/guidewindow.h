#pragma once

#include <QWidget>

class QLineEdit;
class QTextBrowser;

/// A window of its own that shows the pages of the user guide, which need no network and no other program.
class GuideWindow : public QWidget {
    Q_OBJECT
public:
    /// `page` is the file of the first page, HTML or Markdown.
    explicit GuideWindow(const QString &page, QWidget *parent = nullptr);

private:
    QLayout *makeTools(const QString &firstPage);
    void showTitle();
    /// From the cursor on, and from the page's begin behind its end.
    void findNext();
    void openInBrowser();

    QTextBrowser *m_pages;
    QLineEdit *m_wanted;
};
