#include "demo/zipwriter.h"

#include <QtEndian>

#include <zlib.h>

namespace Demo {

namespace {

constexpr quint16 version = 20;
constexpr quint16 midnight = 0;
constexpr quint16 date = (2019 - 1980) << 9 | 5 << 5 | 14;

template<typename T>
void put(QByteArray &out, T value)
{
    char bytes[sizeof(T)];
    qToLittleEndian<T>(value, bytes);
    out.append(bytes, sizeof(T));
}

} // namespace

QByteArray deflateRaw(const QByteArray &data)
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

ZipWriter &ZipWriter::add(const QByteArray &name, const QByteArray &data)
{
    Entry entry;
    entry.name = name;
    entry.data = data;
    return add(entry);
}

ZipWriter &ZipWriter::add(const Entry &entry)
{
    const QByteArray stored = entry.deflated ? deflateRaw(entry.data) : entry.data;
    const quint16 method = entry.declaredMethod >= 0 ? quint16(entry.declaredMethod) : entry.deflated ? 8 : 0;
    const quint32 size = quint32(entry.declaredSize >= 0 ? entry.declaredSize : entry.data.size());
    const quint16 flags = quint16(entry.flags | (entry.streamed ? 8 : 0));
    const quint32 offset = quint32(m_body.size());
    const auto crc =
        quint32(crc32(0, reinterpret_cast<const Bytef *>(entry.data.constData()), uInt(entry.data.size())));

    put<quint32>(m_body, 0x04034b50);
    for (quint16 word : {version, flags, method, midnight, date})
        put(m_body, word);
    for (quint32 word :
         {entry.streamed ? 0 : crc, quint32(entry.streamed ? 0 : stored.size()), entry.streamed ? 0 : size})
        put(m_body, word);
    put<quint16>(m_body, quint16(entry.name.size()));
    put<quint16>(m_body, quint16(entry.localExtra.size()));
    m_body += entry.name + entry.localExtra + stored;
    if (entry.streamed)
        m_body += QByteArray(16, 'd');

    put<quint32>(m_directory, 0x02014b50);
    for (quint16 word : {entry.madeBy, version, flags, method, midnight, date})
        put(m_directory, word);
    for (quint32 word : {crc, quint32(stored.size()), size})
        put(m_directory, word);
    for (quint16 word : {quint16(entry.name.size()), quint16(0), quint16(0), quint16(0), quint16(0)})
        put(m_directory, word);
    put(m_directory, entry.attributes);
    put(m_directory, offset);
    m_directory += entry.name;
    ++m_count;
    return *this;
}

QByteArray ZipWriter::finish(const QByteArray &comment)
{
    QByteArray out = m_body + m_directory;
    put<quint32>(out, 0x06054b50);
    for (quint16 word : {quint16(0), quint16(0), quint16(m_count), quint16(m_count)})
        put(out, word);
    put<quint32>(out, quint32(m_directory.size()));
    put<quint32>(out, quint32(m_body.size()));
    put<quint16>(out, quint16(comment.size()));
    return out + comment;
}

} // namespace Demo
