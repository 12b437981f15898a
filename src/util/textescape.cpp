#include "util/textescape.h"

namespace {

struct Escape {
    char letter;
    char character;
};
constexpr Escape escapes[] = {{'a', '\a'}, {'b', '\b'}, {'t', '\t'}, {'v', '\v'},
                              {'f', '\f'}, {'n', '\n'}, {'r', '\r'}, {'\\', '\\'}};

/// The letter that stands behind a backslash for the character, or 0.
char letterOf(QChar character)
{
    for (const Escape &escape : escapes) {
        if (character == QLatin1Char(escape.character))
            return escape.letter;
    }
    return 0;
}

/// Its inverse.
char characterOf(QChar letter)
{
    for (const Escape &escape : escapes) {
        if (letter == QLatin1Char(escape.letter))
            return escape.character;
    }
    return 0;
}

QString escaped(const QString &text, bool withQuotes)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const char letter = withQuotes && c == QLatin1Char('"') ? '"' : letterOf(c);
        if (letter) {
            out += QLatin1Char('\\');
            out += QLatin1Char(letter);
        } else {
            out += c;
        }
    }
    return out;
}

int digitAt(const QString &text, int i)
{
    if (i >= text.size() || text[i] < QLatin1Char('0') || text[i] > QLatin1Char('9'))
        return -1;
    return text[i].unicode() - '0';
}

} // namespace

QString escapeText(const QString &text)
{
    return escaped(text, true);
}

QString escapeTextNoQuote(const QString &text)
{
    return escaped(text, false);
}

QString unescapeText(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == QLatin1Char('\\') && i + 1 < text.size();
        const char character = escape ? characterOf(text[i + 1]) : '\0';
        if (character) {
            out += QLatin1Char(character);
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

QString capitalized(const QString &text)
{
    QString out = text;
    if (!out.isEmpty())
        out[0] = out.at(0).toUpper();
    return out;
}

QString fillMarkers(const QString &pattern, const QStringList &values)
{
    QString out;
    for (int i = 0; i < pattern.size(); ++i) {
        const int tens = pattern[i] == QLatin1Char('%') ? digitAt(pattern, i + 1) : -1;
        const int ones = tens > 0 ? digitAt(pattern, i + 2) : -1;
        const int marker = ones < 0 ? tens : tens * 10 + ones;
        if (marker < 1 || marker > values.size()) {
            out += pattern[i];
            continue;
        }
        out += values[marker - 1];
        i += ones < 0 ? 1 : 2;
    }
    return out;
}
