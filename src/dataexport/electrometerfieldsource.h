#pragma once

#include "dataexport/exportsetup.h"
#include "dataexport/fieldsource.h"
#include "records/recordmetadata.h"

#include <vector>

namespace DataExport {

/// Values of electrometers, channel by channel.
class ElectrometerFieldSource : public FieldSource {
public:
    /// Unknown names cost an error line.
    ElectrometerFieldSource(const ElectrometerField &field, const Spectrometer::RecordMetadata &metadata,
                            QStringList *errors);

    QStringList titles() const override { return m_titles; }
    void values(const Record &record, DelimitedLine &line) const override;

private:
    void addTitles(const QString &name);

    ElectrometerField m_field;
    QStringList m_titles;
    std::vector<int> m_channels;
};

} // namespace DataExport
