#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <random>
#include <vector>

namespace Faults {

/// Something that a user does without a thought. What it hits depends on what is there when it comes, by numbers of its
/// own alone, so that a list of events stays of use when some of them are left out.
struct MonkeyEvent {
    enum Action { key, type, click, doubleClick, hover, drag, wheel, command, answer, dock, resize, grow, work };
    static constexpr int actions = work + 1;
    static constexpr int span = 10000; ///< numbers are below it

    Action action = key;
    std::array<int, 6> numbers{};
    int wait = 0; ///< ms before the next one

    /// That number as one from 0 to end - 1.
    int below(int which, int end) const { return end > 0 ? int(qint64(numbers[which]) * end / span) : 0; }
};

using MonkeyEvents = std::vector<MonkeyEvent>;

MonkeyEvents randomEvents(int count, std::mt19937_64 &random);
/// A line for each: the action's name, its numbers, the wait.
QByteArray textOf(const MonkeyEvents &events);
/// Lines that are no event are left out.
MonkeyEvents eventsFrom(const QByteArray &text);

} // namespace Faults
