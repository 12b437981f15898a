#include "datafiles/reading/filestretch.h"

#include "datafiles/reading/datafile.h"

#include <algorithm>

namespace {

constexpr std::int64_t tailSize = 64;

QByteArray tailOf(const DataFile &file, std::int64_t end)
{
    QByteArray tail(int(std::min(tailSize, end)), '\0');
    const std::int64_t got = file.read(end - tail.size(), tail.data(), std::size_t(tail.size()));
    return got == tail.size() ? tail : QByteArray();
}

} // namespace

void FileStretch::readTo(const DataFile &file, std::int64_t offset)
{
    end = offset;
    tail = tailOf(file, end);
}

bool FileStretch::isIn(const DataFile &file) const
{
    return end >= 0 && file.id() == id && tailOf(file, end) == tail;
}
