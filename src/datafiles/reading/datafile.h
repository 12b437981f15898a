#pragma once

#include "util/fileid.h"

#include <cstdint>
#include <memory>

/// A file that is open for reading. Any thread may read from it. It may grow or shrink meanwhile.
class DataFile {
public:
    /// Null if the file can't be opened or isn't a regular one: a folder, a pipe or a device would not end.
    static std::shared_ptr<const DataFile> open(const QString &path);
    ~DataFile();
    DataFile(const DataFile &) = delete;
    DataFile &operator=(const DataFile &) = delete;

    /// When it was opened.
    std::int64_t size() const { return m_size; }
    const FileId &id() const { return m_id; }
    /// Reads from an offset on, up to `size` bytes. The result is the number of bytes, 0 at the end of the file; -1 if
    /// the device fails, and errno tells how.
    std::int64_t read(std::int64_t offset, char *bytes, std::size_t size) const;

private:
    DataFile() = default;

    int m_descriptor = -1;
    std::int64_t m_size = 0;
    FileId m_id;
};
