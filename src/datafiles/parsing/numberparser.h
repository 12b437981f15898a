#pragma once

#include "datafiles/parsing/textview.h"

#include <cstddef>
#include <cstdint>

/// The value of one field of a day file, in the "C" form in any locale: to the bit the result of a
/// double_conversion::StringToDoubleConverter that ignores the case of the symbols "inf" and "nan" and takes
/// empty text and junk for NaN. So a bad number is never an error, blanks around a number make it NaN, and "1e400" is
/// infinite.
///
/// `readableEnd` is the end of the bytes that may be looked at behind the field, such as the end of its line: the
/// common plain numbers are taken 8 or 16 bytes at a time.
double parseField(TextView field, const char *readableEnd);

inline double parseField(TextView field)
{
    return parseField(field, field.data() + field.size());
}

/// The values of `count` fields of a line, from field `first` on. `ends` are one past each field, counted from the
/// begin of the line; the separator that ends a field is one character.
void parseFields(TextView line, const std::uint32_t *ends, std::size_t first, double *out, std::size_t count);
