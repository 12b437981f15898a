#pragma once

#include "records/record.h"
#include "records/recordmetadata.h"
#include "spectra/spectrum.h"

#include <QString>
#include <QVector>

namespace Spectrometer {

class RowText;

/// Puts the fields of the rows of each kind. Holds nothing of its own: what it is made of must outlive it.
class RowFields {
public:
    RowFields(const RecordMetadata &metadata, const QString &timeFormat)
        : m_metadata(metadata), m_timeFormat(timeFormat)
    {
    }

    /// Times and mode, and the columns of each of these spectra.
    void putSpectra(RowText &row, const RecordHead &head, const SpectMath::SpectrumPointerList &spectra,
                    const QVector<SpectMath::SpectrumInfoPointer> &infos, bool inversionVars) const;
    /// All but the flags.
    void putRecord(RowText &row, const FullRecord &record) const;
    void putCurrents(RowText &row, const FullRecord &record) const;
    void putDiagnostics(RowText &row, const FullRecord &record) const;

private:
    void putHead(RowText &row, const RecordHead &head) const;
    void putTime(RowText &row, RecordTime time, std::int64_t utcOffset) const;

    const RecordMetadata &m_metadata;
    const QString &m_timeFormat;
};

} // namespace Spectrometer
