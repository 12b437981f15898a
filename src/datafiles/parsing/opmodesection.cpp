#include "datafiles/parsing/headersections.h"

#include "datafiles/parsing/filereadererror.h"

namespace HeaderSections {

void checkCount(qint64 count, bool affordable)
{
    if (count > mostHeaderValues || !affordable)
        throw FileReaderError(QStringLiteral("Header describes too many values"));
}

bool readOpmodes(const Llama::MapNode &header, FileReaderState &state)
{
    const Llama::Node node = header.get(QStringLiteral("opmodes"));
    if (!node.exists)
        return false;
    const Llama::ListNode names = node.toList();
    checkCount(names.size());
    for (int i = 0; i < names.size(); ++i)
        state.addOpmode(names.at(i).requireString());
    return true;
}

} // namespace HeaderSections
