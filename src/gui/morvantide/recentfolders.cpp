#include "gui/morvantide/recentfolders.h"

QStringList recentFoldersWith(QStringList folders, const QString &opened)
{
    constexpr int most = 20;
    if (folders.contains(opened)) {
        folders.removeAll(opened);
    } else {
        while (folders.size() >= most)
            folders.removeLast();
    }
    folders.prepend(opened);
    return folders;
}
