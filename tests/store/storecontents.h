#pragma once

#include "store/datastore.h"
#include "support/instrument.h"

#include <cstdint>
#include <memory>
#include <string>

/// What the tests of the store put in, and who hears what it tells.
namespace StoreContents {

using Spectrometer::FullRecord;
using Spectrometer::FullRecordPointer;

inline RecordTime at(std::int64_t ticks)
{
    return recordTimeFromTicks(ticks);
}

inline FullRecordPointer fullRecord(std::int64_t begin, std::int64_t end, int opmode = 0, double value = 0.0)
{
    auto record = std::make_shared<FullRecord>();
    record->beginTime = at(begin);
    record->endTime = at(end);
    record->opmode = opmode;
    record->currents = RealVector(1, value);
    return record;
}

inline std::shared_ptr<Record> storedRecord(std::int64_t begin, std::int64_t end, int opmode = 0)
{
    return makeRecord(*fullRecord(begin, end, opmode));
}

inline std::shared_ptr<SpectMath::Spectrum> spectrumOf(const SpectMath::SpectrumInfoPointer &info)
{
    return testSpectrum(info, 0, 1);
}

inline SpectMath::SpectrumInfoPointer makeInfo(const char *name)
{
    return namedSpectrum(name, QString());
}

inline void makeUnlimited(Datastore &store)
{
    store.setLimitRecords(false);
}

/// Writes down what a store tells: "+" for updated, "-" for removed.
class Listener {
public:
    explicit Listener(Datastore &store)
    {
        QObject::connect(&store, &Datastore::updated, &store, [this](int i, const std::shared_ptr<Record> &r, int f) {
            told += QStringLiteral("+%1:%2:%3 ").arg(i).arg(ticksOf(r->beginTime)).arg(f);
        });
        QObject::connect(&store, &Datastore::removed, &store, [this, &store](int i, const std::shared_ptr<Record> &r) {
            told += QStringLiteral("-%1:%2(%3) ").arg(i).arg(ticksOf(r->beginTime)).arg(store.size());
        });
    }
    std::string take() { return std::exchange(told, QString()).trimmed().toStdString(); }

private:
    QString told;
};

} // namespace StoreContents
