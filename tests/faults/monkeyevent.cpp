#include "faults/monkeyevent.h"

namespace Faults {

namespace {

struct ActionKind {
    const char *name;
    int weight;
};
/// In the order of the actions.
constexpr std::array<ActionKind, MonkeyEvent::actions> kinds{{{"key", 24},
                                                              {"type", 4},
                                                              {"click", 26},
                                                              {"double", 3},
                                                              {"hover", 4},
                                                              {"drag", 10},
                                                              {"wheel", 8},
                                                              {"command", 5},
                                                              {"answer", 9},
                                                              {"dock", 3},
                                                              {"resize", 2},
                                                              {"grow", 2},
                                                              {"work", 8}}};

int randomWait(std::mt19937_64 &random)
{
    const int kind = int(random() % 20);
    return kind < 16 ? 0 : kind < 19 ? int(random() % 5) : int(random() % 40);
}

} // namespace

MonkeyEvents randomEvents(int count, std::mt19937_64 &random)
{
    std::array<int, kinds.size()> weights{};
    std::transform(kinds.begin(), kinds.end(), weights.begin(), [](const ActionKind &kind) { return kind.weight; });
    std::discrete_distribution<int> action(weights.begin(), weights.end());
    MonkeyEvents events;
    for (int i = 0; i < count; ++i) {
        MonkeyEvent event;
        event.action = MonkeyEvent::Action(action(random));
        for (int &number : event.numbers)
            number = int(random() % MonkeyEvent::span);
        event.wait = randomWait(random);
        events.push_back(event);
    }
    return events;
}

QByteArray textOf(const MonkeyEvents &events)
{
    QByteArray text;
    for (const MonkeyEvent &event : events) {
        text += kinds[std::size_t(event.action)].name;
        for (const int number : event.numbers)
            text += ' ' + QByteArray::number(number);
        text += ' ' + QByteArray::number(event.wait) + '\n';
    }
    return text;
}

MonkeyEvents eventsFrom(const QByteArray &text)
{
    MonkeyEvents events;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        const auto kind =
            std::find_if(kinds.begin(), kinds.end(), [&](const ActionKind &k) { return words[0] == k.name; });
        MonkeyEvent event;
        if (kind == kinds.end() || words.size() != int(event.numbers.size()) + 2)
            continue;
        event.action = MonkeyEvent::Action(kind - kinds.begin());
        for (std::size_t i = 0; i < event.numbers.size(); ++i)
            event.numbers[i] = qBound(0, words[int(i) + 1].toInt(), MonkeyEvent::span - 1);
        event.wait = words.last().toInt();
        events.push_back(event);
    }
    return events;
}

} // namespace Faults
