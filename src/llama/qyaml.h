#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

class QIODevice;

/// YAML text to trees of QVariant and back, and nodes that carry the path of each value so that errors name the place.
/// Mappings are QVariantMap, sequences QVariantList, scalars null, bool, int, double or QString.
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

// ---- loading and dumping

/// All documents of the text. Throws YamlError. Text from foreign files is bounded: no deeper than 200 levels, no more
/// than 10 nodes a byte (copies of aliases counted) and 10 million nodes in all, or fewer where the caller says so.
QVariantList yamlLoad(const QByteArray &text, const QString &sourceName = QString(), qint64 mostNodes = 10'000'000);
QVariantList yamlLoad(const char *text, size_t size, const QString &sourceName = QString());
QVariantList yamlLoad(QIODevice *device, const QString &sourceName = QString());
/// All documents of the file; the source name is the file's name without its directory. Throws YamlError.
QVariantList yamlLoadFile(const QString &path);

/// False if the value can't be emitted, with a line on the debug output. Never throws.
bool yamlDump(const QVariant &value, QIODevice *device);
/// The text; throws YamlError "Failed to emit yaml document.".
QByteArray yamlDump(const QVariant &value);

// ---- nodes

/// One step of a value's path. The root's name is a file name or empty; other names hold their separator.
struct NodeIdentity {
    std::shared_ptr<const NodeIdentity> parent;
    QString name;

    /// The names from the root down, joined.
    QString path() const;
};
using NodeIdentityPointer = std::shared_ptr<const NodeIdentity>;

class ListNode;
class MapNode;

/// A value and its path. Nodes are values; the tree beneath is implicitly shared.
class Node {
public:
    Node();
    /// A node that exists, with a fresh identity of that name.
    explicit Node(const QVariant &value, const QString &rootName = QString());
    Node(bool exists, NodeIdentityPointer identity, const QVariant &value);

    bool exists = false;
    NodeIdentityPointer identity; ///< never null
    QVariant value;

    QString path() const { return identity->path(); }

    // A node that doesn't exist gives an empty list or map; a value that can't convert throws NodeTypeError. A value
    // that could convert by its type but doesn't (the string "abc" as a double) gives zero. toInt() rounds a double,
    // and gives the nearest int for one out of range.
    ListNode toList() const;
    MapNode toMap() const;
    int toInt() const;
    double toDouble() const;
    bool toBool() const;
    QString toString() const;
    QByteArray toByteArray() const;
    /// The text of a value that is a QString exactly; NodeTypeError for anything that would only convert.
    QString requireString() const;
};

class ListNode {
public:
    ListNode();
    ListNode(bool exists, NodeIdentityPointer identity, const QVariantList &items);

    bool exists = false;
    NodeIdentityPointer identity;
    QVariantList items;

    QString path() const { return identity->path(); }
    int size() const { return items.size(); }
    /// The element, with the step " → [index]". Past the end: a node with a null value, which no type accepts.
    Node at(int index) const;
    /// All elements as numbers; NodeTypeError with the path of the first that isn't one.
    std::vector<double> toDoubleVector() const;
};

class MapNode {
public:
    MapNode();
    MapNode(bool exists, NodeIdentityPointer identity, const QVariantMap &entries);

    bool exists = false;
    NodeIdentityPointer identity;
    QVariantMap entries;

    QString path() const { return identity->path(); }
    bool contains(const QString &key) const { return entries.contains(key); }
    /// The value, with the step " → key"; NodeMissingError when the key is missing.
    Node at(const QString &key) const;
    Node at(QVariantMap::const_iterator position) const;
    /// The value, or a node that doesn't exist.
    Node get(const QString &key) const;

    /// True and *out set if the key exists. NodeTypeError on a wrong type.
    bool read(const QString &key, int *out) const;
    bool read(const QString &key, double *out) const;
    bool read(const QString &key, QString *out) const;

    bool value(const QString &key, bool fallback) const;
    double value(const QString &key, double fallback) const;
    QString value(const QString &key, const QString &fallback) const;
    QString value(const QString &key, const char *fallback) const { return value(key, QString::fromUtf8(fallback)); }
};

/// The text of a NodeTypeError.
QString typeErrorText(const QString &path, const QString &wanted, const QVariant &found);

/// Where files are read by name, such as a folder or a pack.
class FileSource {
public:
    virtual ~FileSource() = default;
    virtual QString directory() const = 0;
    virtual QByteArray read(const QString &name) const = 0;
};

/// The single document of a file, with the path as the root's name. Throws NodeError (of a YamlError too).
Node loadYamlNode(const QString &path);
Node loadYamlNode(const QString &name, const FileSource &source);

} // namespace Llama
