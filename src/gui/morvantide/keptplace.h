#pragma once

#include <QVariantMap>

class MainWindowBase;

/// The time span and the record that a window shows, as a part of its layout. Times are ticks of 100 ns since 1970 UTC,
/// as texts, for a setup's numbers have 32 bits.
namespace KeptPlace {

QVariantMap of(const MainWindowBase &window);
/// Shows the record, if the open data have it, and the time span. What is missing or makes no sense, such as a span
/// without any of the data, changes nothing.
void show(MainWindowBase &window, const QVariantMap &place);

/// The record alone.
void showRecord(MainWindowBase &window, const QVariantMap &place);

} // namespace KeptPlace
