#pragma once

#include <QStringList>

/// Puts a name into a list of chosen ones, which may have an order of its own: before the first one that stands behind
/// it in `all`, else at the end. Nothing if it is there.
void insertInOrder(QStringList &chosen, const QString &name, const QStringList &all);
