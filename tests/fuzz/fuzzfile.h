#pragma once

#include "fuzz.h"

#include <QString>

#include <sys/mman.h>
#include <unistd.h>

/// The path of a file with these bytes, which lives in memory alone: a disk would take most of a target's time. The
/// next call writes the same file anew.
inline QString fuzzFile(const std::uint8_t *data, std::size_t size)
{
    static const int descriptor = memfd_create("fuzz", MFD_CLOEXEC);
    require(ftruncate(descriptor, 0) == 0, "there is a file");
    require(pwrite(descriptor, data, size, 0) == ssize_t(size), "the bytes are in it");
    return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
}
