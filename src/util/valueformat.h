#pragma once

#include <QString>

#include <vector>

/// The values set into a format with "{}" fields, as in "{:.1f} of {:.0f}". Empty text for *isValid false: a format
/// that is wrong, asks for more values than there are, or for a field wider than any screen, or is longer than any text
/// on one.
QString formatValues(const QString &format, const std::vector<double> &values, bool *isValid);
