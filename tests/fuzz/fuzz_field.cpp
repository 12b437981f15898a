#include "fuzz.h"

#include "datafiles/parsing/fieldsplitter.h"
#include "datafiles/parsing/numberparser.h"

#include <double-conversion/string-to-double.h>

#include <cstring>
#include <limits>

/// The bytes are a row of numbers: each field reads, to the bit, as the reference converter reads it.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using double_conversion::StringToDoubleConverter;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const StringToDoubleConverter converter(StringToDoubleConverter::ALLOW_CASE_INSENSIBILITY, nan, nan, "inf", "nan");
    FieldSplitter fields;
    fields.split(TextView(reinterpret_cast<const char *>(data), size), '\t', size + 1);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const TextView field = fields[i];
        int used = 0;
        const double expected = converter.StringToDouble(field.data(), int(field.size()), &used);
        const double value = parseField(field, fields.line().data() + fields.line().size());
        require(std::memcmp(&expected, &value, sizeof value) == 0, "a field reads like the reference");
    }
    return 0;
}
