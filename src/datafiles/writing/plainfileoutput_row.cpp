#include "datafiles/writing/plainfileoutput_row.h"

#include "util/timeformat.h"

#include <algorithm>
#include <cmath>

namespace Spectrometer {

namespace {

double valueAt(const RealVector &values, int index)
{
    return index >= 0 && std::size_t(index) < values.size() ? values[std::size_t(index)] : noValue;
}

void addFixed(RowText &row, double value)
{
    row.addField(QString::number(value, 'f', 9).toLatin1());
}

} // namespace

char *RowText::room(std::size_t bytes)
{
    if (m_size + bytes > m_bytes.size())
        m_bytes.resize(std::max<std::size_t>(4096, 2 * (m_size + bytes)));
    return m_bytes.data() + m_size;
}

/// Puts the tab that goes before every field but the first.
char *RowText::separate(char *end)
{
    if (m_lineStarted) {
        *end++ = '\t';
        ++m_size;
    }
    m_lineStarted = true;
    return end;
}

void RowText::putBytes(const char *bytes, std::size_t size)
{
    if (size == 0)
        return;
    std::memcpy(room(size), bytes, size);
    m_size += size;
}

void RowText::putBytes(const QByteArray &bytes)
{
    putBytes(bytes.constData(), std::size_t(bytes.size()));
}

void RowText::putBefore(const QByteArray &bytes)
{
    const auto size = std::size_t(bytes.size());
    char *const begin = room(size) - m_size;
    std::memmove(begin + size, begin, m_size);
    std::memcpy(begin, bytes.constData(), size);
    m_size += size;
}

void RowText::putFields(const RowText &fields)
{
    putBytes(fields.data(), fields.size());
    m_lineStarted = m_lineStarted || fields.m_lineStarted;
}

void RowText::addField(const QByteArray &text)
{
    addEmptyField();
    putBytes(text);
}

void RowText::addNumber(double value)
{
    char *begin = separate(room(1 + numberTextRoom));
    m_size += std::size_t(writeNumber(begin, value) - begin);
}

void RowText::addNumberOrEmpty(double value)
{
    if (std::isnan(value))
        addEmptyField();
    else
        addNumber(value);
}

void RowText::endLine()
{
    *room(1) = '\n';
    ++m_size;
    m_lineStarted = false;
}

void addCurrents(RowText &row, const RecordMetadata &metadata, const FullRecord &record)
{
    const int count = metadata.totalElectrometers;
    for (int i = 0; i < count; ++i)
        row.addNumberOrEmpty(valueAt(record.currents, i));
    for (int i = 0; i < count; ++i) {
        if (std::isnan(valueAt(record.currents, i)))
            row.addEmptyField();
        else
            row.addNumber(valueAt(record.currentVariances, i));
    }
    for (int i = 0; i < count; ++i)
        row.addNumber(valueAt(record.rawCurrents, i));
}

void addDiagnostics(RowText &row, const RecordMetadata &metadata, const FullRecord &record)
{
    for (int i = 0; i < metadata.totalElectrometers; ++i)
        row.addNumberOrEmpty(valueAt(record.voltages, i));
    for (const auto &variable : metadata.variables)
        row.addNumberOrEmpty(valueAt(record.variables, variable->valueIndex));
}

void addSpectrum(RowText &row, const SpectMath::SpectrumInfo &info, const SpectMath::Spectrum *spectrum,
                 bool inversionVars)
{
    const std::size_t points = info.nativePoints().size();
    if (!spectrum || spectrum->status != 0 || spectrum->concentrations.size() != points) {
        for (std::size_t i = 0; i < 2 * points + (inversionVars ? 3 : 0); ++i)
            row.addEmptyField();
        return;
    }
    for (std::size_t i = 0; i < points; ++i)
        row.addNumber(spectrum->concentrations[i]);
    const BandMatrix &covariances = spectrum->covariances;
    const bool hasCovariances = covariances.size1() == points && covariances.size2() == points;
    for (std::size_t i = 0; i < points; ++i)
        row.addNumber(hasCovariances ? std::sqrt(covariances(i, i)) : noValue);
    if (inversionVars) {
        row.addNumber(spectrum->currentRmsError);
        row.addNumber(spectrum->currentMeanAbsError);
        row.addNumber(spectrum->currentTotalError);
    }
}

void addRawFields(RowText &row, const RecordMetadata &metadata, const RawRecord &record)
{
    const int count = metadata.totalElectrometers;
    row.addField(timeToString(record.instrumentTime).toUtf8());
    row.addField(metadata.opmodeName(record.opmode).toUtf8());
    row.addField(timeToString(record.computerTime).toUtf8());
    for (int i = 0; i < count; ++i)
        addFixed(row, valueAt(record.electrometers, i));
    QByteArray bitmap(count, '0');
    for (int i = 0; i < std::min(count, record.valid.size()); ++i)
        if (record.valid.testBit(i))
            bitmap[i] = '1';
    row.addField(bitmap);
    for (const auto &variable : metadata.variables)
        addFixed(row, valueAt(record.variables, variable->valueIndex));
}

const SpectMath::Spectrum *spectrumOf(const SpectMath::SpectrumPointerList &spectra,
                                      const SpectMath::SpectrumInfoPointer &info)
{
    // An equal description is nearly always the same object.
    for (const auto &spectrum : spectra)
        if (spectrum && spectrum->info && (spectrum->info == info || *spectrum->info == *info))
            return spectrum.get();
    return nullptr;
}

} // namespace Spectrometer
