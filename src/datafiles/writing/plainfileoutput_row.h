#pragma once

#include "records/fullrecord.h"
#include "records/rawrecord.h"
#include "records/recordmetadata.h"
#include "spectra/spectrum.h"
#include "util/numbertext.h"

#include <QByteArray>

#include <cstring>
#include <vector>

namespace Spectrometer {

/// One row in the making: fields with a tab between them, in one buffer that is used again and again.
class RowText {
public:
    void clear()
    {
        m_size = 0;
        m_lineStarted = false;
    }
    const char *data() const { return m_bytes.data(); }
    std::size_t size() const { return m_size; }

    /// Bytes outside the fields, before them or at the end of the line.
    void putBytes(const QByteArray &bytes);
    void putBytes(const char *bytes, std::size_t size);
    /// Before all that is there.
    void putBefore(const QByteArray &bytes);

    /// Puts in fields that were made elsewhere; others may follow them on the line.
    void putFields(const RowText &fields);
    void addField(const QByteArray &text);
    void addEmptyField() { separate(room(1)); }
    /// As QString::number(value, 'g', 6) prints it.
    void addNumber(double value);
    /// An empty field for not-a-number.
    void addNumberOrEmpty(double value);
    /// The last field is done; the next would start a new line.
    void endLine();

private:
    /// At least `bytes` free bytes behind the end.
    char *room(std::size_t bytes);
    char *separate(char *end);

    std::vector<char> m_bytes;
    std::size_t m_size = 0;
    bool m_lineStarted = false;
};

// The value fields of the rows, behind time and mode. Slots that a record doesn't have are written as not-a-number, so
// that rows are always full width.

/// "cur_", "curvar_", "rawcur_": where the current isn't a number, current and variance are both empty; raw currents
/// never.
void addCurrents(RowText &row, const RecordMetadata &metadata, const FullRecord &record);
/// "volt_" and one field per parameter, empty for not-a-number.
void addDiagnostics(RowText &row, const RecordMetadata &metadata, const FullRecord &record);
/// The columns of one spectrum. A null spectrum, a failed one or one of another length leaves them empty.
void addSpectrum(RowText &row, const SpectMath::SpectrumInfo &info, const SpectMath::Spectrum *spectrum,
                 bool inversionVars);
/// "time" to the end of a raw row.
void addRawFields(RowText &row, const RecordMetadata &metadata, const RawRecord &record);

/// The first spectrum of that description, or null.
const SpectMath::Spectrum *spectrumOf(const SpectMath::SpectrumPointerList &spectra,
                                      const SpectMath::SpectrumInfoPointer &info);

} // namespace Spectrometer
