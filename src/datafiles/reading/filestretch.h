#pragma once

#include "util/fileid.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

class DataFile;

/// The beginning of a file up to an offset, as it was when it was read.
struct FileStretch {
    QString path;
    FileId id;
    std::int64_t end = -1; ///< negative if the file couldn't be read so far
    QByteArray tail;       ///< the last bytes before the end

    /// The file was read to there.
    void readTo(const DataFile &file, std::int64_t offset);
    /// Whether the bytes before the end are still those. Nothing if the device fails.
    std::optional<bool> isIn(const DataFile &file) const;
};
