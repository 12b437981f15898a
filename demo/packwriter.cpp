#include "demo/packwriter.h"

#include <QtEndian>

#include <zlib.h>

namespace Demo {

namespace {

template<typename T>
void put(QByteArray &out, T value)
{
    char bytes[sizeof(T)];
    qToLittleEndian<T>(value, bytes);
    out.append(bytes, sizeof(T));
}

QByteArray deflated(const QByteArray &data)
{
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&stream, uLong(data.size()))) + 16, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(int(stream.total_out));
    deflateEnd(&stream);
    return out;
}

/// What the local header and the entry of the directory have in common, from the version to the length of extra fields.
QByteArray description(const QByteArray &name, const QByteArray &data, int packedSize)
{
    constexpr quint16 version = 20;
    constexpr quint16 utf8Name = 0x800;
    constexpr quint16 midnight = 0;
    constexpr quint16 date = (2019 - 1980) << 9 | 5 << 5 | 14; // the same bytes whenever it is made
    QByteArray out;
    for (quint16 word : {version, utf8Name, quint16(Z_DEFLATED), midnight, date})
        put(out, word);
    put(out, quint32(crc32(0, reinterpret_cast<const Bytef *>(data.constData()), uInt(data.size()))));
    put(out, quint32(packedSize));
    put(out, quint32(data.size()));
    put(out, quint16(name.size()));
    put(out, quint16(0));
    return out;
}

} // namespace

QByteArray makePack(const QList<QPair<QByteArray, QByteArray>> &entries)
{
    QByteArray body, directory;
    for (const auto &[name, data] : entries) {
        const QByteArray packed = deflated(data);
        const QByteArray common = description(name, data, packed.size());
        put<quint32>(directory, 0x02014b50);
        put<quint16>(directory, 20);
        directory += common;
        for (int i = 0; i < 3; ++i) // length of the comment, number of the disk, internal attributes
            put<quint16>(directory, 0);
        put<quint32>(directory, 0);
        put(directory, quint32(body.size()));
        directory += name;
        put<quint32>(body, 0x04034b50);
        body += common + name + packed;
    }
    QByteArray out = body + directory;
    put<quint32>(out, 0x06054b50);
    for (int word : {0, 0, entries.size(), entries.size()})
        put(out, quint16(word));
    put(out, quint32(directory.size()));
    put(out, quint32(body.size()));
    put<quint16>(out, 0);
    return out;
}

} // namespace Demo
