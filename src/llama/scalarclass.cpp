#include "llama/scalarclass.h"

#include <cstring>
#include <limits>

namespace Llama {

namespace {

struct Word {
    const char *text;
    ScalarClass scalarClass;
};
constexpr Word words[] = {
    {"", ScalarClass::Null},          {"~", ScalarClass::Null},         {"null", ScalarClass::Null},
    {"Null", ScalarClass::Null},      {"NULL", ScalarClass::Null},      {"true", ScalarClass::True},
    {"True", ScalarClass::True},      {"TRUE", ScalarClass::True},      {"yes", ScalarClass::True},
    {"Yes", ScalarClass::True},       {"YES", ScalarClass::True},       {"on", ScalarClass::True},
    {"On", ScalarClass::True},        {"ON", ScalarClass::True},        {"false", ScalarClass::False},
    {"False", ScalarClass::False},    {"FALSE", ScalarClass::False},    {"no", ScalarClass::False},
    {"No", ScalarClass::False},       {"NO", ScalarClass::False},       {"off", ScalarClass::False},
    {"Off", ScalarClass::False},      {"OFF", ScalarClass::False},      {".inf", ScalarClass::PlusInf},
    {".Inf", ScalarClass::PlusInf},   {".INF", ScalarClass::PlusInf},   {"+.inf", ScalarClass::PlusInf},
    {"+.Inf", ScalarClass::PlusInf},  {"+.INF", ScalarClass::PlusInf},  {"-.inf", ScalarClass::MinusInf},
    {"-.Inf", ScalarClass::MinusInf}, {"-.INF", ScalarClass::MinusInf}, {".nan", ScalarClass::NaN},
    {".NaN", ScalarClass::NaN},       {".NAN", ScalarClass::NaN},       {"=", ScalarClass::Equals},
    {"<<", ScalarClass::Merge},
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isOctalDigit(char c)
{
    return c >= '0' && c <= '7';
}

/// Walks over the text; its end is the NUL, which no rule takes.
struct Scanner {
    const char *at;

    bool atEnd() const { return *at == '\0'; }
    bool take(char c) { return *at == c && (++at, true); }
    bool takeEither(char a, char b) { return take(a) || take(b); }
    bool takeDigit() { return isDigit(*at) && (++at, true); }
    bool takeDigits(int count)
    {
        while (count > 0 && takeDigit())
            --count;
        return count == 0;
    }
    template<typename Kind>
    int takeAll(Kind kind)
    {
        const char *const start = at;
        while (kind(*at))
            ++at;
        return int(at - start);
    }
    int takeWithCommas(bool (*kind)(char))
    {
        return takeAll([kind](char c) { return c == ',' || kind(c); });
    }
};

/// Hex, Octal, Decimal, Float, Exponent or String.
ScalarClass classifyNumber(const char *text)
{
    Scanner scanner{text};
    scanner.takeEither('+', '-');
    const char *const digits = scanner.at;
    if (!scanner.takeDigit())
        return ScalarClass::String;
    if (*digits == '0' && scanner.take('x'))
        return scanner.takeWithCommas(isHexDigit) > 0 && scanner.atEnd() ? ScalarClass::Hex : ScalarClass::String;
    scanner.takeWithCommas(isDigit);
    if (scanner.atEnd()) {
        if (*digits != '0' || digits[1] == '\0')
            return ScalarClass::Decimal;
        Scanner octal{digits};
        octal.takeWithCommas(isOctalDigit);
        return octal.atEnd() ? ScalarClass::Octal : ScalarClass::String;
    }
    if (scanner.take('.')) {
        scanner.takeWithCommas(isDigit);
        if (scanner.atEnd())
            return ScalarClass::Float;
    }
    if (scanner.takeEither('e', 'E') && scanner.takeEither('+', '-') && scanner.takeAll(isDigit) > 0 && scanner.atEnd())
        return ScalarClass::Exponent;
    return ScalarClass::String;
}

bool isSexagesimal(const char *text)
{
    Scanner scanner{text};
    if (scanner.takeAll(isDigit) == 0 || *scanner.at != ':')
        return false;
    while (scanner.take(':')) {
        const char first = *scanner.at;
        if (!scanner.takeDigit() || (scanner.takeDigit() && first > '5'))
            return false;
    }
    if (scanner.take('.'))
        scanner.takeAll(isDigit);
    return scanner.atEnd();
}

bool takeZone(Scanner &scanner)
{
    if (scanner.take('Z'))
        return true;
    if (!scanner.takeEither('+', '-') || !scanner.takeDigit())
        return false;
    scanner.takeDigit();
    return !scanner.take(':') || scanner.takeDigits(2);
}

/// Date, Timestamp or String.
ScalarClass classifyTime(const char *text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    Scanner scanner{text};
    if (!scanner.takeDigits(4) || !scanner.take('-') || !scanner.takeDigits(2) || !scanner.take('-') ||
        !scanner.takeDigits(2))
        return ScalarClass::String;
    if (scanner.atEnd())
        return ScalarClass::Date;
    const bool spaced = !scanner.takeEither('T', 't');
    if (spaced && scanner.takeAll(isBlank) == 0)
        return ScalarClass::String;
    if (!scanner.takeDigits(2) || !scanner.take(':') || !scanner.takeDigits(2) || !scanner.take(':') ||
        !scanner.takeDigits(2))
        return ScalarClass::String;
    if (scanner.take('.'))
        scanner.takeAll(isDigit);
    if (spaced)
        scanner.takeAll(isBlank);
    return takeZone(scanner) && scanner.atEnd() ? ScalarClass::Timestamp : ScalarClass::String;
}

} // namespace

ScalarClass classifyScalar(const char *text)
{
    for (const Word &word : words) {
        if (std::strcmp(text, word.text) == 0)
            return word.scalarClass;
    }
    const ScalarClass number = classifyNumber(text);
    if (number != ScalarClass::String)
        return number;
    return isSexagesimal(text) ? ScalarClass::Sexagesimal : classifyTime(text);
}

QString scalarText(const QByteArray &text)
{
    if (text.startsWith("\xef\xbb\xbf"))
        return scalarText('x' + text).mid(1);
    return QString::fromUtf8(text.constData(), text.size());
}

QVariant scalarValue(ScalarClass scalarClass, const QByteArray &text)
{
    switch (scalarClass) {
    case ScalarClass::Null:
    case ScalarClass::Merge:
        return QVariant();
    case ScalarClass::True:
        return true;
    case ScalarClass::False:
        return false;
    case ScalarClass::Hex:
        return text.toInt(nullptr, 16);
    case ScalarClass::Octal:
        return text.toInt(nullptr, 8);
    case ScalarClass::Decimal:
        return text.toInt(nullptr, 10);
    case ScalarClass::Float:
    case ScalarClass::Exponent:
        return text.toDouble();
    case ScalarClass::PlusInf:
        return std::numeric_limits<double>::infinity();
    case ScalarClass::MinusInf:
        return -std::numeric_limits<double>::infinity();
    case ScalarClass::NaN:
        return std::numeric_limits<double>::quiet_NaN();
    case ScalarClass::Sexagesimal:
    case ScalarClass::Date:
    case ScalarClass::Timestamp:
    case ScalarClass::Equals:
    case ScalarClass::String:
        break;
    }
    return scalarText(text);
}

} // namespace Llama
