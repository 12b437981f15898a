#pragma once

#include "gui/browser/controls/colorlimits.h"
#include "gui/browser/drawing/colorfit.h"

#include <QObject>

#include <functional>
#include <vector>

namespace Tsb {

/// Holds the colour limits of several views equal, so that the same colour means the same value in all of them. Main
/// thread only.
class ColorLock : public QObject {
    Q_OBJECT
public:
    using AddVisibleValues = std::function<void(DecadeHistogram &histogram)>;

    explicit ColorLock(QObject *parent = nullptr);

    /// The newcomer takes the limits that the others have, if they have any. It must leave before it goes.
    void join(ColorLimits *limits, AddVisibleValues addVisibleValues);
    void leave(ColorLimits *limits);
    /// The values in sight of all that joined, to which common limits are fitted.
    void addVisibleValuesTo(DecadeHistogram &histogram) const;

private:
    struct Member {
        ColorLimits *limits;
        AddVisibleValues addVisibleValues;
    };

    void spread(const ColorLimits &from);

    std::vector<Member> m_members;
    bool m_isSpreading = false;
};

} // namespace Tsb
