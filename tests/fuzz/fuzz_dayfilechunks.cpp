#include "fuzzdayfile.h"

/// The bytes are a day file, which is read as a whole and in at least five chunks. Whether it is read twice in a row, and
/// whether a thread of its own parses with the caller's, which doubles the time, follows from its length.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzFile(data, size);
    const int times = 1 + size % 2;
    const int threads = size % 16 < 2 ? 2 : 1;
    const QString whole = DayFileRead(path, times).text();
    require(DayFileRead(path, times, threads, 50 + size / 5).text() == whole,
            "chunks come to what the whole comes to");
    return 0;
}
