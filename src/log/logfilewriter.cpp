#include "log/logfilewriter.h"

#include "util/buildinfo.h"
#include "util/textescape.h"

#include <QCoreApplication>
#include <QDir>
#include <QSysInfo>

#include <cstdio>

namespace Log {

namespace {

QByteArray headerText()
{
    const QString pattern = QStringLiteral("# Quilvane program log\n"
                                           "#   program path: %8, pid: %9\n"
                                           "#   software version: %1, revision: %2, build time: %3\n"
                                           "#   system architecture: %4, os: %5, kernel: %6 %7\n");
    return fillMarkers(pattern,
                       {BuildInfo::version(), BuildInfo::revision(), BuildInfo::buildTime(), QSysInfo::buildAbi(),
                        QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                        QCoreApplication::applicationFilePath(), QString::number(QCoreApplication::applicationPid())})
        .toUtf8();
}

/// Level 0 is "unknown" in the file, for those who search log files, though the table has a name for it.
QString fileLevelName(int level)
{
    return level == Emergency ? QStringLiteral("unknown") : levelName(level);
}

} // namespace

LogFileWriter::LogFileWriter(const QString &directory) : m_directory(directory) {}

LogFileWriter::~LogFileWriter() = default;

void LogFileWriter::write(const Entry &entry)
{
    const QDate date = entry.time.date();
    if ((!date.isValid() || date != m_date) && !openFor(date))
        return;
    const QString message = QString(entry.message).replace(QLatin1Char('\n'), QLatin1String("\n\t"));
    const QByteArray row =
        fillMarkers(QStringLiteral("%1\t%2\t%3\t%4\n"), {entry.time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")),
                                                         fileLevelName(entry.level), entry.source, message})
            .toUtf8();
    if (m_file.write(row) == row.size() && m_file.flush())
        return;
    std::fputs("Failed to write into log file\n", stderr);
    m_file.close(); // with what a full disk refused, which would reach the file with a later entry
    m_date = QDate();
}

bool LogFileWriter::openFor(QDate date)
{
    if (!date.isValid()) {
        std::fputs("Failed to open log file for appending\n", stderr);
        return false; // what is open serves the next entry
    }
    m_file.close();
    m_date = QDate();
    const QDir directory(m_directory);
    if (!directory.exists() && !directory.mkpath(QStringLiteral("."))) {
        std::fputs("Failed to create log file destination dir\n", stderr);
        return false;
    }
    m_file.setFileName(directory.filePath(date.toString(QStringLiteral("yyyyMMdd")) + QLatin1String(".log")));
    if (!m_file.open(QIODevice::Append | QIODevice::Text)) {
        std::fputs("Failed to open log file for appending\n", stderr);
        return false;
    }
    m_file.write(headerText());
    m_date = date;
    return true;
}

} // namespace Log
