#include "fuzzdayfile.h"

/// The bytes are a day file, which is read as a whole and in at least five chunks. A thread of its own doubles the
/// time, so it takes part for each fourth length.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzFile(data, size);
    const QString whole = DayFileRead(path).text();
    require(DayFileRead(path, size % 4 == 0 ? 2 : 1, 50 + size / 5).text() == whole,
            "chunks come to what the whole comes to");
    return 0;
}
