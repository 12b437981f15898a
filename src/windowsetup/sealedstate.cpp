#include "windowsetup/sealedstate.h"

#include <QCryptographicHash>

#include <algorithm>

namespace WindowSetup {

namespace {

constexpr int mostDigits = 100'000;

QString checksumKey(const QString &key)
{
    return key + QLatin1String("checksum");
}

QString hexText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex()); // as bytes it could come back from the file as a number
}

QString checksumOf(const QByteArray &bytes)
{
    return hexText(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
}

bool isHexDigit(QChar c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

State refused(const QString &complaint)
{
    State state;
    state.complaint = complaint;
    return state;
}

} // namespace

void seal(QVariantMap &map, const QString &key, const QByteArray &bytes)
{
    map.insert(key, hexText(bytes));
    map.insert(checksumKey(key), checksumOf(bytes));
}

State unseal(const QVariantMap &map, const QString &key)
{
    const QVariant value = map.value(key);
    if (!value.isValid())
        return {};
    const QString text = value.toString(); // a few digits by hand may have become a number
    if (text.isEmpty() && value.type() == QVariant::String)
        return {};
    if (text.size() > mostDigits)
        return refused(QStringLiteral("\"%1\" is too long").arg(key));
    if (text.isEmpty() || text.size() % 2 != 0 || !std::all_of(text.begin(), text.end(), isHexDigit))
        return refused(QStringLiteral("\"%1\" isn't hexadecimal text").arg(key));

    State state;
    state.bytes = QByteArray::fromHex(text.toLatin1());
    const QVariant checksum = map.value(checksumKey(key));
    state.isSealed = checksum.isValid();
    if (state.isSealed && checksum.toString().toLower() != checksumOf(state.bytes))
        return refused(QStringLiteral("\"%1\" is damaged: its checksum doesn't match").arg(key));
    return state;
}

} // namespace WindowSetup
