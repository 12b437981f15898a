#pragma once

#include "log/logger.h"

/// How log entries look in the log dock.
namespace LogText {

/// Whether the dock shows the entry: no debug lines, none of Qt's messages, and of the instrument's devices
/// ("instrument.dev.") nothing below a notice.
bool isShown(const Log::Entry &entry);
/// Whether the entry tells that a file is being read now.
bool isOfReading(const Log::Entry &entry);
/// One <pre> paragraph. Lines behind the first stand under its text. The date is printed only when asked for. Errors
/// and worse tell their level in words. A message that is too long to be looked at is cut.
QString html(const Log::Entry &entry, bool withDate);
/// The lines that the paragraph takes in a text view.
int lineCount(const QString &html);

} // namespace LogText
