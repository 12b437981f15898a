#pragma once

#include <QString>

namespace Llama {

/// The base of all errors here. Not derived from std::exception.
class Exception {
public:
    explicit Exception(const QString &message) : m_message(message) {}
    virtual ~Exception() = default;
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// The text could not be read or written as YAML.
class YamlError : public Exception {
public:
    using Exception::Exception;
    /// "(source) message", or the message alone where the source has no name.
    YamlError(const QString &sourceName, const QString &message);
};
/// A tree, or its file, has not the form that its reader demands.
class NodeError : public Exception {
public:
    using Exception::Exception;
};
/// A required key is absent.
class NodeMissingError : public NodeError {
public:
    using NodeError::NodeError;
};
/// A value can't convert to the type demanded.
class NodeTypeError : public NodeError {
public:
    using NodeError::NodeError;
};

} // namespace Llama
