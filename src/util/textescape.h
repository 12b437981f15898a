#pragma once

#include <QString>
#include <QStringList>

/// Backslash, BEL, BS, TAB, VT, FF, LF, CR and the double quote become backslash sequences.
QString escapeText(const QString &text);
/// The same without the double quote.
QString escapeTextNoQuote(const QString &text);
/// Undoes escapeTextNoQuote. A backslash before any other character is copied as it is.
QString unescapeText(const QString &text);
/// The text with its first character in upper case.
QString capitalized(const QString &text);

/// Fills %1, %2 ... %99 of a pattern in one pass, so that a "%1" inside a value stays as it is. Unlike QString::arg it
/// has no limit of nine values, and a marker without a value stays.
QString fillMarkers(const QString &pattern, const QStringList &values);
