#pragma once

#include <QByteArray>

#include <vector>

namespace Demo {

/// Makes zip archives in memory, the same bytes whenever it is called; for tests also ones that lie.
class ZipWriter {
public:
    struct Entry {
        QByteArray name;
        QByteArray data;
        bool deflated = true;
        quint16 flags = 0;
        quint16 madeBy = 0;
        quint32 attributes = 0;
        qint64 declaredSize = -1; ///< in the central directory, instead of the true one
        int declaredMethod = -1;  ///< likewise
        bool streamed = false;    ///< local header without sizes, a data descriptor behind the data
        QByteArray localExtra;    ///< extra field of the local header alone
    };

    ZipWriter &add(const Entry &entry);
    ZipWriter &add(const QByteArray &name, const QByteArray &data);
    QByteArray finish(const QByteArray &comment = QByteArray());

private:
    QByteArray m_body;
    QByteArray m_directory;
    int m_count = 0;
};

/// A raw deflate stream, as zip entries hold it.
QByteArray deflateRaw(const QByteArray &data);

} // namespace Demo
