#include "util/filenamepart.h"

QString fileNamePart(const QString &name)
{
    const QLatin1Char slash('/');
    const QLatin1String escapedSlash("%2F"), escapedPercent("%25");
    if (!name.contains(slash) && !name.contains(escapedSlash) && !name.contains(escapedPercent))
        return name;
    QString part = name;
    return part.replace(QLatin1Char('%'), escapedPercent).replace(slash, escapedSlash);
}
