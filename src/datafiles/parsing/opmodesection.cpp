#include "datafiles/parsing/opmodesection.h"

#include "datafiles/parsing/headerlimits.h"

namespace HeaderSections {

bool readOpmodes(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node node = header.get(QStringLiteral("opmodes"));
    if (!node.exists)
        return false;
    const Llama::ListNode names = node.toList();
    checkHeaderCount(names.size());
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names.at(i).requireString();
        checkHeaderCount(0, state.isAffordable(MemoryBudget::ofName(name.size())));
        state.addOpmode(name);
    }
    return true;
}

} // namespace HeaderSections
