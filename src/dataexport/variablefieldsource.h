#pragma once

#include "dataexport/fieldsource.h"
#include "records/recordmetadata.h"

#include <vector>

namespace DataExport {

/// Diagnostic variables, a column each.
class VariableFieldSource : public FieldSource {
public:
    /// Unknown names cost an error line.
    VariableFieldSource(const QStringList &names, const Spectrometer::RecordMetadata &metadata, QStringList *errors);

    QStringList titles() const override { return m_titles; }
    void values(const Record &record, DelimitedLine &line) const override;

private:
    QStringList m_titles;
    std::vector<int> m_slots;
};

} // namespace DataExport
