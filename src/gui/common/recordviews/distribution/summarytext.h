#pragma once

#include <QPlainTextEdit>

namespace RecordViews {

/// Some lines of text to read and to copy, wrapped at the width and no higher than they need, up to eight rows; where
/// there is little room, two rows to scroll in. The wanted height doesn't shrink while the number of lines stays or
/// there are none for a while, so that what stands above it doesn't jump from record to record. Hidden at first.
class SummaryText : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit SummaryText(QWidget *parent = nullptr);

    void setLines(const QStringList &lines);
    /// Whether there were lines since it was made.
    bool hasHadLines() const { return m_lineCount > 0; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitHeight();

    QStringList m_lines;
    int m_lineCount = 0; ///< of the last ones that weren't none
    int m_height = 0;
};

} // namespace RecordViews
