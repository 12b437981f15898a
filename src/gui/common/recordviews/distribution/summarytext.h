#pragma once

#include <QPlainTextEdit>

namespace RecordViews {

/// Some lines of text to read and to copy, wrapped at the width and no higher than they need, up to eight rows. The
/// height doesn't shrink while the number of lines stays, so that what stands above it doesn't jump when numbers
/// change.
class SummaryText : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit SummaryText(QWidget *parent = nullptr);

    /// Hides itself where there are none.
    void setLines(const QStringList &lines);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitHeight();

    QStringList m_lines;
    int m_height = 0;
};

} // namespace RecordViews
