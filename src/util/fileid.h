#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <utility>

/// A file whatever it is called and through whatever links: its device and node.
using FileId = std::pair<quint64, quint64>;

/// Nothing for a file that doesn't exist or can't be looked at.
std::optional<FileId> fileIdOf(const QString &path);

/// Of the open file; nothing if the path leads to another one, or to none.
std::optional<FileId> idIfNamed(int descriptor, const QString &path);

/// Which file it is, and its bytes.
struct FileState {
    FileId id;
    std::int64_t size = 0;
};
/// The same.
std::optional<FileState> fileStateOf(const QString &path);
