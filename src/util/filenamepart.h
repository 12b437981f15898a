#pragma once

#include <QString>

/// The text that stands in file names for the name of a variant or an operating mode. It leads into no other folder, and
/// different names have different texts. A slash becomes "%2F".
QString fileNamePart(const QString &name);
