#include "gui/browser/plots/plot.h"

#include "axis/zoomfactor.h"
#include "columns/recordpicking.h"
#include "gui/browser/plots/updatedelayer.h"
#include "log/logger.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

#include <cmath>
#include <cstring>

namespace Tsb {

namespace {

constexpr int frameStyleValue = QFrame::StyledPanel | QFrame::Sunken;
constexpr int relevantFlags = RecordCameIn | DataReplaced | otherChange;

/// Moves the pixels of every line by `shift` columns; what comes in is left as it was.
void shiftColumns(QImage &image, int shift)
{
    const int width = image.width();
    const std::size_t bytes = std::size_t(width - std::abs(shift)) * 4;
    const int from = shift > 0 ? 0 : -shift, to = shift > 0 ? shift : 0;
    uchar *const bits = image.bits();
    for (int y = 0; y < image.height(); ++y) {
        uchar *const line = bits + std::ptrdiff_t(y) * image.bytesPerLine();
        std::memmove(line + to * 4, line + from * 4, bytes);
    }
}

/// The columns that a shift lays bare.
PixelRange baredColumns(int shift, int width)
{
    if (shift == 0)
        return {};
    return shift > 0 ? PixelRange(0, shift) : PixelRange(width + shift, width);
}

} // namespace

Plot::Plot(QWidget *parent) : QFrame(parent)
{
    setFrameStyle(frameStyleValue);
    setFocusPolicy(Qt::StrongFocus);
}

Plot::~Plot() = default;

void Plot::setDatastore(Datastore *datastore)
{
    if (m_datastore)
        disconnect(m_datastore, nullptr, this, nullptr);
    m_datastore = datastore;
    if (m_datastore) {
        setListening(true);
        connect(m_datastore, &Datastore::removed, this, &Plot::removeRecord);
    }
    requestFullRedraw();
}

void Plot::setListening(bool on)
{
    if (m_datastore && on)
        connect(m_datastore, &Datastore::updated, this, &Plot::updateRecord, Qt::UniqueConnection);
    else if (m_datastore)
        disconnect(m_datastore, &Datastore::updated, this, &Plot::updateRecord);
}

void Plot::setUpdateTimer(QTimer *timer)
{
    if (m_updateDelayer && m_updateDelayer->hasDeferred())
        update();
    delete m_updateDelayer;
    m_updateDelayer = new UpdateDelayer(timer, this);
    connect(m_updateDelayer, &UpdateDelayer::triggerUpdate, this, qOverload<>(&QWidget::update));
}

void Plot::requestFullRedraw()
{
    m_fullRedrawNeeded = true;
    update();
}

// ---- what changes the picture

void Plot::setTimeScale(TimeScale timescale)
{
    if (timescale == m_timeScale)
        return;
    if (!m_fullRedrawNeeded) {
        int shift = 0;
        if (m_timeScale.pixelShiftFrom(timescale, &shift) && std::abs(shift) < m_image.width()) {
            m_dirtyRange = m_dirtyRange.shifted(shift);
        } else {
            m_dirtyRange.clear();
            m_fullRedrawNeeded = true;
        }
    }
    m_timeScale = timescale;
    update();
}

void Plot::setCurrentRecord(std::shared_ptr<Record> record)
{
    if (record == m_currentRecord)
        return;
    m_currentRecord = std::move(record);
    update();
}

PixelRange Plot::spanOf(const Record &record, int margin) const
{
    return {m_timeScale.pixelAt(record.beginTime) - margin, m_timeScale.pixelAt(effectiveEnd(record)) + margin + 1};
}

PixelRange Plot::rangeOfUpdatedRecord(int, const std::shared_ptr<Record> &record, int flags)
{
    return (flags & relevantFlags) == 0 ? PixelRange() : spanOf(*record, m_redrawMargin);
}

PixelRange Plot::rangeOfRemovedRecord(int, const std::shared_ptr<Record> &record)
{
    return spanOf(*record, m_redrawMargin);
}

bool Plot::takeDirty(const PixelRange &range)
{
    const PixelRange seen = range.clipped(0, m_image.width());
    m_dirtyRange.unite(seen);
    // The image may still stand where it was before a move that is to be painted. What is out of sight by that move
    // comes back if it is taken back before then.
    int shift = 0;
    if (!m_fullRedrawNeeded && m_imageTimeScale != m_timeScale &&
        m_imageTimeScale.pixelShiftFrom(m_timeScale, &shift) && std::abs(shift) < m_image.width())
        m_dirtyRange.unite(range.clipped(shift, m_image.width() + shift));
    return !seen.empty;
}

void Plot::noteUpdated(int, const std::shared_ptr<Record> &, int) {}

void Plot::updateRecord(int index, const std::shared_ptr<Record> &record, int flags)
{
    noteUpdated(index, record, flags);
    if (!takeDirty(rangeOfUpdatedRecord(index, record, flags)))
        return;
    if ((flags & RecordCameIn) != 0 || !m_updateDelayer || m_updateDelayer->requestUpdate())
        update();
}

void Plot::removeRecord(int index, std::shared_ptr<Record> record)
{
    if (takeDirty(rangeOfRemovedRecord(index, record)))
        update();
}

void Plot::setTimeCursor(bool visible, int pixel)
{
    if (visible == m_timeCursorVisible && (!visible || pixel == m_timeCursorPixel))
        return;
    const auto repaintColumn = [this](bool shown, int x) {
        if (shown)
            update(QRect(x - 1, 0, 3, height()));
    };
    repaintColumn(m_timeCursorVisible, m_timeCursorPixel);
    m_timeCursorVisible = visible;
    m_timeCursorPixel = pixel;
    repaintColumn(visible, pixel);
    Q_EMIT timeCursorChanged(visible, pixel);
}

void Plot::setValueCursor(bool visible, int pixel)
{
    if (visible == m_valueCursorVisible && (!visible || pixel == m_valueCursorPixel))
        return;
    const auto repaintRow = [this](bool shown, int y) {
        if (shown)
            update(QRect(0, y - 1, width(), 3));
    };
    repaintRow(m_valueCursorVisible, m_valueCursorPixel);
    m_valueCursorVisible = visible;
    m_valueCursorPixel = pixel;
    repaintRow(visible, pixel);
    Q_EMIT valueCursorChanged(visible, pixel);
}

// ---- drawing

void Plot::drawRange(QPainter &, int, int) {}

void Plot::drawAll(QPainter &painter)
{
    drawRange(painter, 0, m_image.width());
}

void Plot::clearRange(QPainter &painter, int first, int last)
{
    painter.fillRect(first, 0, last - first, contentsRect().height(), Qt::white);
}

void Plot::drawUnderlay(QPainter &) {}

void Plot::drawOverlay(QPainter &painter)
{
    if (!m_currentRecord)
        return;
    const QRect contents = contentsRect();
    const QColor highlight = palette().color(QPalette::Highlight);
    QColor translucent = highlight;
    translucent.setAlpha(100);
    const double x0 = contents.left() + m_timeScale.positionOf(m_currentRecord->beginTime);
    const double x1 = contents.left() + m_timeScale.positionOf(effectiveEnd(*m_currentRecord));
    if (x1 + 2 < contents.left() || x0 - 2 > contents.right() + 1)
        return;
    // Held near the window: coordinates of a far zoom are beyond what the rasterizer can take.
    const double left = std::max(x0 - 1, contents.left() - 8.0), right = std::min(x1 + 1, contents.right() + 8.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(translucent);
    painter.drawRect(QRectF(left, contents.top(), right - left, contents.height()));
    painter.setPen(highlight);
    painter.drawLine(QPointF(left, contents.top()), QPointF(left, contents.bottom() + 1));
    painter.drawLine(QPointF(right, contents.top()), QPointF(right, contents.bottom() + 1));
}

void Plot::drawColumns(QPainter &painter, const PixelRange &range)
{
    if (range.empty)
        return;
    painter.save();
    painter.setClipRect(range.first, 0, range.width(), m_image.height());
    drawRange(painter, range.first, range.last);
    painter.restore();
}

bool Plot::updateIncrementally()
{
    int shift = 0;
    const int width = m_image.width();
    if (m_fullRedrawNeeded || m_image.size() != contentsRect().size() ||
        !m_imageTimeScale.pixelShiftFrom(m_timeScale, &shift) || std::abs(shift) >= width)
        return false;
    m_imageTimeScale = m_timeScale;
    const PixelRange strip = baredColumns(shift, width);
    const PixelRange dirty = m_dirtyRange.clipped(0, width);
    m_dirtyRange.clear();
    if (strip.empty && dirty.empty)
        return true;
    if (shift != 0)
        shiftColumns(m_image, shift);
    QPainter painter(&m_image);
    if (dirty.intersects(strip)) {
        PixelRange both = dirty;
        both.unite(strip);
        drawColumns(painter, both);
    } else {
        drawColumns(painter, dirty);
        drawColumns(painter, strip);
    }
    return true;
}

void Plot::redrawImage()
{
    m_dirtyRange.clear();
    m_imageTimeScale = m_timeScale;
    m_fullRedrawNeeded = false;
    if (m_image.size() != contentsRect().size()) {
        m_image = QImage(contentsRect().size(), QImage::Format_ARGB32_Premultiplied);
        m_image.fill(Qt::white);
    }
    if (m_image.isNull() || !m_datastore)
        return;
    QPainter painter(&m_image);
    drawAll(painter);
}

void Plot::updateImage()
{
    if (m_datastore && !updateIncrementally())
        redrawImage();
}

void Plot::checkImageSize()
{
    const QSize size = contentsRect().size();
    if (m_image.isNull() || m_image.size() == size)
        return;
    if (size.isEmpty() || m_image.height() != size.height())
        return requestFullRedraw();
    // The left part stays as it is; only a strip that came in at the right is to be drawn.
    const int oldWidth = m_image.width();
    QImage wider(size, QImage::Format_ARGB32_Premultiplied);
    wider.fill(Qt::white);
    const std::size_t bytes = std::size_t(std::min(oldWidth, size.width())) * 4;
    for (int y = 0; y < size.height(); ++y)
        std::memcpy(wider.scanLine(y), m_image.constScanLine(y), bytes);
    m_image = wider;
    // The bare columns are those of the image, which a move that is yet to be painted shifts.
    int shift = 0;
    m_imageTimeScale.pixelShiftFrom(m_timeScale, &shift);
    if (size.width() > oldWidth)
        m_dirtyRange.unite(oldWidth + std::min(0, shift), size.width() + std::max(0, shift));
    update();
}

void Plot::paintContents(QPainter &painter)
{
    if (!m_datastore)
        return;
    updateImage();
    painter.save();
    drawUnderlay(painter);
    painter.drawImage(contentsRect().topLeft(), m_image);
    painter.setClipRect(contentsRect());
    drawOverlay(painter);
    painter.restore();
}

void Plot::paintEvent(QPaintEvent *event)
{
    // The image comes up to date as a whole, but a paint of the cursor's column alone leaves the rest of the screen
    // waiting.
    if (m_updateDelayer && (visibleRegion() & contentsRect()).subtracted(event->region()).isEmpty())
        m_updateDelayer->clearDeferred();
    QFrame::paintEvent(event);
    QPainter painter(this);
    paintContents(painter);
    if (m_focusMarked && hasFocus()) {
        painter.setClipping(false);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

/// Who goes by keys must see where keys go; who clicked has seen it.
void Plot::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_focusMarked = true;
        break;
    case Qt::MouseFocusReason:
    case Qt::OtherFocusReason:
        m_focusMarked = false;
        break;
    default: // back from a menu or another window
        break;
    }
    QFrame::focusInEvent(event);
}

bool Plot::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::LayoutRequest:
        checkImageSize();
        break;
    case QEvent::Hide:
        endPan(); // neither a release nor the pointer's leaving comes to a hidden widget
        hideCursors();
        break;
    case QEvent::ContextMenu:
        hideCursors(); // the pointer may go elsewhere over the menu, and its leaving isn't told after that
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

// ---- choosing records

std::shared_ptr<Record> Plot::findRecord(RecordTime tick, int direction)
{
    return m_datastore ? Tsb::findRecord(*m_datastore, tick, direction) : nullptr;
}

void Plot::chooseRecordAt(int x, bool sameOpmode)
{
    const RecordTime tick = m_timeScale.tickAt(x);
    std::shared_ptr<Record> found = findRecord(tick, 0);
    if (!found)
        return;
    if (sameOpmode && m_currentRecord && m_currentRecord->opmode != found->opmode)
        found = nearestOfOpmode(*m_datastore, found, tick, m_currentRecord->opmode);
    if (found)
        Q_EMIT recordChosen(found);
}

void Plot::chooseRecordRelative(int step, bool sameOpmode)
{
    if (!m_currentRecord || !m_datastore)
        return;
    const auto record = sameOpmode ? m_datastore->neighbourWithOpmode(m_currentRecord, step, m_currentRecord->opmode)
                                   : m_datastore->neighbour(m_currentRecord, step);
    if (record && record != m_currentRecord)
        Q_EMIT recordChosen(record);
}

void Plot::chooseRecordBeyondTicks(std::int64_t ticks, bool sameOpmode)
{
    if (!m_currentRecord || !m_datastore || m_datastore->isEmpty())
        return;
    // The mode is told to the log and used no further.
    Log::Logger(QStringLiteral("src/gui/common/tsb/plot"))
        .log(Log::Debug,
             QStringLiteral("choose beyond %1 %2")
                 .arg(QString::number(ticks), sameOpmode ? QStringLiteral("true") : QStringLiteral("false")));
    const RecordTime from = ticks >= 0 ? effectiveEnd(*m_currentRecord) : m_currentRecord->beginTime;
    auto found = findRecord(recordTimeFromTicks(saturatedAdd(ticksOf(from), ticks)), ticks < 0 ? -1 : 1);
    if (!found)
        found = m_datastore->at(ticks < 1 ? 0 : m_datastore->size() - 1);
    Q_EMIT recordChosen(found);
}

// ---- mouse and keys

void Plot::mousePressEvent(QMouseEvent *event)
{
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->button() == Qt::LeftButton && !control) {
        chooseRecordAt(event->x() - contentsRect().left(), event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton) {
        Q_EMIT requestDisableAutoscroll(true);
        m_panning = true;
        m_pressPoint = QPoint(event->x(), height() / 2);
        m_dragStartScale = m_timeScale.rebased(event->x() - contentsRect().left());
    } else {
        QFrame::mousePressEvent(event);
    }
}

void Plot::mouseMoveEvent(QMouseEvent *event)
{
    if (m_panning)
        Q_EMIT requestPan(m_dragStartScale, QPoint(event->x() - m_pressPoint.x(), 0));
    else if (event->buttons() == Qt::LeftButton)
        // A drag asks Control, where the press asks Shift.
        chooseRecordAt(event->x() - contentsRect().left(), event->modifiers().testFlag(Qt::ControlModifier));
    else
        QFrame::mouseMoveEvent(event);
    setTimeCursor(true, event->x());
    setValueCursor(true, event->y());
}

void Plot::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_panning)
        return QFrame::mouseReleaseEvent(event);
    endPan();
}

