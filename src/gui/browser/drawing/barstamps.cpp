#include "gui/browser/drawing/barstamps.h"

#include <QImage>
#include <QPainter>
#include <QRgba64>

#include <algorithm>
#include <cmath>
#include <map>

namespace Tsb {

namespace {

/// A bar without width is outlined by two lines that lie on each other. From what both leave of white, the coverage of
/// each.
std::uint8_t coverageOfOneLine(QRgba64 left)
{
    return std::uint8_t(std::lround(255 * (1 - std::sqrt(left.red() / 65535.0))));
}

/// What each line of bars without width covers of a row: by kind of bar and position of its middle.
using RowCoverage = std::array<std::uint8_t, std::size_t(2 * BarStamps::positions)>;

/// What the painter covers of each row.
std::vector<RowCoverage> coverageByRow(int height)
{
    std::vector<RowCoverage> rows;
    rows.resize(std::size_t(height));
    constexpr int pitch = BarStamps::columns + 1; // side by side, without touching each other
    for (const bool half : {false, true}) {
        // Of 64 bits a pixel: in those of 32, two coverages may come to the same.
        QImage probe(pitch * barPhases, height, QImage::Format_RGBA64_Premultiplied);
        probe.fill(Qt::white);
        QPainter painter(&probe);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QBrush(Qt::black), 0, Qt::SolidLine, Qt::SquareCap));
        const double bar = barHeight(height, half);
        for (int phase = 0; phase < barPhases; ++phase)
            painter.drawRect(QRectF(pitch * phase + 1 + double(phase) / barPhases, height * 0.5 - bar * 0.5, 0, bar));
        painter.end();
        for (int y = 0; y < height; ++y) {
            const auto *const pixels = reinterpret_cast<const QRgba64 *>(probe.constScanLine(y));
            std::uint8_t *const row = rows[std::size_t(y)].data() + (half ? BarStamps::positions : 0);
            for (int position = 0; position < BarStamps::positions; ++position) {
                const int column = BarStamps::columns - 1 - position / barPhases; // seen from the bar
                row[position] = coverageOfOneLine(pixels[pitch * (position % barPhases) + column]);
            }
        }
    }
    return rows;
}

std::int16_t lossBy(int alpha)
{
    if (alpha == 255)
        return hidingLoss;
    const double loss = 2 * std::log(1 - alpha / 255.0) / std::log(hiddenWeight);
    return std::int16_t(std::min(1.0, loss) * hidingLoss);
}

} // namespace

void BarStamps::prepare(int height)
{
    if (height == m_height)
        return;
    m_height = height;
    const std::vector<RowCoverage> rows = coverageByRow(height);
    std::map<RowCoverage, int> classes;
    m_classOfRow.assign(rows.size(), -1);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        if (rows[y] == RowCoverage{})
            continue;
        // Five occur: outside and inside the halves of full height, and their edges.
        const int next = std::min(int(classes.size()), int(rowClasses) - 1);
        m_classOfRow[y] = classes.emplace(rows[y], next).first->second;
    }
    int first = positions, end = 0;
    for (const bool half : {false, true}) {
        m_touched[half] = PerRowClass{};
        for (int position = 0; position < positions; ++position) {
            BarStamp &stamp = m_stamps[half][std::size_t(position)];
            stamp = BarStamp{};
            for (const auto &[coverage, rowClass] : classes) {
                const int alpha = coverage[std::size_t(position + (half ? positions : 0))];
                if (alpha == 0)
                    continue;
                stamp.alphas[rowClass] = std::int16_t(alpha);
                stamp.losses[rowClass] = lossBy(alpha);
                m_touched[half][rowClass] = -1;
                first = std::min(first, position);
                end = position + 1;
            }
        }
    }
    m_reach = {first, std::max(0, end - first)};
}

} // namespace Tsb
