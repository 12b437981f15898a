#include "fuzz.h"

#include "util/valueformat.h"

/// The bytes are a format; the first of them tells how many values there are.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    std::vector<double> values;
    for (int i = 0; i < data[0] % 8; ++i)
        values.push_back(i * -1e3 / 7);
    const QString format = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), int(size - 1));
    bool isValid = false;
    const QString text = formatValues(format, values, &isValid);
    require(isValid || text.isEmpty(), "what isn't valid gives no text");
    require(text.size() < 2'000'000, "a text is in proportion to its format");
    return 0;
}
