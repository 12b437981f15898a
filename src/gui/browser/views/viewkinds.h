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

} // namespace Tsb
