#include "llama/nodes.h"

#include <cmath>
#include <limits>

namespace Llama {

namespace {

NodeIdentityPointer rootIdentity(const QString &name)
{
    return std::make_shared<NodeIdentity>(NodeIdentity{nullptr, name});
}

NodeIdentityPointer identityOr(NodeIdentityPointer identity)
{
    return identity ? std::move(identity) : rootIdentity(QString());
}

NodeIdentityPointer keyIdentity(const NodeIdentityPointer &parent, const QString &key)
{
    return std::make_shared<NodeIdentity>(NodeIdentity{parent, QStringLiteral(u" \u2192 %1").arg(key)});
}

const QVariant &demand(const Node &node, int type)
{
    if (!node.value.canConvert(type))
        throw NodeTypeError(typeErrorText(node.path(), QLatin1String(QMetaType::typeName(type)), node.value));
    return node.value;
}

} // namespace

QString typeErrorText(const QString &path, const QString &wanted, const QVariant &found)
{
    return QStringLiteral("'%1' must be %2, but was %3").arg(path, wanted, QLatin1String(found.typeName()));
}

QString NodeIdentity::path() const
{
    QStringList names;
    for (const NodeIdentity *step = this; step; step = step->parent.get())
        names.prepend(step->name);
    return names.join(QString());
}

// ---- Node

Node::Node() : identity(rootIdentity(QString())) {}

Node::Node(const QVariant &nodeValue, const QString &rootName)
    : exists(true), identity(rootIdentity(rootName)), value(nodeValue)
{
}

Node::Node(bool nodeExists, NodeIdentityPointer nodeIdentity, const QVariant &nodeValue)
    : exists(nodeExists), identity(identityOr(std::move(nodeIdentity))), value(nodeValue)
{
}

ListNode Node::toList() const
{
    if (!exists)
        return ListNode(false, identity, QVariantList());
    return ListNode(true, identity, demand(*this, QMetaType::QVariantList).toList());
}

MapNode Node::toMap() const
{
    if (!exists)
        return MapNode(false, identity, QVariantMap());
    return MapNode(true, identity, demand(*this, QMetaType::QVariantMap).toMap());
}

int Node::toInt() const
{
    constexpr int least = std::numeric_limits<int>::min(), greatest = std::numeric_limits<int>::max();
    const QVariant &found = demand(*this, QMetaType::Int);
    // The toolkit's own conversion of a double out of range is undefined.
    if (found.userType() == QMetaType::Double) {
        const double number = found.toDouble();
        if (std::isnan(number))
            return 0;
        if (number >= greatest || number <= least)
            return number > 0 ? greatest : least;
    }
    return found.toInt();
}

double Node::toDouble() const
{
    return demand(*this, QMetaType::Double).toDouble();
}

bool Node::toBool() const
{
    return demand(*this, QMetaType::Bool).toBool();
}

QString Node::toString() const
{
    return demand(*this, QMetaType::QString).toString();
}

QByteArray Node::toByteArray() const
{
    return demand(*this, QMetaType::QByteArray).toByteArray();
}

QString Node::requireString() const
{
    if (value.userType() != QMetaType::QString)
        throw NodeTypeError(typeErrorText(path(), QStringLiteral("QString"), value));
    return value.toString();
}

// ---- ListNode

ListNode::ListNode() : identity(rootIdentity(QString())) {}

ListNode::ListNode(bool nodeExists, NodeIdentityPointer nodeIdentity, const QVariantList &nodeItems)
    : exists(nodeExists), identity(identityOr(std::move(nodeIdentity))), items(nodeItems)
{
}

Node ListNode::at(int index) const
{
    const QString step = QStringLiteral(u" \u2192 [%1]").arg(index);
    return Node(true, std::make_shared<NodeIdentity>(NodeIdentity{identity, step}), items.value(index));
}

std::vector<double> ListNode::toDoubleVector() const
{
    std::vector<double> numbers;
    numbers.reserve(std::size_t(size()));
    for (int i = 0; i < size(); ++i)
        numbers.push_back(items[i].canConvert(QMetaType::Double) ? items[i].toDouble() : at(i).toDouble());
    return numbers;
}

// ---- MapNode

MapNode::MapNode() : identity(rootIdentity(QString())) {}

MapNode::MapNode(bool nodeExists, NodeIdentityPointer nodeIdentity, const QVariantMap &nodeEntries)
    : exists(nodeExists), identity(identityOr(std::move(nodeIdentity))), entries(nodeEntries)
{
}

Node MapNode::at(const QString &key) const
{
    const auto found = entries.constFind(key);
    if (found == entries.constEnd())
        throw NodeMissingError(QStringLiteral("'%1' was not found at %2").arg(key, path()));
    return at(found);
}

Node MapNode::at(QVariantMap::const_iterator position) const
{
    if (position == entries.constEnd())
        throw NodeMissingError(QStringLiteral("'%1' was not found at %2").arg(QLatin1String("<unknown>"), path()));
    return Node(true, keyIdentity(identity, position.key()), position.value());
}

Node MapNode::get(const QString &key) const
{
    return Node(contains(key), keyIdentity(identity, key), entries.value(key));
}

bool MapNode::read(const QString &key, int *out) const
{
    const Node node = get(key);
    if (node.exists)
        *out = node.toInt();
    return node.exists;
}

bool MapNode::read(const QString &key, double *out) const
{
    const Node node = get(key);
    if (node.exists)
        *out = node.toDouble();
    return node.exists;
}

bool MapNode::read(const QString &key, QString *out) const
{
    const Node node = get(key);
    if (node.exists)
        *out = node.toString();
    return node.exists;
}

bool MapNode::value(const QString &key, bool fallback) const
{
    const Node node = get(key);
    return node.exists ? node.toBool() : fallback;
}

double MapNode::value(const QString &key, double fallback) const
{
    const Node node = get(key);
    return node.exists ? node.toDouble() : fallback;
}

QString MapNode::value(const QString &key, const QString &fallback) const
{
    const Node node = get(key);
    return node.exists ? node.toString() : fallback;
}

} // namespace Llama
