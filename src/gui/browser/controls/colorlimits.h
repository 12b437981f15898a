#pragma once

#include <QObject>

#include <limits>

namespace Tsb {

/// The limits of a view's colours, and their one owner: colour bar and boxes set them here, and they and the plots show
/// the limits that changed() tells. Main thread only.
class ColorLimits : public QObject {
    Q_OBJECT
public:
    /// Limits farther than that from 0, in decades, are refused.
    explicit ColorLimits(QObject *parent = nullptr, double farthest = std::numeric_limits<double>::infinity());

    /// Whether anybody has set them; until then they are 1 and 3.
    bool areSet() const { return m_set; }
    double lower() const { return m_lower; } ///< decades
    double upper() const { return m_upper; }
    /// 10 to the power of the limits, or the very numbers by which they were set.
    double lowerValue() const { return m_lowerValue; }
    double upperValue() const { return m_upperValue; }

    /// Each returns false and changes nothing where the limits would be less than 0 or more than 20 decades apart, or a
    /// value would not lie strictly on its side of the other.
    bool set(double lower, double upper);
    bool setLowerValue(double value);
    bool setUpperValue(double value);

Q_SIGNALS:
    /// In decades.
    void changed(double lower, double upper);

private:
    bool areUsable(double lower, double upper) const;
    void store(double lower, double upper, double lowerValue, double upperValue);

    double m_farthest;
    bool m_set = false;
    double m_lower = 1, m_upper = 3;
    double m_lowerValue = 10, m_upperValue = 1000;
};

} // namespace Tsb
