#include "datafiles/parsing/valuereader.h"

#include "datafiles/parsing/rowhead.h"

namespace {

double numberOrNaN(const QByteArray &field)
{
    bool ok = false;
    const double value = QString::fromUtf8(field.trimmed()).toDouble(&ok);
    return ok ? value : noValue;
}

double numberOf(const QByteArray &field)
{
    const QString text = QString::fromUtf8(field);
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok)
        throw ValueParsingError(QStringLiteral("'%1' is not a floating point number").arg(text));
    return value;
}

} // namespace

DiagnosticsReader::DiagnosticsReader(const QVector<int> &variableSlots)
    : ValueReader(variableSlots.size()), m_slots(variableSlots)
{
}

void DiagnosticsReader::read(QList<QByteArray> fields, Spectrometer::FullRecordPointer, std::shared_ptr<Record> record)
{
    for (int i = 0; i < m_slots.size(); ++i) {
        if (m_slots[i] < 0)
            continue;
        bool ok = false;
        const double value = fields[i].trimmed().toDouble(&ok);
        record->variables[std::size_t(m_slots[i])] = ok ? value : noValue;
    }
}

ElectrometersReader::ElectrometersReader(int channels, bool raw)
    : ValueReader(raw ? channels : 2 * channels), m_channels(channels), m_raw(raw)
{
}

void ElectrometersReader::read(QList<QByteArray> fields, Spectrometer::FullRecordPointer,
                               std::shared_ptr<Record> record)
{
    if (m_raw) {
        for (int i = 0; i < m_channels; ++i)
            record->rawCurrents[std::size_t(i)] = numberOrNaN(fields[i]);
        return;
    }
    RealVector currents{std::size_t(m_channels)};
    RealVector variances{std::size_t(m_channels)};
    for (int i = 0; i < m_channels; ++i) {
        const double deviation = numberOrNaN(fields[m_channels + i]);
        currents[std::size_t(i)] = numberOrNaN(fields[i]);
        variances[std::size_t(i)] = deviation * deviation;
    }
    record->currents.swap(currents);
    record->currentVariances.swap(variances);
}

SpectrumReader::SpectrumReader(const SpectMath::SpectrumInfoPointer &info, FileReaderState *state)
    : ValueReader(2 * int(info->nativePoints().size())), m_info(info), m_state(state)
{
}

void SpectrumReader::read(QList<QByteArray> fields, Spectrometer::FullRecordPointer, std::shared_ptr<Record> record)
{
    const int points = fieldCount / 2;
    auto spectrum = m_state->makeSpectrum(m_info);
    for (int i = 0; i < points; ++i) {
        const QByteArray concentration = fields[i].trimmed();
        const QByteArray deviation = fields[points + i].trimmed();
        if (concentration.isEmpty() || deviation.isEmpty())
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
