#include "datafiles/reading/filestretch.h"

#include "datafiles/reading/datafile.h"

#include <algorithm>

namespace {

constexpr std::int64_t tailSize = 64;

/// Nothing if the device fails.
std::optional<QByteArray> tailOf(const DataFile &file, std::int64_t end)
{
    QByteArray tail(int(std::min(tailSize, end)), '\0');
    const std::int64_t got = file.read(end - tail.size(), tail.data(), std::size_t(tail.size()));
    if (got < 0)
        return {};
    tail.truncate(int(got));
    return tail;
}

} // namespace

void FileStretch::readTo(const DataFile &file, std::int64_t offset)
{
    end = offset;
    tail = tailOf(file, end).value_or(QByteArray());
}

std::optional<bool> FileStretch::isIn(const DataFile &file) const
{
    if (end < 0 || file.id() != id)
        return false;
    const auto present = tailOf(file, end);
    return present ? std::optional<bool>(*present == tail) : std::nullopt;
}
