#pragma once

#include <QString>

/// Bytes that can be had without taking from others, as the system estimates it; 0 if it doesn't tell.
qint64 availableMemory();
/// The memory that the records of that many bytes of day files are likely to take.
qint64 estimatedMemory(qint64 fileBytes);
/// An advice, if that is more than half of the available memory; otherwise empty.
QString memoryWarning(qint64 fileBytes, qint64 available);
