#pragma once

#include "dataexport/exportsetup.h"
#include "records/recordhead.h"
#include "records/recordmetadata.h"

#include <QString>

#include <memory>

namespace DataExport {

/// The files that records belong to: the output file, with the record's day and mode in its name as far as they are
/// asked for. Names are made anew only where day or mode change.
class ExportNaming {
public:
    ExportNaming(const GeneralSettings &general, std::shared_ptr<const Spectrometer::RecordMetadata> metadata);

    /// Why the output file's name can't be one, in words; null if it can.
    QString fault() const;
    /// Null only where the output file's name is.
    const QString &pathOf(const Spectrometer::RecordHead &record);

private:
    QString dayText(std::int64_t day) const;

    bool m_local;
    bool m_addDate;
    bool m_addOpmode;
    std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    QString m_base;
    QString m_suffix; ///< with its point; empty for a name without one
    QString m_path;
    std::int64_t m_day = 0; ///< of m_path
    int m_opmode = 0;
    bool m_isNamed = false; ///< m_path has a value
};

} // namespace DataExport
