#pragma once

#include "llama/errors.h"

#include <QByteArray>
#include <QVariant>

#include <memory>
#include <vector>

namespace Llama {

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

} // namespace Llama
