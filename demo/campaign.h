#pragma once

#include "demo/atmosphere.h"
#include "demo/inverterfile.h"
#include "records/record.h"
#include "records/recordmetadata.h"
#include "spectra/spectrum.h"

#include <QMap>
#include <QVector>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Demo {

class DiagnosticSource;
class Random;

/// The measurements of a made-up campaign: the same for the same seed, each record by itself, in any order.
class Campaign {
public:
    struct Settings {
        int days = 1;
        int interval = 150; ///< seconds from one record to the next
        std::uint64_t seed = 1;
    };

    explicit Campaign(const Settings &settings);
    ~Campaign();

    const std::shared_ptr<Spectrometer::RecordMetadata> &metadata() const { return m_metadata; }
    /// By the name of the operating mode, negative first; there are none for "offset".
    const QMap<QString, QVector<SpectMath::SpectrumInfoPointer>> &spectra() const { return m_spectra; }
    const Instrument &instrument() const { return m_instrument; }
    /// The source of the records' spectra.
    const std::vector<InverterFile> &inverterFiles() const { return m_inverterFiles; }
    const Atmosphere &atmosphere() const { return m_atmosphere; }

    /// How many records would fill the days; some of them are missing.
    int slotCount() const;
    /// The record of that place, or null where the instrument stood still.
    std::shared_ptr<Record> record(int slot) const;

    /// The middle of a place's record, in days of local time since midnight before the first.
    double dayOf(int slot) const;
    static Mode modeOf(int slot) { return Mode(slot % modeCount); }
    /// How long a record averages, in seconds.
    double averagingSeconds() const;

    /// The true density on any points of the mode's axis: dN/dlog10(Z) over mobilities in cm^2/V/s for ions,
    /// dN/dlog10(r) over radii in nm for particles, 1/cm^3.
    RealVector truth(Mode mode, Polarity polarity, const RealVector &points, double day) const;
    /// The currents of the electrometers of one polarity without noise, fA.
    RealVector trueCurrents(Mode mode, Polarity polarity, double day) const;

private:
    struct Channel;                                 ///< the forward model of one mode and polarity
    using TrueCurrents = std::array<RealVector, 2>; ///< by polarity

    void makeMetadata();
    void makeChannel(Mode mode, Polarity polarity);
    const Channel *channel(Mode mode, Polarity polarity) const;
    RealVector trueCurrents(Mode mode, Polarity polarity, const Aerosol &aerosol) const;
    RecordTime beginOf(int slot) const;
    bool isMissing(int slot) const;
    bool hasFailed(int slot) const;
    void measureCurrents(Record &record, const TrueCurrents &trueCurrents, double day, Random &random) const;
    void addFlags(Record &record, int slot) const;

    Settings m_settings;
    Instrument m_instrument;
    Atmosphere m_atmosphere;
    std::shared_ptr<Spectrometer::RecordMetadata> m_metadata;
    std::unique_ptr<DiagnosticSource> m_diagnostics;
    std::vector<InverterFile> m_inverterFiles;
    SpectMath::InverterList m_inverters;
    std::vector<std::unique_ptr<Channel>> m_channels;
    QMap<QString, QVector<SpectMath::SpectrumInfoPointer>> m_spectra;
};

} // namespace Demo
