#include "demo/legacyfiles.h"

#include "log/logger.h"
#include "util/filereplacement.h"
#include "util/timeformat.h"

#include <QDir>

#include <cmath>

namespace Demo {

namespace {

QString textOf(double value)
{
    return std::isnan(value) ? QString() : QString::number(value, 'g', 6);
}

QString listOf(const RealVector &values)
{
    QStringList texts;
    for (const double value : values)
        texts << textOf(value);
    return texts.join(QLatin1Char(','));
}

RealVector rootsOf(RealVector values)
{
    for (double &value : values)
        value = std::sqrt(value);
    return values;
}

/// One kind of file, day by day.
class LegacyFile {
public:
    LegacyFile(const Campaign &campaign, const QStringList &headerLines) : m_metadata(*campaign.metadata())
    {
        QStringList modes;
        for (const Opmode &mode : m_metadata.opmodes)
            modes << mode.name;
        m_header = QStringLiteral("#All measured records\n#Operating modes: %1\n%2\nbegintime,endtime,opmode,values\n")
                       .arg(modes.join(QStringLiteral(", ")), headerLines.join(QLatin1Char('\n')));
    }

    void addRow(const Record &record, const QString &values)
    {
        const QString format = QStringLiteral("%Y-%m-%d %H:%M:%s");
        const auto time = [&format](RecordTime moment, std::int64_t offset) {
            return timeToString(localTime(moment, offset), format) + utcOffsetToString(offset);
        };
        m_rows << QStringList{time(record.beginTime, record.beginUtcOffset), time(record.endTime, record.endUtcOffset),
                              m_metadata.opmodeName(record.opmode), values}
                      .join(QLatin1Char(','));
    }
    /// Writes the rows so far into a file, and begins the next.
    bool write(const QString &path)
    {
        const QString text = m_header + m_rows.join(QLatin1Char('\n')) + QLatin1Char('\n');
        m_rows.clear();
        const QString reason = replaceFile(path, text.toUtf8());
        if (!reason.isNull())
            Log::Logger(QStringLiteral("filewriter")).log(Log::Error, QStringLiteral("%1: %2").arg(path, reason));
        return reason.isNull();
    }

private:
    const Spectrometer::RecordMetadata &m_metadata;
    QString m_header;
    QStringList m_rows;
};

QString electrometersOf(const Spectrometer::RecordMetadata &metadata)
{
    QStringList groups;
    for (auto it = metadata.electrometerGroups.begin(); it != metadata.electrometerGroups.end(); ++it)
        groups << QStringLiteral("%1 %2 %3").arg(it.key(), QString::number(it->first), QString::number(it->end - 1));
    return QStringLiteral("%1 (%2)").arg(QString::number(metadata.totalElectrometers),
                                         groups.join(QStringLiteral(", ")));
}

QString variablesOf(const Spectrometer::RecordMetadata &metadata)
{
    QStringList names;
    for (const auto &variable : metadata.variables)
        names << QLatin1Char('"') + variable->name + QLatin1Char('"');
    return names.join(QLatin1Char(','));
}

QVector<SpectMath::SpectrumInfoPointer> spectraOf(const Campaign &campaign)
{
    QVector<SpectMath::SpectrumInfoPointer> all;
    for (const auto &infos : campaign.spectra())
        all += infos;
    return all;
}

QString spectrumLine(const SpectMath::SpectrumInfo &info)
{
    const bool isMobility = info.scale == SpectMath::DistributionScale::mobility;
    return QStringLiteral("#Result spectrum: \"%1\" density num (1/cm^3), %2 %3")
        .arg(info.name, isMobility ? QStringLiteral("mob (cm^2/s/V)") : QStringLiteral("rad (nm)"),
             listOf(info.nativePoints()));
}

/// The values and deviations of one spectrum; empty fields where the record doesn't have it.
QString spectrumFields(const Record &record, const SpectMath::SpectrumInfoPointer &info)
{
    for (const auto &spectrum : record.spectra) {
        if (spectrum->info != info || spectrum->status != 0)
            continue;
        RealVector variances(spectrum->concentrations.size());
        for (std::size_t i = 0; i < variances.size(); ++i)
            variances[i] = spectrum->covariances(i, i);
        return listOf(spectrum->concentrations) + QLatin1Char(',') + listOf(rootsOf(variances));
    }
    return QString(2 * int(info->nativePoints().size()) - 1, QLatin1Char(','));
}

} // namespace

bool writeLegacyFiles(const Campaign &campaign, const QString &folder)
{
    const Spectrometer::RecordMetadata &metadata = *campaign.metadata();
    const QVector<SpectMath::SpectrumInfoPointer> spectra = spectraOf(campaign);
    QStringList spectrumLines;
    for (const auto &info : spectra)
        spectrumLines << spectrumLine(*info);
    LegacyFile electrometers(campaign, {QStringLiteral("#Electrometer currents: ") + electrometersOf(metadata),
                                        QStringLiteral("#Raw electrometer currents: ") + electrometersOf(metadata)});
    LegacyFile variables(campaign, {QStringLiteral("#Diagnostics: ") + variablesOf(metadata)});
    LegacyFile distributions(campaign, spectrumLines);

    bool areWritten = true;
    QString day;
    const auto writeDay = [&] {
        const QDir place(folder);
        areWritten &= day.isEmpty() || (electrometers.write(place.filePath(day + QStringLiteral(".sig"))) &
                                        variables.write(place.filePath(day + QStringLiteral(".log"))) &
                                        distributions.write(place.filePath(day + QStringLiteral(".nds"))));
    };
    for (int slot = 0; slot < campaign.slotCount(); ++slot) {
        const auto record = campaign.record(slot);
        if (!record)
            continue;
        const QString date =
            timeToString(localTime(record->beginTime, record->beginUtcOffset), QStringLiteral("%Y-%m-%d"));
        if (date != day) {
            writeDay();
            day = date;
        }
        const QStringList currents{listOf(record->currents), listOf(rootsOf(record->currentVariances)),
                                   listOf(record->rawCurrents)};
        electrometers.addRow(*record, currents.join(QLatin1Char(',')));
        variables.addRow(*record, listOf(record->variables));
        QStringList fields;
        for (const auto &info : spectra)
            fields << spectrumFields(*record, info);
        distributions.addRow(*record, fields.join(QLatin1Char(',')));
    }
    writeDay();
    return areWritten;
}

} // namespace Demo
