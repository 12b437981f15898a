#pragma once

#include "records/fullrecord.h"

namespace SpectMath {
struct Spectrum;
using SpectrumPointerList = std::vector<std::shared_ptr<Spectrum>>;
} // namespace SpectMath

/// A full record as the store holds it, with its midpoint and its spectra. All views see this type.
struct Record : Spectrometer::FullRecord {
    Record() = default;
    /// Copies the values, computes midTime; no spectra.
    explicit Record(const Spectrometer::FullRecord &full);

    RecordTime midTime{};                   ///< where every time axis places the record
    SpectMath::SpectrumPointerList spectra; ///< one per inverter
    bool spectraProvisional = false;
};

/// A new record in slab memory, for the many that live in a store.
std::shared_ptr<Record> makeRecord();
std::shared_ptr<Record> makeRecord(const Spectrometer::FullRecord &full);

Q_DECLARE_METATYPE(std::shared_ptr<Record>)
Q_DECLARE_METATYPE(SpectMath::SpectrumPointerList)
