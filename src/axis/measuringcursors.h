#pragma once

#include "util/recordtime.h"

#include <QObject>

#include <array>
#include <optional>
#include <utility>

namespace Tsb {

/// The two moments between which the user measures, and their one owner: keys, handles and commands set them here, and
/// all that shows them follows changed(). Main thread only.
class MeasuringCursors : public QObject {
    Q_OBJECT
public:
    static constexpr int count = 2;
    /// In the order of their keys, which needn't be that of time; none for a cursor that isn't set.
    using Times = std::array<std::optional<RecordTime>, count>;

    explicit MeasuringCursors(QObject *parent = nullptr);

    const Times &times() const { return m_times; }
    bool areAny() const { return m_times[0] || m_times[1]; }
    bool areBoth() const { return m_times[0] && m_times[1]; }
    /// The earlier and the later one; both must be set.
    std::pair<RecordTime, RecordTime> span() const;

public Q_SLOTS:
    void set(int which, RecordTime time);
    void drop();

Q_SIGNALS:
    void changed();

private:
    Times m_times;
};

} // namespace Tsb
