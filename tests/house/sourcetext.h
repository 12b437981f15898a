#pragma once

#include <QString>
#include <QStringList>

/// Reading of source files, for the tests of the house rules.

/// Paths of all files below a folder of the checkout, relative to the checkout, that match one of the wildcards.
QStringList filesBelow(const QString &folder, const QStringList &wildcards);
/// The text of a file of the checkout.
QString textOf(const QString &relativePath);
/// What the file includes, in its order: "util/recordtime.h", "QString".
QStringList includesOf(const QString &text);
/// The text with comments, string and character literals blanked; line feeds stay.
QString withoutCommentsAndTexts(const QString &text);
/// The lines, from 1, on which a call of .arg is made on the result of another one.
QList<int> chainedArgLines(const QString &text);
