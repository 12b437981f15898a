#pragma once

#include "gui/browser/drawing/barstamps.h"

#include <QImage>

namespace Tsb {

/// The colour of a bar's outline, each channel as often as there are classes of rows.
struct BarColor {
    using Channel = std::uint16_t __attribute__((vector_size(2 * rowClasses)));
    Channel red, green, blue;
};
BarColor barColor(QRgb color);

/// What the bars met so far, from the last one back, hide of those beneath.
class BarCover {
public:
    /// Rounding keeps a trace of what is beneath many faint bars: only where one covers that much is it hidden.
    explicit BarCover(int clearingAlpha) : m_clearing(PerRowClass{} + std::int16_t(clearingAlpha)) {}

    void add(const BarStamp &stamp)
    {
        const PerRowClass losses = m_losses + stamp.losses, most = PerRowClass{} + hidingLoss;
        m_losses = losses < most ? losses : most;
        m_strongest = m_strongest > stamp.alphas ? m_strongest : stamp.alphas;
    }
    /// -1 for each class of rows where what lies beneath is hidden, 0 for the others.
    PerRowClass hidden() const { return (m_losses >= hidingLoss) & (m_strongest >= m_clearing); }
    bool hides(PerRowClass classes) const { return isNone(classes & ~hidden()); }

private:
    PerRowClass m_losses{}, m_strongest{}, m_clearing;
};

/// The bars without width that one column shows, and the colours that they come to.
class BarLayers {
public:
    struct Layer {
        const PerRowClass *alphas;
        const BarColor *color;
    };

    void clear()
    {
        m_count = m_aboveSeal = 0;
        m_sealed = PerRowClass{};
    }
    /// Room for so many more beneath those that are there. What was put there is taken in by addTo().
    Layer *room(std::size_t count)
    {
        if (m_layers.size() < m_count + count)
            m_layers.resize(2 * (m_count + count));
        return m_layers.data() + m_count;
    }
    void addTo(const Layer *end) { m_count = std::size_t(end - m_layers.data()); }

    /// What is put beneath from here on is hidden from these classes of rows, and not all of it may come. Once only.
    void seal(PerRowClass classes)
    {
        m_aboveSeal = m_count;
        m_sealed = classes;
    }

    /// Draws them on a column of the image, unless what they are taken to hide could be seen nevertheless.
    bool blend(QImage &image, int x, const BarStamps &stamps, const BarCover &cover) const;

private:
    /// Between which colours those of the classes of rows lie.
    struct Bounds {
        BarColor least, greatest;
    };

    void lay(std::size_t first, std::size_t end, Bounds &bounds) const;
    QRgb blended(QRgb below, int rowClass) const;

    std::vector<Layer> m_layers; ///< the first m_count of these, the last one drawn in front
    std::size_t m_count = 0, m_aboveSeal = 0;
    PerRowClass m_sealed{};
};

} // namespace Tsb
