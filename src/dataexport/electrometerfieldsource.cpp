#include "dataexport/electrometerfieldsource.h"

#include "dataexport/delimitedline.h"

#include <cmath>

namespace DataExport {

namespace {

double valueOf(const RealVector &values, int channel)
{
    return std::size_t(channel) < values.size() ? values[std::size_t(channel)] : noValue;
}

} // namespace

ElectrometerFieldSource::ElectrometerFieldSource(const ElectrometerField &field,
                                                 const Spectrometer::RecordMetadata &metadata, QStringList *errors)
    : m_field(field)
{
    const QVector<QString> &known = metadata.electrometerNames;
    const auto add = [&](int channel) {
        m_channels.push_back(channel);
        addTitles(known.at(channel));
    };
    if (field.electrometers.isEmpty()) {
        for (int channel = 0; channel < known.size(); ++channel)
            add(channel);
    }
    for (const QString &name : field.electrometers) {
        const int channel = known.indexOf(name);
        if (channel >= 0)
            add(channel);
        else
            errors->append(QStringLiteral("Unknown electrometer '%1'.").arg(name));
    }
}

void ElectrometerFieldSource::addTitles(const QString &name)
{
    if (m_field.currents)
        m_titles << QStringLiteral("current %1 (fA)").arg(name);
    if (m_field.deviations)
        m_titles << QStringLiteral("current stddev %1 (fA)").arg(name);
    if (m_field.rawCurrents)
        m_titles << QStringLiteral("raw current %1 (fA)").arg(name);
    if (m_field.voltages)
        m_titles << QStringLiteral("voltage %1 (V)").arg(name);
}

void ElectrometerFieldSource::values(const Record &record, DelimitedLine &line) const
{
    for (const int channel : m_channels) {
        if (m_field.currents)
            line.addNumber(valueOf(record.currents, channel));
        if (m_field.deviations)
            line.addNumber(std::sqrt(valueOf(record.currentVariances, channel)));
        if (m_field.rawCurrents)
            line.addNumber(valueOf(record.rawCurrents, channel));
        if (m_field.voltages)
            line.addNumber(valueOf(record.voltages, channel));
    }
}

} // namespace DataExport
