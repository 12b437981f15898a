#include "gui/common/recordviews/distribution/summarytext.h"

#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

constexpr int mostRows = 8, leastRows = 2;

/// Lines break behind commas and colons, so that a number keeps its name and its unit. Copied text has plain blanks.
QString keptTogether(QString text)
{
    const QString blank(QChar::Nbsp);
    text.replace(QLatin1Char(' '), blank);
    for (const char *mark : {",", ":"})
        text.replace(mark + blank, mark + QStringLiteral(" "));
    return text;
}

} // namespace

SummaryText::SummaryText(QWidget *parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTabChangesFocus(true);
    setFrameShape(NoFrame);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Maximum);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false); // it stands in the dock as a label does
    hide();
}

void SummaryText::setLines(const QStringList &lines)
{
    if (lines == m_lines)
        return;
    m_lines = lines;
    if (!lines.isEmpty() && lines.size() != m_lineCount) {
        m_lineCount = lines.size();
        m_height = 0;
    }
    setPlainText(keptTogether(lines.join(QLatin1Char('\n'))));
    fitHeight();
}

void SummaryText::fitHeight()
{
    double needed = 2 * document()->documentMargin();
    for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next())
        needed += blockBoundingRect(block).height();
    const int most = mostRows * fontMetrics().lineSpacing();
    setVerticalScrollBarPolicy(needed > std::min(most, this->height()) ? Qt::ScrollBarAsNeeded
                                                                       : Qt::ScrollBarAlwaysOff);
    const int height = std::max(m_height, std::min(int(std::ceil(needed)), most));
    if (height == m_height)
        return;
    m_height = height;
    updateGeometry();
}

QSize SummaryText::sizeHint() const
{
    return {0, m_height};
}

QSize SummaryText::minimumSizeHint() const
{
    const int least = leastRows * fontMetrics().lineSpacing() + int(std::ceil(2 * document()->documentMargin()));
    return {0, std::min(m_height, least)};
}

void SummaryText::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    if (event->oldSize().width() != event->size().width())
        m_height = 0;
    fitHeight();
    verticalScrollBar()->setValue(0); // a lower view would show the last lines
}

} // namespace RecordViews
