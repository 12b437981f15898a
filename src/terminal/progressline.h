#pragma once

#include <QString>

/// One line on standard error that tells how far the work is, when that is a terminal; otherwise nothing. For one
/// thread.
namespace ProgressLine {

/// Shows the text, with an estimate of the time that is left behind it. `done` is the share of the work that is done,
/// from 0 to 1; a lesser one than before begins another piece of work. Calls in quick succession are left out.
void show(const QString &text, double done);
/// Takes the line away, to be called before anything else is written. The next show() brings it back.
void clear();

} // namespace ProgressLine
