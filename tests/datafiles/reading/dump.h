#pragma once

#include "datafiles/reading/filereader.h"

#include <QDebug>

#include <cstring>

/// All that a read has found, bit by bit, as lines of text.
class Dump {
public:
    explicit Dump(const FileReader &reader)
    {
        const auto &statistics = reader.statistics();
        QDebug(&m_text) << statistics.rows << statistics.ignoredRows << statistics.bytes;
        describeContents(reader);
    }
    /// Without the counts of the read.
    static QString contentsOf(const FileReader &reader)
    {
        Dump dump;
        dump.describeContents(reader);
        return dump.text();
    }
    static QString textOf(const Record &record)
    {
        Dump dump;
        dump.describe(record);
        return dump.text();
    }
    const QString &text() const { return m_text; }

private:
    Dump() = default;
    void describeContents(const FileReader &reader)
    {
        const auto &metadata = *reader.metadata();
        QDebug(&m_text) << metadata.instrumentSettings << metadata.totalElectrometers << metadata.electrometerNames
                        << metadata.variableCount << metadata.electrometerGroups.keys();
        for (const auto &group : metadata.electrometerGroups)
            QDebug(&m_text) << group.first << group.end;
        for (const auto &variable : metadata.variables)
            QDebug(&m_text) << variable->name << variable->humanname << variable->unit << variable->valueIndex;
        for (const Opmode &mode : metadata.opmodes)
            QDebug(&m_text) << mode.index << mode.name << mode.isOffset;
        for (const auto &info : reader.spectrumInfos())
            describe(*info);
        for (const auto &record : reader.datastore()->records())
            describe(*record);
        for (const auto &info : reader.spectrumInfos())
            if (const auto series = reader.datastore()->series(info.get()))
                for (const SpectrumRecord &entry : *series)
                    m_text +=
                        number(&*entry.record) + number(&*entry.spectrum) + QString::number(entry.nearestGap) + '\n';
    }
    void describe(const SpectMath::SpectrumInfo &info)
    {
        QDebug(&m_text) << number(&info) << info.name << info.inverterName << info.comment << info.hash;
        bits(info.radii);
        bits(info.mobilities);
    }
    void describe(const Record &record)
    {
        QDebug(&m_text) << '\n'
                        << number(&record) << ticksOf(record.beginTime) << ticksOf(record.endTime)
                        << ticksOf(record.midTime) << qint64(record.beginUtcOffset) << qint64(record.endUtcOffset)
                        << record.opmode << record.dpVariantId;
        for (const auto *values :
             {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages, &record.variables})
            bits(*values);
        for (const auto &flag : record.flags)
            QDebug(&m_text) << number(&*flag) << flag->text << flag->type;
        for (const auto &spectrum : record.spectra) {
            QDebug(&m_text) << number(&*spectrum) << number(&*spectrum->info) << spectrum->status;
            bits(spectrum->concentrations);
            bits(spectrum->covariances.data());
            bits(std::array<double, 3>{spectrum->currentRmsError, spectrum->currentMeanAbsError,
                                       spectrum->currentTotalError});
        }
    }
    template<typename Values>
    void bits(const Values &values)
    {
        for (const double value : values) {
            quint64 word;
            std::memcpy(&word, &value, sizeof word);
            m_text += QString::number(std::isnan(value) ? 1 : word, 36) + ' ';
        }
        m_text += '\n';
    }
    /// The same for the same object, in the order of first appearance.
    QString number(const void *object)
    {
        auto &number = m_numbers[object];
        if (number == 0)
            number = m_numbers.size();
        return QString::number(number) + ' ';
    }

    QString m_text;
    QHash<const void *, int> m_numbers;
};
