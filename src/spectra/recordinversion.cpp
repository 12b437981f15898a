#include "spectra/recordinversion.h"

#include "log/logger.h"
#include "util/textescape.h"

#include <exception>
#include <new>

namespace SpectMath {

std::shared_ptr<Spectrum> invertRecord(const Inverter &inverter, const Spectrometer::FullRecord &record,
                                       const Spectrometer::RecordMetadata &metadata, QString *report)
{
    const QString &group = inverter.info()->electrometerGroup;
    if (group.isEmpty())
        return inverter.invert(record.currents, record.currentVariances, report);
    const Spectrometer::ChannelRange channels = metadata.electrometerGroups.value(group);
    return inverter.invert(record.currents, record.currentVariances, channels.first, channels.end, report);
}

SpectrumRecordPointer invertRecord(const InverterList &inverters, const Spectrometer::FullRecord &record,
                                   const Spectrometer::RecordMetadata &metadata, const InversionComplaint &complain)
{
    auto result = std::make_shared<SpectrumRecord>();
    static_cast<Spectrometer::RecordHead &>(*result) = record;
    result->provisional = record.provisional;
    if (record.opmode < 0 || record.opmode >= metadata.opmodes.size()) {
        complain(Log::Debug, QStringLiteral("Possible software bug: invalid opmode index"));
        return result;
    }
    const QString &mode = metadata.opmodes.at(record.opmode).name;
    for (const InverterPointer &inverter : inverters) {
        if (inverter->info()->opmode != mode)
            continue;
        QString error;
        try {
            result->spectra.push_back(invertRecord(*inverter, record, metadata));
            continue;
        } catch (const Inversion::InversionException &exception) {
            error = exception.message();
        } catch (const std::bad_alloc &) {
            error = QStringLiteral("Not enough memory");
        } catch (const std::exception &exception) { // it must not end the process
            error = QString::fromUtf8(exception.what());
        }
        complain(Log::Error, fillMarkers(QStringLiteral("Inversion error: %1"), {error}));
    }
    return result;
}

} // namespace SpectMath
