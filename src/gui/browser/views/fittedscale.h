#pragma once

#include <QVariantMap>

#include <optional>
#include <utility>

namespace Tsb {

/// What a vertical scale, or the limits of colours, were fitted to last: where they are still that, nobody has touched
/// them, and they may grow with the values that come into sight. A value type.
class FittedScale {
public:
    using Range = std::pair<double, double>; ///< the lower end and the upper one

    void fit(const Range &scale) { m_fitted = scale; }
    bool isUntouched(const Range &scale) const { return scale == m_fitted; }
    /// What a scale grows to for the seen values beyond it, with that share of their span behind each end that moves;
    /// none where it holds them all, or where a number isn't finite.
    static std::optional<Range> grown(const Range &scale, const Range &seen, double margin);

    /// Whether the scale is as it was fitted, in a view's setup. A setup that doesn't tell leaves what is known.
    void store(const Range &scale, QVariantMap *setup) const;
    void restore(const QVariantMap &setup, const Range &scale);

private:
    Range m_fitted{0, 0};
};

} // namespace Tsb
