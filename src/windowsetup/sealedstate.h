#pragma once

#include <QByteArray>
#include <QVariantMap>

/// The toolkit's own binary states of windows and headers as text. The toolkit trusts these bytes and runs out of its
/// arrays on damaged ones, so a checksum stands beside them, which older readers ignore.
namespace WindowSetup {

/// What is read under a key.
struct State {
    QByteArray bytes; ///< empty if there are none, or none that can be trusted
    /// Whether a checksum stood beside them and held: they are as they were written then, if not by this program.
    bool isSealed = false;
    QString complaint; ///< null, or why there are no bytes though something stood there
};

/// Puts the bytes under the key as lower-case hexadecimal text, and their checksum under key + "checksum".
void seal(QVariantMap &map, const QString &key, const QByteArray &bytes);

/// Takes text of an even number of hexadecimal digits, up to 100 000 of them. A checksum that is there must hold.
State unseal(const QVariantMap &map, const QString &key);

} // namespace WindowSetup
