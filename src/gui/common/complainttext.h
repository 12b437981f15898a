#pragma once

#include <QString>

/// What a window shows of a complaint that the log and the shell have in English, too: the same in the user's language.
/// The makers of such complaints know no windows; their words are known here by pattern. An unknown one stays as it is.
QString complaintText(const QString &english);
