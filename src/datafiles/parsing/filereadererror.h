#pragma once

#include <QString>

/// A fault of a header or of a whole file.
class FileReaderError {
public:
    explicit FileReaderError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};
