#pragma once

#include <QList>
#include <QUrl>
#include <QVariantMap>

/// What the data dialog is to offer for folders or files that were dropped: the first folder, else the folder of the
/// first file, with the variant of that file and the span of the days of all. The keys that nothing tells of are left
/// out. Empty if nothing of it is on this machine.
QVariantMap choiceOfDropped(const QList<QUrl> &urls);
/// What to offer for a folder: a variant that it holds, or its old-style files.
QVariantMap choiceOfFolder(const QString &folder);
