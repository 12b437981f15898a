#pragma once

#include "datafiles/parsing/filereaderstate.h"
#include "llama/qyaml.h"

#include <QVector>

#include <optional>

namespace HeaderSections {

/// The columns of errors that follow each spectrum.
enum class InversionVariable { unknown, rmsError, meanAbsError, totalError };
struct Spectra {
    QVector<SpectMath::SpectrumInfoPointer> infos; ///< in column order
    QVector<InversionVariable> inversionVariables;
};
/// "spectra" and "inversion_vars" of a current-format header. Checks it against the earlier headers of the read and
/// adds its news to the state. Throws FileReaderError and Llama::NodeError; additions before a fault stay. Empty if
/// there are no spectra.
std::optional<Spectra> readSpectra(const Llama::MapNode &header, FileReaderState &state, const Log::Logger &logger);

} // namespace HeaderSections
