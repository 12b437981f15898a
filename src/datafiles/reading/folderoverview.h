#pragma once

#include "datafiles/parsing/filereaderstate.h"

#include <QByteArray>
#include <QDate>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>

/// What the names and headers of day files tell. Rows may hold more modes and variables: each file may have more
/// headers than its first, and rows may name modes that no header lists.
struct FolderOverview {
    int files = 0; ///< of those looked at
    std::int64_t bytes = 0;
    int days = 0; ///< different dates in the names
    QDate firstDay;
    QDate lastDay;
    QStringList modes;     ///< of headers, in order of first appearance
    QStringList variables; ///< likewise
    int electrometers = 0;
    int withoutHeader = 0; ///< files that can't be opened, or whose first lines hold no header that can be understood
};

/// Looks at day files one after the other. Only the first header of a file is read, and a header that is equal to an
/// earlier one isn't parsed again, so that ten thousand files take less than a second. Headers that contradict each
/// other are told in the log, as by a read. One thread at a time.
class FolderSurvey {
public:
    FolderSurvey();

    void add(const QString &path);
    FolderOverview overview() const;

private:
    bool readHeader(const QString &path, std::int64_t size);
    bool understand(const QByteArray &header);

    FolderOverview m_overview; ///< without what m_state holds
    FileReaderState m_state;
    QSet<QDate> m_days;
    QSet<QByteArray> m_understood; ///< headers as they stand in the files
    std::size_t m_understoodBytes = 0;
};
