#pragma once

#include <QIcon>

/// The compiled-in icon of that name in all its sizes (":NAME-16.png", ":NAME-22.png", ":NAME.png"); a null icon if
/// there is none.
QIcon namedIcon(const QString &name);
