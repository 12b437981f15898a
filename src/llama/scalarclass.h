#pragma once

#include <QByteArray>
#include <QVariant>

namespace Llama {

/// The type of an unquoted scalar. It decides the value when reading and the quotes when writing.
enum class ScalarClass {
    Null,        ///< "", "~", "null"
    True,        ///< "true", "yes", "on"
    False,       ///< "false", "no", "off"
    Hex,         ///< "0x1F"
    Octal,       ///< "017"
    Decimal,     ///< "0", "-12", "1,000"
    Float,       ///< "1.5", "1."; a digit before the point is needed
    Exponent,    ///< "1e+5"; the exponent needs its sign
    PlusInf,     ///< ".inf"
    MinusInf,    ///< "-.inf"
    NaN,         ///< ".nan"
    Sexagesimal, ///< "1:30:00"
    Date,        ///< "2019-09-12"
    Timestamp,   ///< "2019-09-12T12:16:52Z"
    Equals,      ///< "="
    Merge,       ///< "<<", which is refused: merge keys don't exist here
    String       ///< everything else
};

/// The class of the text up to its terminating NUL.
ScalarClass classifyScalar(const char *text);

/// The text of UTF-8 bytes, with NULs in it and a byte order mark at its start, which QString::fromUtf8 would drop.
QString scalarText(const QByteArray &text);

/// The value that a text of that class stands for. Numbers that the conversion refuses, as out of range or with commas
/// in them, are 0 without complaint. Merge has no value.
QVariant scalarValue(ScalarClass scalarClass, const QByteArray &text);

} // namespace Llama
