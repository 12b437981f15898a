#include "datafiles/parsing/valuereader.h"

#include "datafiles/parsing/numberparser.h"
#include "datafiles/parsing/rowhead.h"

#include <cmath>

namespace {

double numberOrNaN(TextView field)
{
    double value = noValue;
    return readOldNumber(field, &value) ? value : noValue;
}

double numberOf(TextView field)
{
    double value = noValue;
    if (!readOldNumber(field, &value))
        throw ValueParsingError(QStringLiteral("'%1' is not a floating point number").arg(stringOf(field)));
    return value;
}

} // namespace

bool readOldNumber(TextView text, double *value)
{
    // The common numbers are the same for both parsers. They differ on what is infinite, too small or no number.
    *value = parseField(text);
    if (std::isfinite(*value) && *value != 0)
        return true;
    bool isNumber = false;
    *value = stringOf(text).toDouble(&isNumber);
    return isNumber;
}

DiagnosticsReader::DiagnosticsReader(const QVector<int> &variableSlots)
    : ValueReader(variableSlots.size()), m_slots(variableSlots)
{
}

void DiagnosticsReader::read(const FieldSplitter &row, const std::shared_ptr<Record> &record)
{
    for (int i = 0; i < m_slots.size(); ++i) {
        if (m_slots[i] >= 0)
            record->variables[std::size_t(m_slots[i])] = numberOrNaN(field(row, i));
    }
}

ElectrometersReader::ElectrometersReader(int channels, bool raw)
    : ValueReader(raw ? channels : 2 * channels), m_channels(channels), m_raw(raw)
{
}

void ElectrometersReader::read(const FieldSplitter &row, const std::shared_ptr<Record> &record)
{
    if (m_raw) {
        for (int i = 0; i < m_channels; ++i)
            record->rawCurrents[std::size_t(i)] = numberOrNaN(field(row, i));
        return;
    }
    RealVector currents{std::size_t(m_channels)};
    RealVector variances{std::size_t(m_channels)};
    for (int i = 0; i < m_channels; ++i) {
        const double deviation = numberOrNaN(field(row, m_channels + i));
        currents[std::size_t(i)] = numberOrNaN(field(row, i));
        variances[std::size_t(i)] = deviation * deviation;
    }
    record->currents.swap(currents);
    record->currentVariances.swap(variances);
}

SpectrumReader::SpectrumReader(const SpectMath::SpectrumInfoPointer &info, FileReaderState *state)
    : ValueReader(2 * int(info->nativePoints().size())), m_info(info), m_state(state)
{
}

void SpectrumReader::read(const FieldSplitter &row, const std::shared_ptr<Record> &record)
{
    const int points = fieldCount / 2;
    auto spectrum = m_state->makeSpectrum(m_info);
    for (int i = 0; i < points; ++i) {
        const TextView concentration = field(row, i);
        const TextView deviation = field(row, points + i);
        if (concentration.empty() || deviation.empty())
            return;
        const auto slot = std::size_t(i);
        spectrum->concentrations[slot] = numberOf(concentration);
        const double sigma = numberOf(deviation);
        spectrum->covariances(slot, slot) = sigma * sigma;
    }
    if (!m_state->takeSeries({m_info}) || !m_state->takeSpectra(MemoryBudget::ofSpectrum(std::size_t(points))))
        throw ValueParsingError(refusedRowText());
    record->spectra.push_back(spectrum);
    m_state->records.addSpectrum(record, spectrum);
}
