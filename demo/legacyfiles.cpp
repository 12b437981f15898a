#include "demo/legacyfiles.h"

#include "log/logger.h"
#include "util/filereplacement.h"
#include "util/timeformat.h"

#include <QDir>

#include <cmath>
#include <map>

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

/// The files of all kinds.
class LegacyFiles {
public:
    explicit LegacyFiles(const Campaign &campaign)
        : m_campaign(campaign),
          m_electrometers(campaign,
                          {QStringLiteral("#Electrometer currents: ") + electrometersOf(*campaign.metadata()),
                           QStringLiteral("#Raw electrometer currents: ") + electrometersOf(*campaign.metadata())}),
          m_variables(campaign, {QStringLiteral("#Diagnostics: ") + variablesOf(*campaign.metadata())})
    {
        const auto &spectra = campaign.spectra();
        for (auto ofMode = spectra.begin(); ofMode != spectra.end(); ++ofMode) {
            QStringList lines;
            for (const auto &info : *ofMode)
                lines << spectrumLine(*info);
            m_distributions.emplace(ofMode.key(), LegacyFile(campaign, lines));
        }
    }

    void addRecord(const Record &record)
    {
        const QStringList currents{listOf(record.currents), listOf(rootsOf(record.currentVariances)),
                                   listOf(record.rawCurrents)};
        m_electrometers.addRow(record, currents.join(QLatin1Char(',')));
        m_variables.addRow(record, listOf(record.variables));
        const QString mode = m_campaign.metadata()->opmodeName(record.opmode);
        const auto file = m_distributions.find(mode);
        if (file == m_distributions.end())
            return;
        QStringList fields;
        for (const auto &info : m_campaign.spectra().value(mode))
            fields << spectrumFields(record, info);
        file->second.addRow(record, fields.join(QLatin1Char(',')));
    }
    /// The rows so far become files whose names begin so.
    bool write(const QString &day)
    {
        bool areWritten = m_electrometers.write(day + QStringLiteral(".sig"));
        areWritten &= m_variables.write(day + QStringLiteral(".log"));
        for (auto &[mode, file] : m_distributions)
            areWritten &= file.write(QStringLiteral("%1.%2.nds").arg(day, mode));
        return areWritten;
    }

private:
    const Campaign &m_campaign;
    LegacyFile m_electrometers;
    LegacyFile m_variables;
    std::map<QString, LegacyFile> m_distributions; ///< by the name of the mode
};

} // namespace

bool writeLegacyFiles(const Campaign &campaign, const QString &folder)
{
    LegacyFiles files(campaign);
    bool areWritten = true;
    QString day;
    for (int slot = 0; slot < campaign.slotCount(); ++slot) {
        const auto record = campaign.record(slot);
        if (!record)
            continue;
        const QString date =
            timeToString(localTime(record->beginTime, record->beginUtcOffset), QStringLiteral("%Y-%m-%d"));
        if (!day.isEmpty() && date != day)
            areWritten &= files.write(QDir(folder).filePath(day));
        day = date;
        files.addRecord(*record);
    }
    return (day.isEmpty() || files.write(QDir(folder).filePath(day))) && areWritten;
}

} // namespace Demo
