#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <array>
#include <unordered_map>

namespace Spectrometer {

/// Which rows stay unwritten: none, or those whose begin, end and mode a file holds when it is opened, under the same
/// header or under any. So a writer that was killed can write all again, and the files are as if it hadn't been.
enum class PassOver { Nothing, RowsOfTheSameHeader, RowsOfAnyHeader };

/// The rows that a day file held before it was continued, by the texts of their begin, end and mode. Of each row it
/// keeps some 60 bytes.
class HeldRows {
public:
    /// A row is the bytes of its fields, without that of the flags, and the texts of its flags.
    void add(const QByteArray &fields, const QByteArrayList &flags);

    enum class Held { No, Same, Different };
    /// Whether the file holds a row of that begin, end and mode, and whether it is the same one in all its fields. A
    /// row that is held counts once: where two are alike in these three, two of them are found.
    Held take(const QByteArray &fields, const QByteArrayList &flags);

    void clear() { m_rows.clear(); }

private:
    using Digest = std::array<std::size_t, 2>;
    struct PartOfDigest {
        std::size_t operator()(const Digest &digest) const { return digest[0]; }
    };
    static Digest keyOf(const QByteArray &fields);
    static Digest digestOf(const QByteArray &fields, const QByteArrayList &flags);

    std::unordered_multimap<Digest, Digest, PartOfDigest> m_rows; ///< whole rows by their keys
};

} // namespace Spectrometer
