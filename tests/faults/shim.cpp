#include "faults/shim.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Faults {

namespace {

std::vector<Call> callsIn(const QByteArray &record)
{
    std::vector<Call> calls;
    for (int from = 0; from < record.size();) {
        const int end = record.indexOf('\n', from);
        const QList<QByteArray> fields = record.mid(from, end - from).split('\t');
        if (end < 0 || fields.size() != 7)
            qFatal("The record of the calls is broken");
        Call call{fields[0],
                  fields[1] == "1",
                  fields[2].toULongLong(),
                  fields[3].toLongLong(),
                  fields[4].toLongLong(),
                  QFile::decodeName(fields[5]),
                  QFile::decodeName(fields[6]),
                  {}};
        from = end + 1;
        if (call.name == "write" && call.isDone) {
            call.bytes = record.mid(from, int(call.result));
            from += int(call.result) + 1;
        }
        calls.push_back(call);
    }
    return calls;
}

} // namespace

QStringList shimVariables(const QString &folder)
{
    // A sanitizer wants to be the first of all libraries, unless it is told otherwise.
    return {"LD_PRELOAD=" FAULTS_SHIM, "FAULTS_BELOW=" + QFileInfo(folder).canonicalFilePath(),
            "ASAN_OPTIONS=verify_asan_link_order=0:" + qEnvironmentVariable("ASAN_OPTIONS")};
}

CallCounter::CallCounter()
{
    const std::size_t size = 2 * sizeof(qint64);
    if (m_file.open() && m_file.resize(qint64(size)))
        m_counts = reinterpret_cast<volatile qint64 *>(m_file.map(0, qint64(size)));
    if (!m_counts)
        qFatal("Calls can't be counted");
}

QString CallCounter::variable()
{
    m_counts[0] = m_counts[1] = 0;
    return "FAULTS_COUNT=" + m_file.fileName();
}

qint64 CallCounter::begun() const
{
    return m_counts[0];
}

qint64 CallCounter::ended() const
{
    return m_counts[1];
}

QString watchedFolder(const QString &folder)
{
    return QFileInfo(folder).canonicalFilePath() + "/watched";
}

std::vector<Call> recordOf(const Writer &writer, const QString &folder)
{
    const QString place = watchedFolder(folder), record = QDir(folder).filePath("calls");
    layDown(writer.before, place);
    const Ending ending = writer.run(place, shimVariables(place) << "FAULTS_RECORD=" + record);
    QFile file(record);
    if (!ending.isSuccess() || contentsOf(place) != writer.after || !file.open(QIODevice::ReadOnly))
        qFatal("%s writes something else when it is watched: %s", qPrintable(writer.name), ending.words.constData());
    return callsIn(file.readAll());
}

} // namespace Faults
