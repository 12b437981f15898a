#include "datafiles/parsing/headerlimits.h"

#include "datafiles/parsing/filereadererror.h"

void checkHeaderCount(qint64 count, bool affordable)
{
    if (count > mostHeaderValues || !affordable)
        throw FileReaderError(QStringLiteral("Header describes too many values"));
}
