#include "dataexport/delimitedline.h"

#include "util/numbertext.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace DataExport {

namespace {

constexpr auto charactersOfNumbers = "0123456789+-.einfa";
constexpr std::size_t firstRoom = 4096;

} // namespace

DelimitedLine::DelimitedLine(const QString &separator)
    : m_separator(separator), m_separatorBytes(separator.toUtf8()),
      m_quotesNumbers(needsQuotes(QLatin1String(charactersOfNumbers))), m_bytes(firstRoom)
{
}

void DelimitedLine::clear()
{
    m_size = 0;
    m_hasFields = false;
}

/// At least `bytes` free bytes behind the end.
char *DelimitedLine::room(std::size_t bytes)
{
    if (m_size + bytes > m_bytes.size())
        m_bytes.resize(2 * (m_size + bytes));
    return m_bytes.data() + m_size;
}

void DelimitedLine::put(const char *bytes, std::size_t size)
{
    if (size == 0)
        return;
    std::memcpy(room(size), bytes, size);
    m_size += size;
}

void DelimitedLine::separate()
{
    if (m_hasFields)
        put(m_separatorBytes.constData(), std::size_t(m_separatorBytes.size()));
    m_hasFields = true;
}

bool DelimitedLine::needsQuotes(const QString &text) const
{
    return std::any_of(text.begin(), text.end(), [this](QChar c) { return m_separator.contains(c); });
}

void DelimitedLine::addText(const QString &text)
{
    separate();
    QByteArray bytes = text.toUtf8();
    if (needsQuotes(text))
        bytes = '"' + bytes.replace('"', "\"\"") + '"';
    put(bytes.constData(), std::size_t(bytes.size()));
}

void DelimitedLine::addNumber(double value)
{
    if (std::isnan(value)) {
        separate();
        return;
    }
    if (m_quotesNumbers) {
        char text[numberTextRoom];
        addText(QString::fromLatin1(text, int(writeNumber(text, value) - text)));
        return;
    }
    separate();
    char *begin = room(numberTextRoom);
    m_size += std::size_t(writeNumber(begin, value) - begin);
}

void DelimitedLine::addEmptyFields(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        separate();
}

void DelimitedLine::endLine()
{
    put("\n", 1);
    m_hasFields = false;
}

} // namespace DataExport
