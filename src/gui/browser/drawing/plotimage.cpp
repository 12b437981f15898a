#include "gui/browser/drawing/plotimage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace Tsb {

namespace {

QImage whiteImage(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

/// Moves the pixels of every line by `shift` columns; what comes in is left as it was.
void shiftColumns(QImage &image, int shift)
{
    const std::size_t bytes = std::size_t(image.width() - std::abs(shift)) * 4;
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

void PlotImage::setTimeScale(const TimeScale &scale)
{
    int shift = 0;
    if (!m_imageScale.pixelShiftFrom(scale, &shift))
        m_fullRedrawNeeded = true;
    m_timeScale = scale;
}

bool PlotImage::touch(const PixelRange &columns)
{
    // Out of sight by a move that isn't painted yet, a column may come back by another, and the image has it still.
    int shift = 0;
    if (!m_fullRedrawNeeded && m_imageScale.pixelShiftFrom(m_timeScale, &shift))
        m_stale.unite(columns.clipped(std::min(0, shift), m_image.width() + std::max(0, shift)).shifted(-shift));
    return !columns.clipped(0, m_image.width()).empty;
}

bool PlotImage::resize(const QSize &size)
{
    if (m_image.isNull() || m_image.size() == size)
        return false;
    if (size.isEmpty() || m_image.height() != size.height()) {
        requestFullRedraw();
        return true;
    }
    const int oldWidth = m_image.width();
    QImage resized = whiteImage(size);
    for (int y = 0; y < size.height(); ++y)
        std::memcpy(resized.scanLine(y), m_image.constScanLine(y), std::size_t(std::min(oldWidth, size.width())) * 4);
    m_image = resized;
    if (size.width() > oldWidth)
        m_stale.unite(oldWidth, size.width());
    return true;
}

std::vector<PixelRange> PlotImage::staleColumns(const QSize &size)
{
    int shift = 0;
    const bool moves = !m_fullRedrawNeeded && m_image.size() == size &&
                       m_imageScale.pixelShiftFrom(m_timeScale, &shift) && std::abs(shift) < m_image.width();
    if (!moves && m_image.size() != size)
        m_image = whiteImage(size);
    const int width = m_image.width();
    PixelRange stale = moves ? m_stale.shifted(shift).clipped(0, width) : PixelRange(0, width).clipped(0, width);
    const PixelRange bared = moves ? baredColumns(shift, width) : PixelRange();
    m_imageScale = m_timeScale;
    m_stale.clear();
    m_fullRedrawNeeded = false;
    if (!bared.empty)
        shiftColumns(m_image, shift);
    if (stale.intersects(bared)) {
        stale.unite(bared);
        return {stale};
    }
    std::vector<PixelRange> runs;
    for (const PixelRange &run : {stale, bared})
        if (!run.empty)
            runs.push_back(run);
    return runs;
}

} // namespace Tsb
