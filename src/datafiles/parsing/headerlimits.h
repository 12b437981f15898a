#pragma once

#include <QtGlobal>

/// No header may describe more electrometers, parameters, modes, groups, flags or points of spectra than this.
constexpr int mostHeaderValues = 10000;

/// Throws FileReaderError "Header describes too many values" for a count beyond mostHeaderValues, or if `affordable` is
/// false.
void checkHeaderCount(qint64 count, bool affordable = true);
