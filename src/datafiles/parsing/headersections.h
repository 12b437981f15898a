#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

#include <QVector>

#include <optional>
#include <utility>

/// The sections of the header of a current-format block. Each reads its keys, checks them against what the read has
/// seen so far and adds what is new to the state. A section that isn't there is empty. Throws FileReaderError and
/// Llama::NodeError; what was added before a fault stays.
namespace HeaderSections {

/// "opmodes". True if it is there.
bool readOpmodes(const Llama::MapNode &header, FileReaderState &state);

/// "total electrometers", "electrometer groups", "electrometer names". False if any of the three is absent.
bool readElectrometers(const Llama::MapNode &header, FileReaderState &state);

/// "diagnostic parameters", else "parameters": the slot in a record's variables for each column.
std::optional<QVector<int>> readVariables(const Llama::MapNode &header, FileReaderState &state);

/// A flag and the level above which it is raised.
struct FlagLevel {
    std::shared_ptr<Spectrometer::RecordFlag> flag;
    double threshold = 0;
};
/// "flags".
std::optional<QVector<FlagLevel>> readFlagLevels(const Llama::MapNode &header, FileReaderState &state);

/// The columns of errors that follow each spectrum.
enum class InversionVariable { unknown, rmsError, meanAbsError, totalError };
struct Spectra {
    QVector<SpectMath::SpectrumInfoPointer> infos; ///< in column order
    QVector<InversionVariable> inversionVariables;
};
/// "spectra" and "inversion_vars".
std::optional<Spectra> readSpectra(const Llama::MapNode &header, FileReaderState &state, const Log::Logger &logger);

/// "instrument configuration": that of the first header which has it as a map becomes the metadata's, without nulls.
void readInstrumentSettings(const Llama::MapNode &header, FileReaderState &state);

} // namespace HeaderSections
