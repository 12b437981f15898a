#include "datafiles/writing/plainfileoutput_fields.h"

#include "datafiles/writing/plainfileoutput_row.h"
#include "util/timeformat.h"

namespace Spectrometer {

namespace {

const QLatin1String defaultTimeFormat("%Y-%m-%d %H:%M:%s");

} // namespace

void RowFields::putTime(RowText &row, RecordTime time, std::int64_t utcOffset) const
{
    const RecordTime local = localTime(time, utcOffset);
    QByteArray text;
    if (m_timeFormat == defaultTimeFormat)
        appendTimeText(text, local);
    else
        text = timeToString(local, m_timeFormat).toUtf8();
    row.addField(text);
    if (utcOffset != 0)
        row.putBytes(utcOffsetToString(utcOffset).toLatin1());
}

void RowFields::putHead(RowText &row, const RecordHead &head) const
{
    putTime(row, head.beginTime, head.beginUtcOffset);
    putTime(row, head.endTime, head.endUtcOffset);
    row.addField(m_metadata.opmodeName(head.opmode).toUtf8());
}

void RowFields::putSpectra(RowText &row, const RecordHead &head, const SpectMath::SpectrumPointerList &spectra,
                           const QVector<SpectMath::SpectrumInfoPointer> &infos, bool inversionVars) const
{
    putHead(row, head);
    for (const auto &info : infos)
        addSpectrum(row, *info, spectrumOf(spectra, info), inversionVars);
}

void RowFields::putRecord(RowText &row, const FullRecord &record) const
{
    putHead(row, record);
    addCurrents(row, m_metadata, record);
    addDiagnostics(row, m_metadata, record);
}

void RowFields::putCurrents(RowText &row, const FullRecord &record) const
{
    putHead(row, record);
    addCurrents(row, m_metadata, record);
}

void RowFields::putDiagnostics(RowText &row, const FullRecord &record) const
{
    putHead(row, record);
    addDiagnostics(row, m_metadata, record);
}

} // namespace Spectrometer
