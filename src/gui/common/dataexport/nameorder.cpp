#include "gui/common/dataexport/nameorder.h"

#include <algorithm>

void insertInOrder(QStringList &chosen, const QString &name, const QStringList &all)
{
    if (chosen.contains(name))
        return;
    const int place = all.indexOf(name);
    const auto standsBehind = [&](const QString &other) { return all.indexOf(other) > place; };
    const auto before = std::find_if(chosen.begin(), chosen.end(), standsBehind);
    chosen.insert(int(before - chosen.begin()), name);
}
