#pragma once

#include <QMetaObject>
#include <QString>

#include <vector>

namespace Tsb {

class View;

/// A kind of view that a setup can name.
struct ViewKind {
    QString type; ///< in setups
    const QMetaObject *metaObject;
    View *(*make)();
};

/// The entry of a view class; it must declare Q_OBJECT, since the exact class tells the kind.
template<class T>
ViewKind viewKind(const QString &type)
{
    return {type, &T::staticMetaObject, []() -> View * { return new T; }};
}

/// All kinds that this program has.
std::vector<ViewKind> standardViewKinds();

/// The kinds that a browser has.
class ViewKinds {
public:
    explicit ViewKinds(std::vector<ViewKind> kinds) : m_kinds(std::move(kinds)) {}

    bool has(const QString &type) const { return kindOf(type) != nullptr; }
    /// Null for an unknown type.
    View *make(const QString &type) const;
    /// Empty for a view of a class that is none of the kinds.
    QString typeOf(const View &view) const;

private:
    const ViewKind *kindOf(const QString &type) const;

    std::vector<ViewKind> m_kinds;
};

} // namespace Tsb