void Plot::endPan()
{
    if (!m_panning)
        return;
    m_panning = false;
    Q_EMIT requestDisableAutoscroll(false);
}

void Plot::hideCursors()
{
    setTimeCursor(false, 0);
    setValueCursor(false, 0);
}

void Plot::leaveEvent(QEvent *)
{
    hideCursors();
}

void Plot::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const int delta = event->angleDelta().y();
    if (delta != 0)
        Q_EMIT requestZoom(zoomOfWheel(delta), qRound(event->position().x()) - contentsRect().left());
}

void Plot::keyPressEvent(QKeyEvent *event)
{
    const bool sameOpmode = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->modifiers().testFlag(Qt::AltModifier))
        return QFrame::keyPressEvent(event); // for the window's commands
    switch (event->key()) {
    case Qt::Key_Escape:
        if (m_datastore)
            Q_EMIT recordChosen(nullptr);
        break;
    case Qt::Key_Left:
    case Qt::Key_Up:
        return chooseRecordRelative(-1, sameOpmode);
    case Qt::Key_Right:
    case Qt::Key_Down:
        return chooseRecordRelative(1, sameOpmode);
    case Qt::Key_PageUp:
        return chooseRecordBeyondTicks(-10 * m_timeScale.ticksPerPixel, sameOpmode);
    case Qt::Key_PageDown:
        return chooseRecordBeyondTicks(10 * m_timeScale.ticksPerPixel, sameOpmode);
    default:
        QFrame::keyPressEvent(event);
    }
}

} // namespace Tsb
