#include "gui/common/recordviews/recordreport.h"

#include "spectra/recordinversion.h"

#include <exception>

namespace RecordViews {

namespace {

QString errorText(const QString &message)
{
    return QStringLiteral("<p>Inversion error: %1</p>").arg(message.toHtmlEscaped());
}

QString inverterReport(const SpectMath::Inverter &inverter, const Spectrometer::FullRecord &record,
                       const Spectrometer::RecordMetadata &metadata)
{
    const QString heading = QStringLiteral("<h2>%1</h2>").arg(inverter.info()->displayLabel().toHtmlEscaped());
    try {
        QString report;
        SpectMath::invertRecord(inverter, record, metadata, &report);
        return heading + report;
    } catch (const Inversion::InversionException &exception) {
        return heading + errorText(exception.message());
    } catch (const std::exception &exception) { // out of memory, say
        return heading + errorText(QString::fromUtf8(exception.what()));
    }
}

} // namespace

QString recordReport(const SpectMath::InverterList &inverters, const Spectrometer::FullRecord &record,
                     const Spectrometer::RecordMetadata *metadata)
{
    if (inverters.empty() || !metadata)
        return {};
    if (record.opmode < 0 || record.opmode >= metadata->opmodes.size())
        return QStringLiteral("Record has invalid opmode.");
    const QString &mode = metadata->opmodes.at(record.opmode).name;
    QString text;
    for (const SpectMath::InverterPointer &inverter : inverters)
        if (inverter->info()->opmode == mode)
            text += inverterReport(*inverter, record, *metadata);
    if (text.isEmpty())
        return QStringLiteral("<h3>No results</h3><p>No inverters for the selected record are available.</p>");
    return text;
}

} // namespace RecordViews
