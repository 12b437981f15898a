#include "datafiles/writing/heldrows.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstring>

namespace Spectrometer {

namespace {

constexpr int keyFields = 3;

template<typename Digest>
Digest resultOf(const QCryptographicHash &hash)
{
    Digest digest;
    std::memcpy(digest.data(), hash.result().constData(), sizeof digest);
    return digest;
}

} // namespace

HeldRows::Digest HeldRows::keyOf(const QByteArray &fields)
{
    int end = -1;
    for (int field = 0; field < keyFields; ++field) {
        end = fields.indexOf('\t', end + 1);
        if (end < 0)
            break;
    }
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(fields.constData(), end < 0 ? fields.size() : end);
    return resultOf<Digest>(hash);
}

HeldRows::Digest HeldRows::digestOf(const QByteArray &fields, const QByteArrayList &flags)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(fields);
    for (const QByteArray &flag : flags) {
        hash.addData("\n", 1);
        hash.addData(flag);
    }
    return resultOf<Digest>(hash);
}

void HeldRows::add(const QByteArray &fields, const QByteArrayList &flags)
{
    m_rows.emplace(keyOf(fields), digestOf(fields, flags));
}

HeldRows::Held HeldRows::take(const QByteArray &fields, const QByteArrayList &flags)
{
    const auto [first, last] = m_rows.equal_range(keyOf(fields));
    if (first == last)
        return Held::No;
    const Digest digest = digestOf(fields, flags);
    const auto same = std::find_if(first, last, [&](const auto &row) { return row.second == digest; });
    const Held held = same == last ? Held::Different : Held::Same;
    m_rows.erase(same == last ? first : same);
    return held;
}

} // namespace Spectrometer
