#include "gui/browser/controls/zeroswatch.h"

#include "gui/browser/drawing/zeromarks.h"

#include <QPainter>

namespace Tsb {

namespace {

constexpr int margin = 8; ///< pixels beside the text, where stripes are seen

const QString &label()
{
    static const QString text = QStringLiteral("\u2264 0");
    return text;
}

} // namespace

ZeroSwatch::ZeroSwatch(QWidget *parent) : QFrame(parent)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    setToolTip(tr("Stripes mark values of 0 and below"));
    setAccessibleName(label());
    setAccessibleDescription(toolTip());
}

QSize ZeroSwatch::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(label()) + 2 * (margin + frameWidth()), fontMetrics().height() + 5};
}

void ZeroSwatch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawFrame(&painter);
    const QRect area = contentsRect();
    for (int y = 0; y < area.height(); ++y)
        painter.fillRect(area.left(), area.top() + y, area.width(), 1, QColor(zeroStripe(y)));
    QRect text = fontMetrics().boundingRect(label());
    text.moveCenter(area.center());
    painter.fillRect(text.adjusted(-2, 0, 2, 0) & area, Qt::white);
    painter.setPen(Qt::black);
    painter.drawText(area, Qt::AlignCenter, label());
}

} // namespace Tsb
