#include "datafiles/parsing/valuereader.h"

#include "datafiles/parsing/numberparser.h"

#include <algorithm>
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

void DummyReader::describe(RowLayout &layout) const
{
    layout.columns.insert(layout.columns.end(), {0, fieldCount});
}

DiagnosticsReader::DiagnosticsReader(const QVector<int> &variableSlots)
    : ValueReader(variableSlots.size()), m_slots(variableSlots)
{
}

void DiagnosticsReader::read(const FieldSplitter &row, const RowNumbers &numbers) const
{
    for (int i = 0; i < m_slots.size(); ++i)
        if (m_slots[i] >= 0)
            numbers.variables[m_slots[i]] = numberOrNaN(field(row, i));
}

void DiagnosticsReader::copy(const RowNumbers &from, const RowNumbers &to) const
{
    for (const int slot : m_slots)
        if (slot >= 0)
            to.variables[slot] = from.variables[slot];
}

void DiagnosticsReader::describe(RowLayout &layout) const
{
    layout.columns.insert(layout.columns.end(), {1, fieldCount});
    layout.groups.variables = true;
    layout.columns.insert(layout.columns.end(), m_slots.begin(), m_slots.end());
}

ElectrometersReader::ElectrometersReader(int channels, bool raw)
    : ValueReader(raw ? channels : 2 * channels), m_channels(channels), m_raw(raw)
{
}

void ElectrometersReader::read(const FieldSplitter &row, const RowNumbers &numbers) const
{
    for (int i = 0; i < m_channels; ++i)
        (m_raw ? numbers.rawCurrents : numbers.currents)[i] = numberOrNaN(field(row, i));
    for (int i = 0; i < m_channels && !m_raw; ++i) {
        const double deviation = numberOrNaN(field(row, m_channels + i));
        numbers.currentVariances[i] = deviation * deviation;
    }
}

void ElectrometersReader::copy(const RowNumbers &from, const RowNumbers &to) const
{
    if (m_raw) {
        std::copy_n(from.rawCurrents, m_channels, to.rawCurrents);
        return;
    }
    std::copy_n(from.currents, m_channels, to.currents);
    std::copy_n(from.currentVariances, m_channels, to.currentVariances);
}

void ElectrometersReader::describe(RowLayout &layout) const
{
    layout.columns.insert(layout.columns.end(), {2, m_channels, m_raw});
    layout.groups.currents = true;
}

SpectrumReader::SpectrumReader(const SpectMath::SpectrumInfoPointer &info)
    : ValueReader(2 * int(info->nativePoints().size())), m_info(info)
{
}

std::shared_ptr<SpectMath::Spectrum> SpectrumReader::readSpectrum(const FieldSplitter &row) const
{
    const int points = fieldCount / 2;
    auto spectrum = makeDiagonalSpectrum(std::size_t(points));
    for (int i = 0; i < points; ++i) {
        const TextView concentration = field(row, i);
        const TextView deviation = field(row, points + i);
        if (concentration.empty() || deviation.empty())
            return nullptr;
        const auto slot = std::size_t(i);
        spectrum->concentrations[slot] = numberOf(concentration);
        const double sigma = numberOf(deviation);
        spectrum->covariances(slot, slot) = sigma * sigma;
    }
    return spectrum;
}

void SpectrumReader::describe(RowLayout &layout) const
{
    layout.columns.insert(layout.columns.end(), {3, fieldCount});
}
