#include "util/valueformat.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>

namespace {

constexpr int mostDigits = 3; // of a width or a precision
constexpr std::size_t longestFormat = 10'000;

/// A field may ask for a billion blanks.
bool hasLongNumber(const std::string &format)
{
    int digits = 0;
    int depth = 0;
    for (const char c : format) {
        if (c == '{')
            ++depth;
        else if (c == '}')
            depth = std::max(0, depth - 1);
        digits = depth > 0 && c >= '0' && c <= '9' ? digits + 1 : 0;
        if (digits > mostDigits)
            return true;
    }
    return false;
}

} // namespace

QString formatValues(const QString &format, const std::vector<double> &values, bool *isValid)
{
    const std::string utf8 = format.toStdString();
    *isValid = utf8.size() <= longestFormat && !hasLongNumber(utf8);
    if (!*isValid)
        return {};
    fmt::dynamic_format_arg_store<fmt::format_context> arguments;
    for (const double value : values)
        arguments.push_back(value);
    try {
        return QString::fromStdString(fmt::vformat(utf8, arguments));
    } catch (const fmt::format_error &) {
        *isValid = false;
        return {};
    }
}
