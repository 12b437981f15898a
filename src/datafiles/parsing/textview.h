#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

/// A stretch of a line in the read buffer. Valid as long as the line is.
using TextView = std::string_view;

inline TextView viewOf(const QByteArray &bytes)
{
    return TextView(bytes.constData(), std::size_t(bytes.size()));
}

/// The same bytes without a copy, to look something up; not to be kept.
inline QByteArray bytesOf(TextView text)
{
    return QByteArray::fromRawData(text.data(), int(text.size()));
}

inline QString stringOf(TextView text)
{
    return QString::fromUtf8(text.data(), int(text.size()));
}

/// Without white space at both ends, as QByteArray::trimmed() sees it.
inline TextView trimmed(TextView text)
{
    const auto isSpace = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Without a pair of double quotes around it.
inline TextView withoutQuotes(TextView text)
{
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}
