#pragma once

#include "records/recordmetadata.h"
#include "spectra/inverter.h"

#include <functional>

namespace SpectMath {

/// Runs one inverter on a record's currents: on the channels of its electrometer group, or on all of them if it names
/// none. A group that the data don't have has no channels. Throws Inversion::InversionException. Any thread.
std::shared_ptr<Spectrum> invertRecord(const Inverter &inverter, const Spectrometer::FullRecord &record,
                                       const Spectrometer::RecordMetadata &metadata, QString *report = nullptr);

/// Takes a complaint about a record's inversion: a level of the logger and its text.
using InversionComplaint = std::function<void(int level, const QString &text)>;

/// The record's head and the spectra of every inverter of its operating mode, in the order of the inverters. An
/// inverter that throws is told as a complaint and left out. Reads nothing but the full record. Any thread.
SpectrumRecordPointer invertRecord(const InverterList &inverters, const Spectrometer::FullRecord &record,
                                   const Spectrometer::RecordMetadata &metadata, const InversionComplaint &complain);

} // namespace SpectMath
