#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace DataExport {

/// One line in the making: fields with a separator between them, UTF-8, in one buffer that is used again and again. A
/// text that holds any character of the separator stands in double quotes, with its own double quotes doubled; every
/// other text stands as it is, even with double quotes or line feeds.
class DelimitedLine {
public:
    /// The separator isn't empty.
    explicit DelimitedLine(const QString &separator);

    void clear();
    const char *data() const { return m_bytes.data(); }
    std::size_t size() const { return m_size; }

    void addText(const QString &text);
    /// As QString::number(value, 'g', 6) prints it; an empty field for NaN.
    void addNumber(double value);
    void addEmptyFields(std::size_t count);
    /// The line feed. The next field begins another line.
    void endLine();

private:
    char *room(std::size_t bytes);
    void separate();
    void put(const char *bytes, std::size_t size);
    bool needsQuotes(const QString &text) const;

    QString m_separator;
    QByteArray m_separatorBytes;
    bool m_quotesNumbers; ///< a number might hold a character of the separator
    bool m_hasFields = false;
    std::vector<char> m_bytes;
    std::size_t m_size = 0;
};

} // namespace DataExport
