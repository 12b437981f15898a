#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

namespace Demo {

/// A zip archive of deflated entries, names with their contents.
QByteArray makePack(const QList<QPair<QByteArray, QByteArray>> &entries);

} // namespace Demo
